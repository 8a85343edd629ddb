// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Views described by name: by the host, or in a layout file.
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/NSView.h>

#include <functional>
#include <memory>
#include <string>

namespace kw {

using ViewFactory = std::function<std::shared_ptr<NSView>()>;

/// Makes `make` the description of that name, before any layout file of the name; an empty one
/// takes it back. `make` sends `awakeFromNib` where its views want it. Main thread.
KW_EXPORT void registerViewDescription(std::string name, ViewFactory make);

/// Lets layout files name a class of the host's views: `registerViewClass<DocumentView>()`. The
/// toolkit's own controls are known. Main thread.
KW_EXPORT void registerViewClass(std::string className, ViewFactory make);
template <class View>
void registerViewClass() {
    registerViewClass(View::classObject().name(), [] { return std::make_shared<View>(); });
}
/// A new view of a registered class, or null.
KW_EXPORT std::shared_ptr<NSView> makeViewOfClass(const std::string& className);

/// The views that the name describes: what the host registered, else the layout file in `folder`.
/// Null where there is none; `reason` then says why, for developers.
KW_EXPORT std::shared_ptr<NSView> loadViewDescription(
    const std::string& name, const std::string& folder, std::string& reason);

} // namespace kw

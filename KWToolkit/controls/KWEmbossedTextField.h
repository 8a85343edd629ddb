// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/NSTextField.h>

namespace kw {

/// A text field that draws its value dark grey over a faint white copy one point below, from two
/// points on the right of its left edge. Deliberate: the text color and the placeholder do not
/// count. Main thread.
class KW_EXPORT KWEmbossedTextField : public NSTextField {
public:
    using NSTextField::NSTextField;

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    NSRect textRect() const override;
    void drawRect(NSGraphicsContext& context, NSRect rect) override;
};

} // namespace kw

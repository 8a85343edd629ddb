// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <memory>
#include <string>

namespace kw {

class NSView;

/// Makes views out of layout files. Main thread.
class KW_EXPORT ViewLoader {
public:
    virtual ~ViewLoader();

    /// The tree that the file called `name` (without the extension) in `folder` describes. Every
    /// view and cell in it has had `awakeFromNib`, subviews before their superviews. Null where
    /// there is no such file or it describes nothing; `reason` then says why, for developers.
    virtual std::shared_ptr<NSView> loadView(
        const std::string& name, const std::string& folder, std::string& reason) = 0;
};

/// Where no layout files can be read.
class KW_EXPORT UnavailableViewLoader final : public ViewLoader {
public:
    std::shared_ptr<NSView> loadView(
        const std::string& name, const std::string& folder, std::string& reason) override;
};

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/SearchPaths.h>

namespace kw {

/// Folders that are where a test says.
class KW_EXPORT HeadlessSearchPaths final : public SearchPaths {
public:
    std::optional<std::string> homeFolder() const override { return home; }
    std::optional<std::string> applicationSupportFolder() const override { return support; }
    std::string temporaryFolder() const override { return temporary; }

    std::optional<std::string> home = "/home/user";
    std::optional<std::string> support = "/home/user/Support";
    std::string temporary = "/tmp";
};

} // namespace kw

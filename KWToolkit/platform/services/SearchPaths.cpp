// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/SearchPaths.h>

#include <KWToolkit/platform/foundation/NSPathUtilities.h>

#include <filesystem>
#include <system_error>

namespace kw {

SearchPaths::~SearchPaths() = default;

std::string StandardSearchPaths::temporaryFolder() const {
    std::error_code error;
    const auto folder = std::filesystem::temp_directory_path(error);
    const bool usable = !error && folder.is_absolute();
    return usable ? stringByAppendingPathComponent(folder.string(), "") : "/tmp";
}

} // namespace kw

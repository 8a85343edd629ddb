// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/SearchPaths.h>

#include <filesystem>
#include <system_error>

namespace kw {

SearchPaths::~SearchPaths() = default;

std::string StandardSearchPaths::temporaryFolder() const {
    std::error_code error;
    const auto folder = std::filesystem::temp_directory_path(error);
    return error ? "/tmp" : folder.string();
}

} // namespace kw

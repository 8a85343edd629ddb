// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/XdgSearchPaths.h>

#include <KWToolkit/platform/foundation/NSPathUtilities.h>
#include <backends/linux/xdg/BaseFolders.h>

#include <filesystem>
#include <utility>

namespace kw {

XdgSearchPaths::XdgSearchPaths(Environment environment)
    : m_environment(std::move(environment)) { }

std::optional<std::string> XdgSearchPaths::homeFolder() const {
    return baseFolders(m_environment).home;
}

std::optional<std::string> XdgSearchPaths::applicationSupportFolder() const {
    return baseFolders(m_environment).dataHome;
}

std::string XdgSearchPaths::temporaryFolder() const {
    const std::string folder = m_environment("TMPDIR");
    std::error_code error;
    const bool usable = folder.starts_with('/') && std::filesystem::is_directory(folder, error);
    return usable ? stringByAppendingPathComponent(folder, "") : "/tmp";
}

} // namespace kw

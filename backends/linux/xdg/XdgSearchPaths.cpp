// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/XdgSearchPaths.h>

#include <KWToolkit/platform/foundation/NSPathUtilities.h>
#include <backends/linux/posix/AtomicFile.h>
#include <backends/linux/xdg/BaseFolders.h>

#include <filesystem>
#include <sstream>
#include <string_view>
#include <tuple>
#include <utility>

namespace kw {

namespace {

/// A running program's path has no links in it, so a folder that is compared with it is there
/// without them, too. Last comes the path as it is usually written.
std::vector<std::string> withRealPath(const std::string& path) {
    std::error_code error;
    const std::string real = std::filesystem::canonical(path, error);
    return error || real == path ? std::vector {path} : std::vector {real, path};
}

/// What lines such as `XDG_DOWNLOAD_DIR="$HOME/Downloads"` say; the last counts. They are the
/// shell's assignments, of which only these are allowed: "$HOME/..." or an absolute path in double
/// quotes, with backslashes before characters that are to be taken as they are.
std::optional<std::string> downloadsFolderIn(const std::string& text, const std::string& home) {
    constexpr std::string_view name = "XDG_DOWNLOAD_DIR=\"", homeVariable = "$HOME";
    std::optional<std::string> folder;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const auto begin = line.find_first_not_of(" \t");
        if (begin == line.npos || !line.substr(begin).starts_with(name))
            continue;
        std::string_view value = std::string_view(line).substr(begin + name.size());
        std::string path;
        if (value.starts_with(homeVariable)) {
            path = home;
            value.remove_prefix(homeVariable.size());
        }
        for (; !value.empty() && value.front() != '"'; value.remove_prefix(1)) {
            if (value.front() == '\\' && value.size() > 1)
                value.remove_prefix(1);
            path += value.front();
        }
        if (path.starts_with('/'))
            folder = stringByAppendingPathComponent(path, "");
    }
    return folder;
}

} // namespace

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

std::vector<std::string> XdgSearchPaths::applicationFolders(SearchPathDomain domain) const {
    if (domain == SearchPathDomain::local)
        return withRealPath("/Applications");
    const auto home = homeFolder();
    if (!home)
        return {};
    return withRealPath(stringByAppendingPathComponent(*home, "Applications"));
}

std::vector<std::string> XdgSearchPaths::downloadsFolders() const {
    const BaseFolders folders = baseFolders(m_environment);
    if (!folders.home)
        return {};
    std::string text;
    if (folders.configHome) {
        // A file that cannot be read says nothing.
        std::ignore =
            readFile(stringByAppendingPathComponent(*folders.configHome, "user-dirs.dirs"), text);
    }
    const std::string folder =
        downloadsFolderIn(text, *folders.home)
            .value_or(stringByAppendingPathComponent(*folders.home, "Downloads"));
    return folder == *folders.home ? std::vector<std::string>() : withRealPath(folder);
}

} // namespace kw

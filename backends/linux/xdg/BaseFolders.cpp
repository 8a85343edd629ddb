// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/BaseFolders.h>

#include <KWToolkit/platform/foundation/NSPathUtilities.h>

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <sstream>

namespace kw {

namespace {

std::optional<std::string> absolutePath(const std::string& path) {
    if (!path.starts_with('/'))
        return std::nullopt;
    return stringByAppendingPathComponent(path, "");
}

std::optional<std::string> homeInPasswordDatabase() {
    std::vector<char> room(1024);
    passwd entry;
    passwd* found = nullptr;
    while (::getpwuid_r(::getuid(), &entry, room.data(), room.size(), &found) == ERANGE)
        room.resize(2 * room.size());
    return found ? absolutePath(entry.pw_dir) : std::nullopt;
}

} // namespace

BaseFolders baseFolders(const Environment& environment) {
    BaseFolders folders;
    folders.home = absolutePath(environment("HOME"));
    if (!folders.home)
        folders.home = homeInPasswordDatabase();
    const auto folder = [&](const char* variable, const char* belowHome) {
        const auto path = absolutePath(environment(variable));
        return path || !folders.home
            ? path
            : std::optional(stringByAppendingPathComponent(*folders.home, belowHome));
    };
    folders.configHome = folder("XDG_CONFIG_HOME", ".config");
    folders.dataHome = folder("XDG_DATA_HOME", ".local/share");
    folders.cacheHome = folder("XDG_CACHE_HOME", ".cache");
    folders.configFolders = absolutePaths(environment("XDG_CONFIG_DIRS"));
    if (folders.configFolders.empty())
        folders.configFolders = {"/etc/xdg"};
    folders.dataFolders = absolutePaths(environment("XDG_DATA_DIRS"));
    if (folders.dataFolders.empty())
        folders.dataFolders = {"/usr/local/share", "/usr/share"};
    return folders;
}

std::vector<std::string> absolutePaths(const std::string& list) {
    std::vector<std::string> paths;
    std::istringstream parts(list);
    for (std::string part; std::getline(parts, part, ':');) {
        if (auto path = absolutePath(part))
            paths.push_back(std::move(*path));
    }
    return paths;
}

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSPathUtilities.h>

#include <KWToolkit/platform/Platform.h>

namespace kw {

namespace {

std::string_view withoutSlashesAtEnd(std::string_view path) {
    while (path.size() > 1 && path.back() == '/')
        path.remove_suffix(1);
    return path;
}

} // namespace

std::string stringByAppendingPathComponent(std::string_view path, std::string_view component) {
    while (!path.empty() && component.starts_with('/'))
        component.remove_prefix(1);
    std::string joined(withoutSlashesAtEnd(path));
    if (!component.empty() && !joined.empty() && joined != "/")
        joined += '/';
    joined += component;
    return std::string(withoutSlashesAtEnd(joined));
}

std::string lastPathComponent(std::string_view path) {
    path = withoutSlashesAtEnd(path);
    return std::string(path == "/" ? path : path.substr(path.rfind('/') + 1));
}

std::string stringByDeletingLastPathComponent(std::string_view path) {
    path = withoutSlashesAtEnd(path);
    const auto slash = path.rfind('/');
    return std::string(withoutSlashesAtEnd(path.substr(0, slash == path.npos ? 0 : slash + 1)));
}

std::string stringByDeletingPathExtension(std::string_view path) {
    path = withoutSlashesAtEnd(path);
    const auto name = path.substr(path.rfind('/') + 1);
    const auto dot = name.rfind('.');
    const bool hasExtension = dot != name.npos && dot != 0 && name != "..";
    return std::string(path.substr(0, path.size() - (hasExtension ? name.size() - dot : 0)));
}

std::string stringByExpandingTildeInPath(std::string_view path) {
    const auto home =
        path == "~" || path.starts_with("~/") ? Platform::searchPaths().homeFolder() : std::nullopt;
    return home ? stringByAppendingPathComponent(*home, path.substr(1)) : std::string(path);
}

} // namespace kw

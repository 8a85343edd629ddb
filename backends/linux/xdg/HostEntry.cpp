// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/HostEntry.h>

#include <KWToolkit/platform/foundation/NSBundle.h>
#include <backends/linux/posix/AtomicFile.h>

#include <filesystem>
#include <string_view>

namespace kw {

namespace fs = std::filesystem;

namespace {

constexpr mode_t readableByAll = 0644;

} // namespace

std::optional<std::string> hostEntryName() {
    const std::string identifier = NSBundle::mainBundle().info().identifier;
    if (identifier.empty()
        || identifier.find_first_of(std::string_view("/\0", 2)) != identifier.npos)
        return std::nullopt;
    return identifier + ".desktop";
}

std::error_code readEntry(const std::string& path, std::optional<DesktopEntry>& entry) {
    std::string text;
    const auto error = readFile(path, text);
    if (error && error != std::errc::no_such_file_or_directory)
        return error;
    if (!error)
        entry.emplace(text);
    return {};
}

std::error_code writeEntry(const std::string& path, const DesktopEntry& entry) {
    if (const auto error = createFolders(fs::path(path).parent_path().string()))
        return error;
    return replaceFile(path, entry.text(), readableByAll);
}

std::string hostProgram() {
    const BundleInfo bundle = NSBundle::mainBundle().info();
    std::error_code error;
    return fs::is_regular_file(bundle.bundlePath, error) ? bundle.bundlePath
                                                         : bundle.executablePath;
}

} // namespace kw

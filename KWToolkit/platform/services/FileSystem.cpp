// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/FileSystem.h>

#include <array>
#include <fstream>
#include <system_error>

namespace kw {

namespace fs = std::filesystem;

FileSystem::~FileSystem() = default;

std::vector<FileEntry> StandardFileSystem::enumerate(const std::string& folder) {
    std::vector<FileEntry> entries;
    std::error_code error;
    fs::recursive_directory_iterator entry(
        folder, fs::directory_options::skip_permission_denied, error);
    while (!error && entry != fs::recursive_directory_iterator()) {
        if (const auto date = modificationDate(entry->path()))
            entries.push_back({entry->path().lexically_relative(folder).string(), *date});
        entry.increment(error);
    }
    return entries;
}

bool StandardFileSystem::fileExists(const std::string& path) {
    std::error_code error;
    return fs::exists(path, error);
}

bool StandardFileSystem::createDirectory(const std::string& path) {
    std::error_code error;
    return fs::create_directory(path, error);
}

bool StandardFileSystem::isWritable(const std::string& path) {
    constexpr auto writers =
        fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    return fs::exists(status) && (status.permissions() & writers) != fs::perms::none;
}

std::error_code StandardFileSystem::copyItem(const std::string&, const std::string&) {
    return std::make_error_code(std::errc::function_not_supported);
}

std::optional<std::string> StandardFileSystem::contentsOfFile(const std::string& path) {
    std::error_code error;
    if (path.find('\0') != std::string::npos || !fs::is_regular_file(path, error))
        return std::nullopt;
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return std::nullopt;
    std::string contents;
    std::array<char, 65536> part;
    while (file.read(part.data(), part.size()) || file.gcount() > 0)
        contents.append(part.data(), static_cast<std::size_t>(file.gcount()));
    if (file.bad())
        return std::nullopt;
    return contents;
}

std::optional<FileDate> StandardFileSystem::modificationDate(const fs::path& path) const {
    std::error_code error;
    const auto time = fs::last_write_time(path, error);
    if (error)
        return std::nullopt;
    return std::chrono::time_point_cast<FileDate::duration>(std::chrono::file_clock::to_sys(time));
}

} // namespace kw

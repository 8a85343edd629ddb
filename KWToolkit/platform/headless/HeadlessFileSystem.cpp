// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/headless/HeadlessFileSystem.h>

#include <algorithm>

namespace kw {

std::vector<FileEntry> HeadlessFileSystem::enumerate(const std::string& folder) {
    std::vector<FileEntry> entries;
    for (const Item& item : m_items) {
        if (item.path.starts_with(folder + "/"))
            entries.push_back({item.path.substr(folder.size() + 1), item.date});
    }
    return entries;
}

bool HeadlessFileSystem::fileExists(const std::string& path) {
    return std::ranges::any_of(m_items, [&](const Item& item) { return item.path == path; });
}

bool HeadlessFileSystem::createDirectory(const std::string& path) {
    if (fileExists(path) || !fileExists(path.substr(0, path.rfind('/'))))
        return false;
    add(path);
    return true;
}

bool HeadlessFileSystem::isWritable(const std::string& path) {
    return fileExists(path) && !readOnly.contains(path);
}

std::error_code HeadlessFileSystem::copyItem(const std::string& path, const std::string& to) {
    if (copyError)
        return copyError;
    if (!fileExists(path))
        return std::make_error_code(std::errc::no_such_file_or_directory);
    if (fileExists(to))
        return std::make_error_code(std::errc::file_exists);
    add(to);
    return {};
}

std::optional<std::string> HeadlessFileSystem::contentsOfFile(const std::string& path) {
    const auto found = contents.find(path);
    return found == contents.end() ? std::nullopt : std::optional(found->second);
}

void HeadlessFileSystem::remove(const std::string& path) {
    std::erase_if(m_items, [&](const Item& item) { return item.path == path; });
}

void HeadlessFileSystem::add(const std::string& path, FileDate date) {
    const auto item = std::ranges::find(m_items, path, &Item::path);
    if (item == m_items.end())
        m_items.push_back({path, date});
    else
        item->date = date;
}

} // namespace kw

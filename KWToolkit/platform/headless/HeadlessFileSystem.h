// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/FileSystem.h>

#include <map>
#include <set>

namespace kw {

/// Files and folders in memory.
class KW_EXPORT HeadlessFileSystem final : public FileSystem {
public:
    std::vector<FileEntry> enumerate(const std::string& folder) override;
    bool fileExists(const std::string& path) override;
    /// Only below a path that is there.
    bool createDirectory(const std::string& path) override;

    bool isWritable(const std::string& path) override;
    /// One item; `copyError` where it is set.
    std::error_code copyItem(const std::string& path, const std::string& to) override;
    std::optional<std::string> contentsOfFile(const std::string& path) override;

    std::set<std::string> readOnly; ///< paths that may not be written to
    std::error_code copyError;
    std::map<std::string, std::string> contents; ///< of the files that can be read

    void remove(const std::string& path);
    /// Puts a file or folder there, listed after those that are, or gives it a new date.
    void add(const std::string& path, FileDate date = {});

private:
    struct Item {
        std::string path;
        FileDate date;
    };
    std::vector<Item> m_items;
};

} // namespace kw

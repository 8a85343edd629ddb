// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/FileSystem.h>

namespace kw {

/// Files and folders in memory.
class KW_EXPORT HeadlessFileSystem final : public FileSystem {
public:
    std::vector<FileEntry> enumerate(const std::string& folder) override;
    bool fileExists(const std::string& path) override;
    /// Only below a path that is there.
    bool createDirectory(const std::string& path) override;

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

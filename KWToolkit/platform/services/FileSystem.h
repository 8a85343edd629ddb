// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace kw {

using FileDate = std::chrono::sys_time<std::chrono::nanoseconds>;

struct FileEntry {
    std::string relativePath; ///< to the folder that was listed, such as "a/b"
    FileDate modificationDate; ///< the entry's own where it is a link
};

/// Files and folders. Used on any thread.
class KW_EXPORT FileSystem {
public:
    virtual ~FileSystem();
    /// Whatever is in a folder and in the folders below it, links to folders not followed, in the
    /// order in which the file system lists it. Empty where there is no such folder; what may not
    /// be read is left out.
    virtual std::vector<FileEntry> enumerate(const std::string& folder) = 0;
    /// Whether there is anything at the path; a link that leads nowhere is nothing.
    virtual bool fileExists(const std::string& path) = 0;
    /// Makes one folder. False where there is one, or no folder to put it in.
    virtual bool createDirectory(const std::string& path) = 0;
    /// Whether this user may write to the file, or make and remove files in the folder. False where
    /// there is nothing.
    virtual bool isWritable(const std::string& path) = 0;
    /// Copies a file, or a folder with all that is in it, with modes, times, links and extended
    /// attributes, to a path where nothing is. The copy is complete or absent: what fails half-way
    /// leaves nothing behind, and neither does a crash at the destination's path.
    virtual std::error_code copyItem(const std::string& path, const std::string& to) = 0;
    /// All that is in a file. Nothing where there is none that can be read, and for what is no
    /// regular file: a device or a pipe may never end.
    virtual std::optional<std::string> contentsOfFile(const std::string& path) = 0;
};

/// What the standard library offers.
class KW_EXPORT StandardFileSystem : public FileSystem {
public:
    std::vector<FileEntry> enumerate(const std::string& folder) override;
    bool fileExists(const std::string& path) override;
    bool createDirectory(const std::string& path) override;
    /// Whether the mode lets anybody write.
    bool isWritable(const std::string& path) override;
    /// Not supported: attributes are not the standard library's to copy.
    std::error_code copyItem(const std::string& path, const std::string& to) override;
    std::optional<std::string> contentsOfFile(const std::string& path) override;

protected:
    /// Nothing for an entry that is gone. Here a link's date is that of what it leads to.
    virtual std::optional<FileDate> modificationDate(const std::filesystem::path& path) const;
};

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/PosixFileSystem.h>

#include <backends/linux/posix/FileTreeCopy.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kw {

bool PosixFileSystem::isWritable(const std::string& path) {
    return ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}

std::error_code PosixFileSystem::copyItem(const std::string& path, const std::string& to) {
    return copyFileTree(path, to);
}

std::optional<FileDate> PosixFileSystem::modificationDate(const std::filesystem::path& path) const {
    struct stat status;
    if (::lstat(path.c_str(), &status) != 0)
        return std::nullopt;
    return FileDate(std::chrono::seconds(status.st_mtim.tv_sec)
        + std::chrono::nanoseconds(status.st_mtim.tv_nsec));
}

} // namespace kw

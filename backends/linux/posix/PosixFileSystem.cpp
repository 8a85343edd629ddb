// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/PosixFileSystem.h>

#include <sys/stat.h>

namespace kw {

std::optional<FileDate> PosixFileSystem::modificationDate(const std::filesystem::path& path) const {
    struct stat status;
    if (::lstat(path.c_str(), &status) != 0)
        return std::nullopt;
    return FileDate(std::chrono::seconds(status.st_mtim.tv_sec)
        + std::chrono::nanoseconds(status.st_mtim.tv_nsec));
}

} // namespace kw

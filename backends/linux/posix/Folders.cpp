// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/Folders.h>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <string_view>

namespace kw {

namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

/// For file systems that cannot do it at once.
std::error_code moveInTwoSteps(int folder, const char* name, int newFolder, const char* newName) {
    if (::linkat(folder, name, newFolder, newName, 0) == 0) {
        if (::unlinkat(folder, name, 0) == 0)
            return {};
        const auto error = lastError();
        ::unlinkat(newFolder, newName, 0);
        return error;
    }
    if (errno == EEXIST)
        return lastError();
    // What cannot be linked replaces something of its own kind that was made for it.
    struct stat status;
    if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return lastError();
    const bool isFolder = S_ISDIR(status.st_mode);
    const FileDescriptor made(isFolder ? -1 : uninterrupted([=] {
        return ::openat(newFolder, newName, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    }));
    if (isFolder ? ::mkdirat(newFolder, newName, 0700) != 0 : made.get() < 0)
        return lastError();
    if (::renameat(folder, name, newFolder, newName) == 0)
        return {};
    const auto error = lastError();
    ::unlinkat(newFolder, newName, isFolder ? AT_REMOVEDIR : 0);
    return error;
}

} // namespace

FileDescriptor openFolder(const std::string& path) {
    const char* const name = path.empty() ? "." : path.c_str();
    return FileDescriptor(
        uninterrupted([=] { return ::open(name, O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
}

FileDescriptor openFolderIn(int folder, const char* name) {
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    return FileDescriptor(uninterrupted([=] { return ::openat(folder, name, flags); }));
}

std::error_code syncToDisk(int descriptor) {
    return uninterrupted([=] { return ::fsync(descriptor); }) == 0 ? std::error_code()
                                                                   : lastError();
}

std::error_code syncFolder(int descriptor) {
    const auto error = syncToDisk(descriptor);
    return error == std::errc::invalid_argument ? std::error_code() : error;
}

std::vector<std::string> namesIn(int folder, std::error_code& error) {
    std::vector<std::string> names;
    error.clear();
    // Opened once more, as reading moves the position that all copies of a descriptor share.
    const int again =
        uninterrupted([=] { return ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    const std::unique_ptr<DIR, CloseFolder> opened(again < 0 ? nullptr : ::fdopendir(again));
    if (!opened) {
        error = lastError();
        if (again >= 0)
            ::close(again);
        return names;
    }
    for (;;) {
        errno = 0;
        const dirent* const entry = ::readdir(opened.get());
        if (!entry) {
            error = lastError(); // none at the end
            return names;
        }
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            names.emplace_back(name);
    }
}

std::error_code moveWithoutReplacing(
    int folder, const char* name, int newFolder, const char* newName) {
    if (::renameat2(folder, name, newFolder, newName, RENAME_NOREPLACE) == 0)
        return {};
    if (errno == ENOSYS || errno == EINVAL)
        return moveInTwoSteps(folder, name, newFolder, newName);
    return lastError();
}

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/FileLock.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace kw {

namespace {

bool isAt(const std::string& path, int descriptor) {
    struct stat there;
    struct stat open;
    return ::lstat(path.c_str(), &there) == 0 && ::fstat(descriptor, &open) == 0
        && there.st_dev == open.st_dev && there.st_ino == open.st_ino;
}

} // namespace

FileLock::FileLock(const std::string& path, std::error_code& error) {
    constexpr int flags = O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC;
    do {
        m_file = FileDescriptor(uninterrupted([&] { return ::open(path.c_str(), flags, 0600); }));
        if (get() < 0 || uninterrupted([&] { return ::flock(get(), LOCK_EX); }) != 0) {
            error = lastError();
            return;
        }
    } while (!isAt(path, get()));
    error.clear();
}

FileLock::~FileLock() {
    // Closing is not enough: a process forked meanwhile has the descriptor as well.
    if (get() >= 0)
        ::flock(get(), LOCK_UN);
}

} // namespace kw

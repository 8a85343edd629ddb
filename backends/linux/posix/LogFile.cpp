// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/LogFile.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>

namespace kw {

namespace {

std::string absolutePath(const std::string& path) {
    std::error_code error;
    auto absolute = std::filesystem::absolute(path, error);
    return error ? path : absolute.string();
}

/// Not one of the three that every program knows.
int duplicate(int descriptor) { return ::fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1); }

} // namespace

int LogFile::open(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT, 0646);
    if (descriptor >= 0)
        ::fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    return descriptor;
}

LogFile::LogFile(int descriptor, const std::string& path)
    : m_descriptor(descriptor)
    , m_duplicate(duplicate(descriptor))
    , m_path(absolutePath(path)) {
    rememberFile();
}

LogFile::~LogFile() {
    struct stat status;
    const int descriptor = m_duplicate.load();
    if (::fstat(descriptor, &status) == 0 && isRemembered(status))
        ::close(descriptor);
}

void LogFile::append(std::string_view line, std::int64_t now) {
    if (m_lookout.isDue(now))
        followPath();
    const int descriptor = m_duplicate.load(std::memory_order_relaxed);
    if (m_isTorn.load(std::memory_order_relaxed) && ::write(descriptor, "\n", 1) == 1)
        m_isTorn.store(false, std::memory_order_relaxed);
    const ssize_t count = ::write(descriptor, line.data(), line.size());
    if (count > 0 && static_cast<std::size_t>(count) < line.size())
        m_isTorn.store(true, std::memory_order_relaxed);
}

void LogFile::followPath() {
    struct stat status;
    const int descriptor = m_duplicate.load(std::memory_order_relaxed);
    const bool isOurs = ::fstat(descriptor, &status) == 0 && isRemembered(status);
    if (isOurs && ::stat(m_path.c_str(), &status) == 0 && isRemembered(status))
        return;
    const int opened = open(m_path);
    if (isOurs && opened < 0)
        return; // better the file that was rotated away than none
    if (isOurs) {
        // Under the same numbers, so that no thread ever writes to a descriptor that was closed.
        if (::fstat(m_descriptor, &status) == 0 && isRemembered(status))
            ::dup3(opened, m_descriptor, O_CLOEXEC);
        ::dup3(opened, descriptor, O_CLOEXEC);
    } else {
        // The program has closed all descriptors, and the number is someone else's by now.
        m_duplicate.store(duplicate(opened), std::memory_order_relaxed);
    }
    ::close(opened);
    rememberFile();
}

void LogFile::rememberFile() {
    struct stat status;
    if (::fstat(m_duplicate.load(std::memory_order_relaxed), &status) != 0)
        return;
    m_inode.store(status.st_ino, std::memory_order_relaxed);
    m_device.store(status.st_dev, std::memory_order_relaxed);
}

bool LogFile::isRemembered(const struct stat& status) const {
    return status.st_ino == m_inode.load(std::memory_order_relaxed)
        && status.st_dev == m_device.load(std::memory_order_relaxed);
}

} // namespace kw

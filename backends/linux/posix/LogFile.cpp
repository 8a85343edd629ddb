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

} // namespace

int LogFile::open(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT, 0646);
    if (descriptor >= 0)
        ::fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    return descriptor;
}

LogFile::LogFile(int descriptor, const std::string& path)
    : m_descriptor(descriptor)
    , m_path(absolutePath(path)) {
    rememberFile();
}

void LogFile::append(std::string_view line, std::int64_t now) {
    followPath(now);
    if (m_isTorn.load(std::memory_order_relaxed) && ::write(m_descriptor, "\n", 1) == 1)
        m_isTorn.store(false, std::memory_order_relaxed);
    const ssize_t count = ::write(m_descriptor, line.data(), line.size());
    if (count > 0 && static_cast<std::size_t>(count) < line.size())
        m_isTorn.store(true, std::memory_order_relaxed);
}

void LogFile::followPath(std::int64_t now) {
    struct stat status;
    if (!m_lookout.isDue(now))
        return;
    if (::stat(m_path.c_str(), &status) == 0
        && status.st_ino == m_inode.load(std::memory_order_relaxed)
        && status.st_dev == m_device.load(std::memory_order_relaxed))
        return;
    const int opened = open(m_path);
    if (opened < 0)
        return; // better the file that was rotated away than none
    // Under the same number, so that no thread ever writes to a descriptor that was closed.
    ::dup3(opened, m_descriptor, O_CLOEXEC);
    ::close(opened);
    rememberFile();
}

void LogFile::rememberFile() {
    struct stat status;
    if (::fstat(m_descriptor, &status) != 0)
        return;
    m_inode.store(status.st_ino, std::memory_order_relaxed);
    m_device.store(status.st_dev, std::memory_order_relaxed);
}

} // namespace kw

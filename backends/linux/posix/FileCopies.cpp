// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/FileCopies.h>

#include <fcntl.h>
#include <linux/fs.h>
#include <pthread.h>
#include <sys/ioctl.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <csignal>
#include <new>
#include <string>
#include <utility>

namespace kw {

namespace {

constexpr std::size_t mostThreads = 3;
constexpr std::size_t mostWaiting = 64; // each is two descriptors

/// The mode for a file with that owner: without the bits that would lend another owner's rights.
mode_t modeFor(const struct stat& original, const struct stat& copy) {
    mode_t mode = original.st_mode & 07777;
    if (copy.st_uid != original.st_uid)
        mode &= ~static_cast<mode_t>(S_ISUID);
    if (copy.st_gid != original.st_gid)
        mode &= ~static_cast<mode_t>(S_ISGID);
    return mode;
}

std::error_code copyExtendedAttributes(int from, int to) {
    const ssize_t size = ::flistxattr(from, nullptr, 0);
    if (size <= 0)
        return size == 0 || errno == ENOTSUP ? std::error_code() : lastError();
    std::string names(static_cast<std::size_t>(size), '\0');
    const ssize_t used = ::flistxattr(from, names.data(), names.size());
    if (used < 0)
        return lastError();
    names.resize(static_cast<std::size_t>(used));

    std::vector<char> value(XATTR_SIZE_MAX);
    // An access list may forbid its owner to set other attributes, so it goes last.
    for (const bool isAccessList : {false, true}) {
        for (std::size_t begin = 0; begin < names.size(); begin = names.find('\0', begin) + 1) {
            const char* const name = names.c_str() + begin;
            if (std::string_view(name).starts_with(accessListAttributes) != isAccessList)
                continue;
            const ssize_t length = ::fgetxattr(from, name, value.data(), value.size());
            if (length < 0 && errno == ENODATA) // it was there just now
                continue;
            if (length < 0)
                return lastError();
            if (::fsetxattr(to, name, value.data(), static_cast<std::size_t>(length), 0) != 0
                && !isOptional(errno) && errno != EACCES && errno != E2BIG && errno != ERANGE)
                return lastError();
        }
    }
    return {};
}

std::error_code readAndWrite(int from, int to, off_t count) {
    std::array<char, 65536> bytes;
    while (count > 0) {
        const auto wanted = std::min(bytes.size(), static_cast<std::size_t>(count));
        // NOLINTNEXTLINE(clang-analyzer-unix.BlockInCriticalSection): the lock has been released
        const ssize_t read = uninterrupted([&] { return ::read(from, bytes.data(), wanted); });
        if (read <= 0)
            return read == 0 ? std::error_code() : lastError();
        if (const auto error = writeAll(to, {bytes.data(), static_cast<std::size_t>(read)}))
            return error;
        count -= read;
    }
    return {};
}

/// Copies so many bytes, or as many as there are, from and to where the files stand.
std::error_code copyBytes(int from, int to, off_t count) {
    while (count > 0) {
        const ssize_t copied = uninterrupted([=] {
            return ::copy_file_range(
                from, nullptr, to, nullptr, static_cast<std::size_t>(count), 0);
        });
        if (copied <= 0)
            break;
        count -= copied;
    }
    // Whatever that cannot do, these can, or they tell why not.
    return readAndWrite(from, to, count);
}

std::error_code copyWithHoles(int from, int to, off_t size) {
    for (off_t end = 0;;) {
        const off_t begin = ::lseek(from, end, SEEK_DATA);
        if (begin < 0 && errno != ENXIO) // which says that the rest is a hole
            return end == 0 ? copyBytes(from, to, size) : lastError();
        if (begin < 0 || begin >= size)
            return ::ftruncate(to, size) == 0 ? std::error_code() : lastError();
        end = std::min(::lseek(from, begin, SEEK_HOLE), size);
        if (end < 0 || ::lseek(from, begin, SEEK_SET) < 0 || ::lseek(to, begin, SEEK_SET) < 0)
            return lastError();
        if (const auto error = copyBytes(from, to, end - begin))
            return error;
    }
}

} // namespace

/// Makes an open file or folder, whose content is complete, what the original is.
std::error_code copyAttributes(int from, const struct stat& original, int to) {
    struct stat copy;
    if (::fstat(to, &copy) != 0)
        return lastError();
    if (copy.st_uid != original.st_uid || copy.st_gid != original.st_gid) {
        if (::fchown(to, original.st_uid, original.st_gid) != 0
            && (!isOptional(errno)
                || (::fchown(to, static_cast<uid_t>(-1), original.st_gid) != 0
                    && !isOptional(errno))))
            return lastError();
        if (::fstat(to, &copy) != 0)
            return lastError();
    }
    if (const auto error = copyExtendedAttributes(from, to))
        return error;
    if (::fchmod(to, modeFor(original, copy)) != 0 && !isOptional(errno))
        return lastError();
    return ::futimens(to, timesOf(original).data()) == 0 ? std::error_code() : lastError();
}

FileCopies::~FileCopies() {
    {
        const std::lock_guard lock(m_mutex);
        m_waiting.clear();
        m_isEnding = true;
    }
    m_changed.notify_all();
    for (std::thread& thread : m_threads)
        thread.join();
}

std::error_code FileCopies::add(File file) {
    if (m_threads.size() < mostThreads)
        startThread();
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_waiting.size() < mostWaiting; });
    if (!m_error)
        m_waiting.push_back(std::move(file));
    m_changed.notify_all();
    return m_error;
}

std::error_code FileCopies::finish() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_waiting.empty() && m_underWay == 0; });
    return m_error;
}

void FileCopies::startThread() {
    sigset_t all, former; // the host's handlers expect the host's threads
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &former);
    try {
        m_threads.emplace_back([this] { work(); });
    } catch (...) {
        ::pthread_sigmask(SIG_SETMASK, &former, nullptr);
        if (m_threads.empty())
            throw;
        return; // those that run do it
    }
    ::pthread_sigmask(SIG_SETMASK, &former, nullptr);
}

void FileCopies::work() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return !m_waiting.empty() || m_isEnding; });
        if (m_waiting.empty())
            return;
        std::error_code error;
        {
            File file = std::move(m_waiting.front());
            m_waiting.pop_front();
            ++m_underWay;
            lock.unlock();
            m_changed.notify_all();
            error = copy(file);
        }
        lock.lock();
        --m_underWay;
        if (error && !m_error) {
            m_error = error;
            m_waiting.clear();
        }
        m_changed.notify_all();
    }
}

std::error_code FileCopies::copy(File& file) {
    try {
        constexpr off_t blockUnit = 512;
        const int from = file.from.get(), to = file.to.get();
        if (!m_canClone || ::ioctl(to, FICLONE, from) != 0) {
            m_canClone = false; // not here, and not for the next file
            const auto error = file.original.st_blocks * blockUnit < file.original.st_size
                ? copyWithHoles(from, to, file.original.st_size)
                : copyBytes(from, to, SSIZE_MAX);
            if (error)
                return error;
        }
        // The disk has work to do from now on, and less is left for the sync at the end.
        ::sync_file_range(to, 0, 0, SYNC_FILE_RANGE_WRITE);
        if (const auto error = copyAttributes(from, file.original, to))
            return error;
        return file.to.close(); // some file systems tell only now what could not be written
    } catch (const std::bad_alloc&) {
        return std::make_error_code(std::errc::not_enough_memory);
    }
}

} // namespace kw

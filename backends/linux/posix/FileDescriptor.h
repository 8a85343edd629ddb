// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <system_error>
#include <utility>

namespace kw {

/// Owns a file descriptor; -1 is none.
class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor = -1)
        : m_descriptor(descriptor) { }
    FileDescriptor(FileDescriptor&& other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1)) { }
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }
    ~FileDescriptor() {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }

    int get() const { return m_descriptor; }

    /// Closes it now, for what that has to tell.
    std::error_code close() {
        if (m_descriptor < 0 || ::close(std::exchange(m_descriptor, -1)) == 0 || errno == EINTR)
            return {};
        return {errno, std::generic_category()};
    }

private:
    int m_descriptor;
};

/// Repeats a system call for as long as signals interrupt it.
template <class Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// What the last system call of the thread failed with.
inline std::error_code lastError() { return {errno, std::generic_category()}; }

/// Writes all of the bytes, in as many calls as it takes.
inline std::error_code writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count =
            uninterrupted([&] { return ::write(descriptor, bytes.data(), bytes.size()); });
        if (count < 0)
            return lastError();
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return {};
}

} // namespace kw

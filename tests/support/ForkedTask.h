// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <backends/linux/posix/FileDescriptor.h>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>

namespace kw::test {

/// A function that runs in a process forked for it. It must not use the test framework; what it has
/// to say it writes to `output`.
class ForkedTask {
public:
    explicit ForkedTask(const std::function<void(int output)>& task) {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0)
            throw std::system_error(errno, std::generic_category(), "pipe2");
        m_output = FileDescriptor(ends[0]);
        const FileDescriptor input(ends[1]);
        m_process = ::fork();
        if (m_process == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            try {
                task(input.get());
                ::_exit(0);
            } catch (...) { // the test's objects are not this process's to destroy
                ::_exit(1);
            }
        }
    }
    ~ForkedTask() { kill(); }
    ForkedTask(const ForkedTask&) = delete;
    ForkedTask& operator=(const ForkedTask&) = delete;

    /// Waits until there is output to read, or the process ended. False when the time is up.
    bool waitForOutput(long nanoseconds) const {
        pollfd polled {m_output.get(), POLLIN, 0};
        const timespec timeout {0, nanoseconds};
        return ::ppoll(&polled, 1, &timeout, nullptr) > 0;
    }
    /// Waits for output and returns it. Empty when the process has ended.
    std::string readSome() const {
        char bytes[4096];
        const auto count = ::read(m_output.get(), bytes, sizeof bytes);
        return {bytes, static_cast<std::size_t>(count > 0 ? count : 0)};
    }
    /// All output until the process ends, and how it ended unless it did so by itself.
    std::string result() {
        std::string all;
        for (std::string some = readSome(); !some.empty(); some = readSome())
            all += some;
        const int status = wait();
        return status == 0 ? all : all + " (wait status " + std::to_string(status) + ")";
    }
    void kill() {
        if (m_process > 0) {
            ::kill(m_process, SIGKILL);
            wait();
        }
    }

private:
    int wait() {
        int status = 0;
        ::waitpid(std::exchange(m_process, -1), &status, 0);
        return status;
    }

    pid_t m_process = -1;
    FileDescriptor m_output;
};

inline void say(int output, std::string_view text) {
    static_cast<void>(::write(output, text.data(), text.size()) < 0);
}

} // namespace kw::test

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <tests/support/ChildProcess.h>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <utility>

namespace kw::test {

namespace {

constexpr int readTimeout = 10'000; // milliseconds

} // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command,
    const std::map<std::string, std::optional<std::string>>& environment) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe2");
    m_output = FileDescriptor(ends[0]);
    const FileDescriptor input(ends[1]);

    std::vector<char*> arguments;
    for (const std::string& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);

    m_process = ::fork();
    if (m_process == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        ::dup2(input.get(), STDOUT_FILENO);
        ::dup2(input.get(), STDERR_FILENO);
        for (const auto& [name, value] : environment)
            value ? ::setenv(name.c_str(), value->c_str(), 1) : ::unsetenv(name.c_str());
        ::execvp(arguments[0], arguments.data());
        ::_exit(127);
    }
}

ChildProcess::~ChildProcess() {
    if (m_process > 0) {
        signal(SIGKILL);
        wait();
    }
}

std::optional<std::string> ChildProcess::readLine() {
    for (;;) {
        if (const auto end = m_read.find('\n'); end != std::string::npos) {
            std::string line = m_read.substr(0, end);
            m_read.erase(0, end + 1);
            return line;
        }
        pollfd output {m_output.get(), POLLIN, 0};
        char bytes[512];
        if (::poll(&output, 1, readTimeout) <= 0)
            return std::nullopt;
        const ssize_t count = ::read(m_output.get(), bytes, sizeof bytes);
        if (count <= 0)
            return std::nullopt;
        m_read.append(bytes, static_cast<std::size_t>(count));
    }
}

void ChildProcess::signal(int number) { ::kill(m_process, number); }

int ChildProcess::wait() {
    int status = 0;
    ::waitpid(std::exchange(m_process, -1), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

} // namespace kw::test

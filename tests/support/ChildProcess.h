// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <backends/linux/posix/FileDescriptor.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace kw::test {

/// A program that runs beside the test and dies with it.
class ChildProcess {
public:
    /// Starts a program found by PATH. Of `environment`, what is set goes in, what is nothing out.
    explicit ChildProcess(const std::vector<std::string>& command,
        const std::map<std::string, std::optional<std::string>>& environment = {});
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// The next line of what the program writes to standard output or error, without its end.
    /// Nothing at the end of the output and after ten seconds.
    std::optional<std::string> readLine();
    void signal(int number);
    pid_t identifier() const { return m_process; }
    /// Waits for the end. The exit code, or the negative number of the signal that ended it.
    int wait();

private:
    pid_t m_process = -1;
    FileDescriptor m_output;
    std::string m_read;
};

} // namespace kw::test

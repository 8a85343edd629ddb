// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/DetachedProcess.h>

#include <backends/linux/posix/FileDescriptor.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace kw {

namespace {

// In the forked processes only async-signal-safe calls: other threads may have held any lock.

void resetSignals() {
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    for (int number = 1; number < NSIG; ++number)
        ::sigaction(number, &action, nullptr);
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

[[noreturn]] void execute(char* const* arguments, int errorOutput) {
    ::setsid();
    resetSignals();
    const int nothing = ::open("/dev/null", O_RDONLY);
    if (nothing > STDIN_FILENO)
        ::dup2(nothing, STDIN_FILENO);
    if (nothing > STDERR_FILENO)
        ::close(nothing);
    ::execvp(arguments[0], arguments);
    const int error = errno;
    static_cast<void>(::write(errorOutput, &error, sizeof error) < 0);
    ::_exit(127);
}

} // namespace

std::error_code startDetached(const std::vector<std::string>& arguments) {
    if (arguments.empty())
        return std::make_error_code(std::errc::invalid_argument);
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (const std::string& argument : arguments)
        pointers.push_back(const_cast<char*>(argument.c_str()));
    pointers.push_back(nullptr);

    // The program's start closes its end; what comes before that is the error.
    std::array<int, 2> ends {};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return lastError();
    const FileDescriptor output(ends[0]);
    FileDescriptor input(ends[1]);

    const pid_t child = ::fork();
    if (child < 0)
        return lastError();
    if (child == 0) {
        const pid_t grandchild = ::fork();
        if (grandchild == 0)
            execute(pointers.data(), input.get());
        const int error = grandchild < 0 ? errno : 0;
        if (error != 0)
            static_cast<void>(::write(input.get(), &error, sizeof error) < 0);
        ::_exit(0);
    }
    input = FileDescriptor();
    int status = 0;
    uninterrupted([&] { return ::waitpid(child, &status, 0); });
    int error = 0;
    const auto count = uninterrupted([&] { return ::read(output.get(), &error, sizeof error); });
    return count > 0 ? std::error_code(error, std::generic_category()) : std::error_code();
}

} // namespace kw

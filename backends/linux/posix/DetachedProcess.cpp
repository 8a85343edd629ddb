// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/DetachedProcess.h>

#include <backends/linux/posix/FileDescriptor.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <string_view>

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

void execute(char* const* arguments, char* const* environment, int errorOutput) {
    ::setsid();
    const int nothing = ::open("/dev/null", O_RDONLY);
    if (nothing > STDIN_FILENO)
        ::dup2(nothing, STDIN_FILENO);
    if (nothing > STDERR_FILENO)
        ::close(nothing);
    ::execvpe(arguments[0], arguments, environment);
    const int error = errno;
    static_cast<void>(::write(errorOutput, &error, sizeof error) < 0);
}

std::vector<char*> pointersTo(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (const std::string& text : texts)
        pointers.push_back(const_cast<char*>(text.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

/// The environment with a folder put in front of PATH.
std::vector<std::string> environmentWith(const std::string& firstInPath) {
    constexpr std::string_view path = "PATH=", usualFolders = "/usr/local/bin:/usr/bin:/bin";
    std::vector<std::string> variables;
    std::string folders(usualFolders); // which a shell without PATH would look in
    for (char* const* variable = environ; variable && *variable; ++variable) {
        const std::string_view text = *variable;
        if (!text.starts_with(path))
            variables.emplace_back(text);
        else if (text != path)
            folders = text.substr(path.size());
    }
    variables.push_back(std::string(path).append(firstInPath).append(":").append(folders));
    return variables;
}

} // namespace

std::error_code forkDetached(const std::function<void(int errorOutput)>& run) {
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
        if (grandchild == 0) {
            resetSignals();
            run(input.get());
            ::_exit(127);
        }
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

std::error_code startDetached(
    const std::vector<std::string>& arguments, const std::string& firstInPath) {
    const auto isCut = [](const std::string& text) { return text.find('\0') != text.npos; };
    if (arguments.empty() || std::ranges::any_of(arguments, isCut) || isCut(firstInPath))
        return std::make_error_code(std::errc::invalid_argument);
    const std::vector<char*> pointers = pointersTo(arguments);
    const std::vector<std::string> variables =
        firstInPath.empty() ? std::vector<std::string>() : environmentWith(firstInPath);
    const std::vector<char*> changed = pointersTo(variables);
    char* const* const environment = firstInPath.empty() ? environ : changed.data();
    return forkDetached(
        [&](int errorOutput) { execute(pointers.data(), environment, errorOutput); });
}

} // namespace kw

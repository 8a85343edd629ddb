// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/PolkitAuthorizationService.h>

#include <backends/linux/posix/DetachedProcess.h>
#include <backends/linux/posix/FileDescriptor.h>
#include <backends/linux/xdg/ApplicationFolder.h>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <utility>

namespace kw {

namespace {

constexpr std::size_t longestRequest = 65536; // bytes, with a zero after each argument
constexpr std::size_t mostArguments = 256;

void tell(int socket, int number) {
    static_cast<void>(
        uninterrupted([&] { return ::send(socket, &number, sizeof number, MSG_NOSIGNAL); }));
}

std::optional<int> hear(int socket) {
    int number = 0;
    const auto size = uninterrupted([&] { return ::recv(socket, &number, sizeof number, 0); });
    return size == sizeof number ? std::optional(number) : std::nullopt;
}

/// Starts a program. 0, or the errno that says why it does not run.
int start(char* const* arguments, pid_t& child) {
    std::array<int, 2> ends {};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return errno;
    const FileDescriptor output(ends[0]);
    FileDescriptor input(ends[1]);
    child = ::fork();
    if (child < 0)
        return errno;
    if (child == 0) {
        ::execv(arguments[0], arguments);
        const int error = errno;
        static_cast<void>(::write(input.get(), &error, sizeof error) < 0);
        ::_exit(127);
    }
    input = FileDescriptor();
    int error = 0;
    static_cast<void>(uninterrupted([&] { return ::read(output.get(), &error, sizeof error); }));
    if (error != 0)
        uninterrupted([=] { return ::waitpid(child, nullptr, 0); });
    return error;
}

/// What the process that starts an authorization's programs does: for each request it answers with
/// the error of the start, and without one with the status of the end. Only async-signal-safe
/// calls.
void serve(int socket) {
    std::array<char, longestRequest> request;
    std::array<char*, mostArguments + 1> arguments;
    for (;;) {
        const ssize_t size =
            uninterrupted([&] { return ::recv(socket, request.data(), request.size(), 0); });
        if (size <= 0)
            return;
        char** next = arguments.data();
        for (char* text = request.data(); text < request.data() + size;
            text += std::strlen(text) + 1)
            *next++ = text;
        *next = nullptr;
        pid_t child = -1;
        const int error = start(arguments.data(), child);
        tell(socket, error);
        if (error != 0)
            continue;
        int status = 0;
        uninterrupted([&] { return ::waitpid(child, &status, 0); });
        tell(socket, status);
    }
}

/// Starts programs through a process that is not this one's child. So what the host does with
/// SIGCHLD, and whichever children it waits for, takes no status away.
class PolkitAuthorization final : public Authorization {
public:
    explicit PolkitAuthorization(std::filesystem::path pkexec)
        : m_pkexec(std::move(pkexec)) { }

    AuthorizationStatus copyRights(const std::string& right, std::uint32_t flags) override {
        if (right != kAuthorizationRightExecute)
            return AuthorizationStatus::denied;
        const bool mayAsk = (flags & kAuthorizationFlagInteractionAllowed) != 0;
        // What pkcheck prints is nobody's to read.
        const bool isRun = mayAsk
            ? run({m_pkexec.string(), "/bin/true"})
            : run({"/bin/sh", "-c", R"(exec "$0" "$@" >/dev/null 2>&1)",
                  (m_pkexec.parent_path() / "pkcheck").string(), "--action-id",
                  "org.freedesktop.policykit.exec", "--process", std::to_string(::getpid())});
        const int status = isRun ? nextStatus().value_or(-1) : -1;
        if (status == 0)
            return AuthorizationStatus::granted;
        return mayAsk && WIFEXITED(status) && WEXITSTATUS(status) == dismissed
            ? AuthorizationStatus::canceled
            : AuthorizationStatus::denied;
    }

    bool executeWithPrivileges(
        const std::string& program, const std::vector<std::string>& arguments) override {
        if (!program.starts_with('/'))
            return false;
        std::vector<std::string> command {m_pkexec.string(), program};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return run(command);
    }

    std::optional<int> wait() override {
        const auto status = nextStatus();
        const bool isRefused = status && WIFEXITED(*status)
            && (WEXITSTATUS(*status) == dismissed || WEXITSTATUS(*status) == refused);
        return isRefused ? std::nullopt : status;
    }

private:
    // What pkexec exits with where it does not run the program.
    static constexpr int dismissed = 126, refused = 127;

    std::optional<int> nextStatus() {
        return std::exchange(m_isRunning, false) ? hear(m_starter.get()) : std::nullopt;
    }

    bool run(const std::vector<std::string>& command) {
        std::string request;
        for (const std::string& argument : command) {
            if (argument.find('\0') != argument.npos)
                return false;
            request.append(argument).push_back('\0');
        }
        if (request.size() > longestRequest || command.size() > mostArguments || !hasStarter())
            return false;
        nextStatus(); // one after another
        if (uninterrupted([&] {
                return ::send(m_starter.get(), request.data(), request.size(), MSG_NOSIGNAL);
            })
            < 0)
            return false;
        m_isRunning = hear(m_starter.get()) == 0;
        return m_isRunning;
    }

    bool hasStarter() {
        if (m_starter.get() >= 0)
            return true;
        std::array<int, 2> ends {};
        if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
            return false;
        FileDescriptor here(ends[0]);
        const FileDescriptor there(ends[1]);
        const auto error = forkDetached([&](int errorOutput) {
            // Nothing of the host's stays open: its locks, its connections.
            constexpr int firstOfHost = STDERR_FILENO + 1;
            const int socket = ::fcntl(there.get(), F_DUPFD_CLOEXEC, firstOfHost);
            for (const int used : {here.get(), there.get(), errorOutput})
                ::close(used);
            if (socket > firstOfHost)
                ::close_range(firstOfHost, static_cast<unsigned>(socket) - 1, 0);
            ::close_range(static_cast<unsigned>(socket) + 1, ~0U, 0);
            serve(socket);
            ::_exit(0);
        });
        if (!error)
            m_starter = std::move(here);
        return !error;
    }

    std::filesystem::path m_pkexec;
    FileDescriptor m_starter; ///< the socket to the process that starts the programs
    bool m_isRunning = false;
};

} // namespace

PolkitAuthorizationService::PolkitAuthorizationService(Environment environment)
    : m_environment(std::move(environment)) { }

std::unique_ptr<Authorization> PolkitAuthorizationService::create() {
    auto pkexec = findProgram("pkexec", m_environment("PATH"));
    return pkexec ? std::make_unique<PolkitAuthorization>(std::move(*pkexec)) : nullptr;
}

} // namespace kw

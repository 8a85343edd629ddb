// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/PollRunLoop.h>

#include <KWToolkit/platform/services/Clock.h>

#include <poll.h>
#include <sys/eventfd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <ctime>
#include <system_error>
#include <utility>
#include <vector>

namespace kw {

namespace {

// Far beyond what a program runs for, and within what poll takes.
constexpr double longestWait = 1e9;

timespec timespecOf(double seconds) {
    const double whole = std::floor(seconds);
    return {static_cast<std::time_t>(whole), static_cast<long>((seconds - whole) * 1e9)};
}

} // namespace

PollRunLoop::PollRunLoop()
    : m_wakeUp(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (m_wakeUp.get() < 0)
        throw std::system_error(errno, std::generic_category(), "eventfd");
}

RunLoop::Watch PollRunLoop::watchDescriptor(int descriptor, std::function<void()> readable) {
    const Watch watch {++m_lastWatch};
    m_watches.emplace(watch,
        Watched {descriptor, std::make_shared<const std::function<void()>>(std::move(readable))});
    return watch;
}

void PollRunLoop::unwatch(Watch watch) { m_watches.erase(watch); }

double PollRunLoop::now() const { return SteadyClock().now(); }

bool PollRunLoop::wait(double seconds) {
    std::vector<pollfd> polled {{m_wakeUp.get(), POLLIN, 0}};
    std::vector<Watch> watches;
    for (const auto& [watch, watched] : m_watches) {
        polled.push_back({watched.descriptor, POLLIN, 0});
        watches.push_back(watch);
    }

    const timespec timeout = timespecOf(std::min(seconds, longestWait));
    if (::ppoll(polled.data(), polled.size(), &timeout, nullptr) <= 0)
        return false; // time is up, or a signal came: the caller sees what is due now
    if (polled[0].revents != 0) {
        eventfd_t count;
        ::eventfd_read(m_wakeUp.get(), &count);
    }

    const std::uint64_t thisWait = ++m_lastWait;
    bool handled = false;
    for (std::size_t i = 0; i < watches.size(); ++i) {
        if (polled[i + 1].revents == 0)
            continue;
        const auto watched = m_watches.find(watches[i]);
        if (watched == m_watches.end())
            continue;
        const auto readable = watched->second.readable; // outlives an unwatch by itself
        handled = true;
        (*readable)();
        // A loop nested in the call may have emptied the descriptors that are still to come.
        if (m_lastWait != thisWait)
            break;
    }
    return handled;
}

void PollRunLoop::wake() { ::eventfd_write(m_wakeUp.get(), 1); }

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/dbus/SessionWorkspace.h>

#include <KWToolkit/platform/Platform.h>
#include <backends/linux/dbus/SdBus.h>

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string_view>

namespace kw {

namespace {

constexpr std::chrono::milliseconds longestWait {100};
constexpr double keptFor = 3; // seconds
constexpr double keptWithoutAnswerFor = 30;

/// Is not flushed at the end, which would wait for a bus that hangs.
using HastyBus = std::unique_ptr<sd_bus, SdBusUnref<sd_bus, sd_bus_close_unref>>;

struct Setting {
    const char* group;
    const char* key;
    const char* type;
    std::uint32_t reduced; // the value that asks for less movement
    bool isDecidedByOthers; // whether another value means that there is no preference
};
/// The first that has a preference decides.
constexpr Setting settings[] {
    {"org.freedesktop.appearance", "reduced-motion", "u", 1, true},
    {"org.gnome.desktop.interface", "enable-animations", "b", 0, false},
};

struct Answer {
    bool isThere = false;
    std::optional<bool> values[std::size(settings)];
};

/// Reads the values of a group, "a{sv}".
void readValues(sd_bus_message* reply, std::string_view group, Answer& answer) {
    const char* key = nullptr;
    while (sd_bus_message_enter_container(reply, 'e', "sv") > 0
        && sd_bus_message_read(reply, "s", &key) > 0) {
        bool isRead = false;
        for (std::size_t i = 0; i < std::size(settings); ++i) {
            std::uint32_t value = 0;
            if (group == settings[i].group && std::string_view(key) == settings[i].key
                && sd_bus_message_read(reply, "v", settings[i].type, &value) > 0) {
                if (value == settings[i].reduced || !settings[i].isDecidedByOthers)
                    answer.values[i] = value == settings[i].reduced;
                isRead = true;
            }
        }
        if (!isRead)
            sd_bus_message_skip(reply, "v");
        sd_bus_message_exit_container(reply);
    }
}

int readAnswer(sd_bus_message* reply, void* data, sd_bus_error*) {
    auto& answer = *static_cast<Answer*>(data);
    answer.isThere = true;
    if (sd_bus_message_is_method_error(reply, nullptr)
        || sd_bus_message_enter_container(reply, 'a', "{sa{sv}}") <= 0)
        return 0;
    const char* group = nullptr;
    while (sd_bus_message_enter_container(reply, 'e', "sa{sv}") > 0
        && sd_bus_message_read(reply, "s", &group) > 0
        && sd_bus_message_enter_container(reply, 'a', "{sv}") > 0) {
        readValues(reply, group, answer);
        sd_bus_message_exit_container(reply);
        sd_bus_message_exit_container(reply);
    }
    return 0;
}

/// Calls without waiting for the bus, which may hang before it even knows this process.
Answer askPortal() {
    using Clock = std::chrono::steady_clock;
    Answer answer;
    sd_bus* opened = nullptr;
    const int error = sd_bus_open_user(&opened);
    const HastyBus bus(opened);
    answer.isThere = error < 0; // nobody is there to wait for
    if (error < 0
        || sd_bus_call_method_async(bus.get(), nullptr, "org.freedesktop.portal.Desktop",
               "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings", "ReadAll",
               readAnswer, &answer, "as", 2, settings[0].group, settings[1].group)
            < 0)
        return answer;
    const auto deadline = Clock::now() + longestWait;
    while (!answer.isThere) {
        const int progress = sd_bus_process(bus.get(), nullptr);
        if (progress > 0)
            continue;
        const auto left =
            std::chrono::duration_cast<std::chrono::microseconds>(deadline - Clock::now()).count();
        if (progress < 0 || left <= 0)
            break;
        if (const int waited = sd_bus_wait(bus.get(), static_cast<std::uint64_t>(left));
            waited < 0 && waited != -EINTR)
            break;
    }
    return answer;
}

} // namespace

bool SessionWorkspace::accessibilityDisplayShouldReduceMotion() {
    const std::scoped_lock lock(m_mutex);
    const double now = Platform::clock().now();
    if (now < m_nextQuestion)
        return m_reducesMotion;
    const Answer answer = askPortal();
    std::optional<bool> reduces;
    for (const auto& value : answer.values)
        reduces = reduces ? reduces : value;
    m_reducesMotion = reduces ? *reduces : XdgWorkspace::accessibilityDisplayShouldReduceMotion();
    m_nextQuestion = now + (answer.isThere ? keptFor : keptWithoutAnswerFor);
    return m_reducesMotion;
}

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/dbus/DBusUrlEventService.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSAppleEventManager.h>
#include <KWToolkit/platform/foundation/NSBundle.h>
#include <KWToolkit/platform/foundation/Unicode.h>

#include <backends/linux/dbus/SdBus.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <utility>

namespace kw {

namespace {

constexpr const char* interface = "org.freedesktop.Application";
constexpr std::uint64_t answerTimeout = 3'000'000; // microseconds
constexpr int mostAttempts = 3; // at a name whose owners come and go

/// "/org/example/My_App" of "org.example.My-App".
std::string pathOf(std::string identifier) {
    std::ranges::replace(identifier, '.', '/');
    std::ranges::replace(identifier, '-', '_');
    return "/" + identifier;
}

/// With escapes for bytes that no string on the bus can hold.
std::string busString(std::string_view url) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string valid;
    while (!url.empty()) {
        const std::string_view before = url;
        if (url.front() != '\0' && takeCodePoint(url)) {
            valid += before.substr(0, before.size() - url.size());
            continue;
        }
        const auto byte = static_cast<unsigned char>(url.front());
        (valid += '%') += {digits[byte >> 4], digits[byte & 0xF]};
        url.remove_prefix(1);
    }
    return valid;
}

void deliver(const NSAppleEventDescriptor& event) {
    NSAppleEventManager::sharedAppleEventManager().dispatch(event);
}

/// From the run loop, since what handlers throw must not pass through the bus library.
void deliverSoon(NSAppleEventDescriptor event) {
    Platform::runLoop().perform([event = std::move(event)] { deliver(event); });
}

int handleOpen(sd_bus_message* call, void*, sd_bus_error*) {
    if (const int error = sd_bus_message_enter_container(call, 'a', "s"); error < 0)
        return error;
    const char* url = nullptr;
    while (sd_bus_message_read(call, "s", &url) > 0)
        deliverSoon({kInternetEventClass, kAEGetURL, url});
    return sd_bus_reply_method_return(call, "");
}

int handleActivate(sd_bus_message* call, void*, sd_bus_error*) {
    // Where nobody asks for it, it does not wait for somebody who does.
    if (NSAppleEventManager::sharedAppleEventManager().hasEventHandler(
            kCoreEventClass, kAEReopenApplication))
        deliverSoon({kCoreEventClass, kAEReopenApplication, {}});
    return sd_bus_reply_method_return(call, "");
}

int handleActivateAction(sd_bus_message*, void*, sd_bus_error* error) {
    return sd_bus_error_set_const(
        error, SD_BUS_ERROR_INVALID_ARGS, "This application has no actions.");
}

const sd_bus_vtable applicationMethods[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("Activate", "a{sv}", "", handleActivate, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Open", "asa{sv}", "", handleOpen, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD(
        "ActivateAction", "sava{sv}", "", handleActivateAction, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

/// What a desktop gives a program that it starts, so that its window may come to the front.
int appendPlatformData(sd_bus_message* message) {
    constexpr std::pair<const char*, const char*> tokens[] {
        {"desktop-startup-id", "DESKTOP_STARTUP_ID"},
        {"activation-token", "XDG_ACTIVATION_TOKEN"},
    };
    int error = sd_bus_message_open_container(message, 'a', "{sv}");
    for (const auto& [key, variable] : tokens) {
        const char* const value = std::getenv(variable);
        if (error >= 0 && value)
            error = sd_bus_message_append(message, "{sv}", key, "s", busString(value).c_str());
    }
    return error < 0 ? error : sd_bus_message_close_container(message);
}

int appendURLs(sd_bus_message* message, const std::vector<std::string>& urls) {
    int error = sd_bus_message_open_container(message, 'a', "s");
    for (const std::string& url : urls) {
        if (error >= 0)
            error = sd_bus_message_append(message, "s", busString(url).c_str());
    }
    return error < 0 ? error : sd_bus_message_close_container(message);
}

} // namespace

/// The connection to the bus, served by the run loop of the thread that made it.
class DBusUrlEventService::Connection {
public:
    static std::unique_ptr<Connection> open() {
        sd_bus* bus = nullptr;
        if (sd_bus_open_user(&bus) < 0)
            return nullptr;
        sd_bus_set_method_call_timeout(bus, answerTimeout); // a bus may hang, too
        return std::make_unique<Connection>(Bus(bus));
    }

    explicit Connection(Bus bus)
        : m_bus(std::move(bus))
        , m_loop(Platform::runLoop())
        , m_watch(m_loop.watchDescriptor(sd_bus_get_fd(m_bus.get()), [this] { process(); })) { }
    ~Connection() { m_loop.unwatch(m_watch); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    bool isOpen() const { return sd_bus_is_open(m_bus.get()) > 0; }

    Claim claim(const std::string& identifier) {
        if (m_isOwner)
            return Claim::owned;
        if (!m_hasMethods
            && sd_bus_add_object_vtable(m_bus.get(), nullptr, pathOf(identifier).c_str(), interface,
                   applicationMethods, nullptr)
                < 0)
            return Claim::impossible;
        m_hasMethods = true;
        const int result = sd_bus_request_name(m_bus.get(), identifier.c_str(), 0);
        processSoon();
        m_isOwner = result >= 0 || result == -EALREADY;
        if (m_isOwner)
            return Claim::owned;
        return result == -EEXIST ? Claim::taken : Claim::impossible;
    }

    /// 0, or the negative number of the error.
    int sendTo(const std::string& identifier, const std::vector<std::string>& urls) {
        sd_bus_message* made = nullptr;
        int error = sd_bus_message_new_method_call(m_bus.get(), &made, identifier.c_str(),
            pathOf(identifier).c_str(), interface, urls.empty() ? "Activate" : "Open");
        const Message message(made);
        if (error >= 0 && !urls.empty())
            error = appendURLs(message.get(), urls);
        if (error >= 0)
            error = appendPlatformData(message.get());
        if (error >= 0)
            error = sd_bus_call(m_bus.get(), message.get(), answerTimeout, nullptr, nullptr);
        processSoon();
        return std::min(error, 0);
    }

private:
    void process() {
        while (sd_bus_process(m_bus.get(), nullptr) > 0) { }
        if (!isOpen())
            m_loop.unwatch(std::exchange(m_watch, RunLoop::Watch::none));
    }

    /// What came while a call was waiting for its answer is in memory, and not announced again.
    void processSoon() {
        m_loop.perform([this, alive = std::weak_ptr(m_alive)] {
            if (!alive.expired())
                process();
        });
    }

    Bus m_bus;
    RunLoop& m_loop;
    RunLoop::Watch m_watch;
    bool m_hasMethods = false;
    bool m_isOwner = false;
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
};

DBusUrlEventService::DBusUrlEventService() = default;
DBusUrlEventService::~DBusUrlEventService() = default;

DBusUrlEventService::Claim DBusUrlEventService::claim() {
    const std::string identifier = NSBundle::mainBundle().info().identifier;
    if (sd_bus_service_name_is_valid(identifier.c_str()) <= 0 || identifier.starts_with(':'))
        return Claim::impossible;
    if (!m_connection || !m_connection->isOpen())
        m_connection = Connection::open();
    return m_connection ? m_connection->claim(identifier) : Claim::impossible;
}

bool DBusUrlEventService::listen() { return claim() == Claim::owned; }

UrlReception DBusUrlEventService::receive(const std::vector<std::string>& urls) {
    const std::string identifier = NSBundle::mainBundle().info().identifier;
    Claim claimed = claim();
    for (int attempt = 0; claimed == Claim::taken && attempt < mostAttempts; ++attempt) {
        const int error = m_connection->sendTo(identifier, urls);
        if (error == 0)
            return UrlReception::elsewhere;
        claimed = claim(); // the owner may have left, also without an answer
        if (error == -ETIMEDOUT && claimed == Claim::taken)
            return UrlReception::unanswered;
    }
    for (const std::string& url : urls)
        deliver({kInternetEventClass, kAEGetURL, url});
    return claimed == Claim::owned ? UrlReception::here : UrlReception::argumentsOnly;
}

} // namespace kw

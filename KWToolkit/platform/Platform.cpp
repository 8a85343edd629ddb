// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/Platform.h>

#include <KWToolkit/platform/DefaultServices.h>

#include <mutex>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

namespace kw {

namespace detail {

// Declared here so that no translation unit makes one from the template.
template <>
std::unique_ptr<HotkeyService> makeDefaultService();
template <>
std::unique_ptr<KeyboardLayout> makeDefaultService();
template <>
std::unique_ptr<MainBundle> makeDefaultService();
template <>
std::unique_ptr<DefaultsStore> makeDefaultService();
template <>
std::unique_ptr<SearchPaths> makeDefaultService();
template <>
std::unique_ptr<FileSystem> makeDefaultService();
template <>
std::unique_ptr<SystemLog> makeDefaultService();
template <>
std::unique_ptr<Workspace> makeDefaultService();
template <>
std::unique_ptr<UrlEventService> makeDefaultService();
template <>
std::unique_ptr<RunLoop> makeDefaultService();
template <>
std::unique_ptr<AuthorizationService> makeDefaultService();
template <>
std::unique_ptr<ProcessService> makeDefaultService();
template <>
std::unique_ptr<LoginItems> makeDefaultService();
template <>
std::unique_ptr<RunningApplications> makeDefaultService();
template <>
std::unique_ptr<Locale> makeDefaultService();

// These need nothing but the standard library, so every build has the same.
template <>
std::unique_ptr<AlertService> makeDefaultService() {
    return std::make_unique<UnavailableAlertService>();
}
template <>
std::unique_ptr<ApplicationService> makeDefaultService() {
    return std::make_unique<ProcessApplicationService>();
}
template <>
std::unique_ptr<ImageDecoder> makeDefaultService() {
    return std::make_unique<UnavailableImageDecoder>();
}
template <>
std::unique_ptr<CursorService> makeDefaultService() {
    return std::make_unique<UnavailableCursorService>();
}
template <>
std::unique_ptr<SystemColors> makeDefaultService() {
    return std::make_unique<PlainSystemColors>();
}
template <>
std::unique_ptr<TextMetrics> makeDefaultService() {
    return std::make_unique<NominalTextMetrics>();
}
template <>
std::unique_ptr<ViewLoader> makeDefaultService() {
    return std::make_unique<UnavailableViewLoader>();
}
template <>
std::unique_ptr<WindowService> makeDefaultService() {
    return std::make_unique<UnavailableWindowService>();
}
template <>
std::unique_ptr<WebService> makeDefaultService() {
    return std::make_unique<UnavailableWebService>();
}
template <>
std::unique_ptr<Clock> makeDefaultService() {
    return std::make_unique<SteadyClock>();
}
template <>
std::unique_ptr<Console> makeDefaultService() {
    return std::make_unique<StandardErrorConsole>();
}

namespace {

template <class Service>
struct Choice {
    std::function<std::unique_ptr<Service>()> build = &makeDefaultService<Service>;
    Service* override = nullptr;
};

// Never destroyed: services are used in static destructors, and by leaving threads.
template <class Service>
Choice<Service>& choice() {
    static auto& value = *new Choice<Service>;
    return value;
}

const std::thread::id mainThread = std::this_thread::get_id();

/// The main thread's loop as other threads know it.
struct MainLoop {
    std::mutex mutex;
    RunLoop* loop = nullptr; // while it lives
    std::vector<std::function<void()>> waiting;

    static MainLoop& shared() {
        static auto& shared = *new MainLoop;
        return shared;
    }
};

/// A thread's loop.
class ThreadLoop {
public:
    ThreadLoop()
        : m_loop(choice<RunLoop>().build()) {
        if (isMain())
            announce(m_loop.get());
    }
    ~ThreadLoop() {
        if (isMain())
            announce(nullptr);
    }
    ThreadLoop(const ThreadLoop&) = delete;
    ThreadLoop& operator=(const ThreadLoop&) = delete;
    RunLoop& loop() const { return *m_loop; }

private:
    static bool isMain() { return std::this_thread::get_id() == mainThread; }
    static void announce(RunLoop* loop) {
        const std::lock_guard lock(MainLoop::shared().mutex);
        MainLoop::shared().loop = loop;
        if (!loop)
            return;
        for (auto& task : std::exchange(MainLoop::shared().waiting, {}))
            loop->perform(std::move(task));
    }

    const std::unique_ptr<RunLoop> m_loop;
};

} // namespace

template <class Service>
Service& ServiceSlot<Service>::inUse() {
    if (Service* const override = choice<Service>().override)
        return *override;
    if constexpr (std::is_same_v<Service, RunLoop>) {
        thread_local const ThreadLoop loop;
        return loop.loop();
    } else {
        static Service& service = *choice<Service>().build().release();
        return service;
    }
}

template <class Service>
void ServiceSlot<Service>::setFactory(std::function<std::unique_ptr<Service>()> build) {
    choice<Service>().build = std::move(build);
}

template <class Service>
Service* ServiceSlot<Service>::exchangeOverride(Service* service) {
    return std::exchange(choice<Service>().override, service);
}

template struct ServiceSlot<HotkeyService>;
template struct ServiceSlot<KeyboardLayout>;
template struct ServiceSlot<MainBundle>;
template struct ServiceSlot<DefaultsStore>;
template struct ServiceSlot<SearchPaths>;
template struct ServiceSlot<FileSystem>;
template struct ServiceSlot<SystemLog>;
template struct ServiceSlot<Workspace>;
template struct ServiceSlot<UrlEventService>;
template struct ServiceSlot<AlertService>;
template struct ServiceSlot<ApplicationService>;
template struct ServiceSlot<AuthorizationService>;
template struct ServiceSlot<ProcessService>;
template struct ServiceSlot<LoginItems>;
template struct ServiceSlot<RunningApplications>;
template struct ServiceSlot<Locale>;
template struct ServiceSlot<ImageDecoder>;
template struct ServiceSlot<CursorService>;
template struct ServiceSlot<SystemColors>;
template struct ServiceSlot<TextMetrics>;
template struct ServiceSlot<ViewLoader>;
template struct ServiceSlot<WindowService>;
template struct ServiceSlot<WebService>;
template struct ServiceSlot<Clock>;
template struct ServiceSlot<Console>;
template struct ServiceSlot<RunLoop>;

} // namespace detail

HotkeyService& Platform::hotkeys() { return detail::ServiceSlot<HotkeyService>::inUse(); }
KeyboardLayout& Platform::keyboardLayout() { return detail::ServiceSlot<KeyboardLayout>::inUse(); }
MainBundle& Platform::mainBundle() { return detail::ServiceSlot<MainBundle>::inUse(); }
DefaultsStore& Platform::defaultsStore() { return detail::ServiceSlot<DefaultsStore>::inUse(); }
SearchPaths& Platform::searchPaths() { return detail::ServiceSlot<SearchPaths>::inUse(); }
FileSystem& Platform::fileSystem() { return detail::ServiceSlot<FileSystem>::inUse(); }
SystemLog& Platform::systemLog() { return detail::ServiceSlot<SystemLog>::inUse(); }
Workspace& Platform::workspace() { return detail::ServiceSlot<Workspace>::inUse(); }
UrlEventService& Platform::urlEvents() { return detail::ServiceSlot<UrlEventService>::inUse(); }
AlertService& Platform::alerts() { return detail::ServiceSlot<AlertService>::inUse(); }
ApplicationService& Platform::application() {
    return detail::ServiceSlot<ApplicationService>::inUse();
}
AuthorizationService& Platform::authorization() {
    return detail::ServiceSlot<AuthorizationService>::inUse();
}
ProcessService& Platform::processes() { return detail::ServiceSlot<ProcessService>::inUse(); }
LoginItems& Platform::loginItems() { return detail::ServiceSlot<LoginItems>::inUse(); }
RunningApplications& Platform::runningApplications() {
    return detail::ServiceSlot<RunningApplications>::inUse();
}
Locale& Platform::locale() { return detail::ServiceSlot<Locale>::inUse(); }
ImageDecoder& Platform::imageDecoder() { return detail::ServiceSlot<ImageDecoder>::inUse(); }
CursorService& Platform::cursor() { return detail::ServiceSlot<CursorService>::inUse(); }
SystemColors& Platform::systemColors() { return detail::ServiceSlot<SystemColors>::inUse(); }
TextMetrics& Platform::textMetrics() { return detail::ServiceSlot<TextMetrics>::inUse(); }
ViewLoader& Platform::viewLoader() { return detail::ServiceSlot<ViewLoader>::inUse(); }
WindowService& Platform::windows() { return detail::ServiceSlot<WindowService>::inUse(); }
WebService& Platform::web() { return detail::ServiceSlot<WebService>::inUse(); }
Clock& Platform::clock() { return detail::ServiceSlot<Clock>::inUse(); }
Console& Platform::console() { return detail::ServiceSlot<Console>::inUse(); }
RunLoop& Platform::runLoop() { return detail::ServiceSlot<RunLoop>::inUse(); }

void Platform::performOnMainThread(std::function<void()> task) {
    if (RunLoop* const override = detail::choice<RunLoop>().override) {
        override->perform(std::move(task));
        return;
    }
    auto& main = detail::MainLoop::shared();
    const std::lock_guard lock(main.mutex);
    if (main.loop)
        main.loop->perform(std::move(task));
    else
        main.waiting.push_back(std::move(task));
}

} // namespace kw

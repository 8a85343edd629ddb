// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/services/AlertService.h>
#include <KWToolkit/platform/services/ApplicationService.h>
#include <KWToolkit/platform/services/AuthorizationService.h>
#include <KWToolkit/platform/services/Clock.h>
#include <KWToolkit/platform/services/Console.h>
#include <KWToolkit/platform/services/CursorService.h>
#include <KWToolkit/platform/services/DefaultsStore.h>
#include <KWToolkit/platform/services/FileSystem.h>
#include <KWToolkit/platform/services/HotkeyService.h>
#include <KWToolkit/platform/services/ImageDecoder.h>
#include <KWToolkit/platform/services/KeyboardLayout.h>
#include <KWToolkit/platform/services/Locale.h>
#include <KWToolkit/platform/services/LoginItems.h>
#include <KWToolkit/platform/services/MainBundle.h>
#include <KWToolkit/platform/services/ProcessService.h>
#include <KWToolkit/platform/services/RunLoop.h>
#include <KWToolkit/platform/services/RunningApplications.h>
#include <KWToolkit/platform/services/SearchPaths.h>
#include <KWToolkit/platform/services/SystemColors.h>
#include <KWToolkit/platform/services/SystemLog.h>
#include <KWToolkit/platform/services/TextMetrics.h>
#include <KWToolkit/platform/services/UrlEventService.h>
#include <KWToolkit/platform/services/ViewLoader.h>
#include <KWToolkit/platform/services/WebService.h>
#include <KWToolkit/platform/services/WindowService.h>
#include <KWToolkit/platform/services/Workspace.h>

#include <functional>
#include <memory>

namespace kw {

/// The services in use. Each is built when it is first asked for and lives until the process ends,
/// so a host sets nothing up. A facility asks anew at each use and keeps none.
class KW_EXPORT Platform {
public:
    static HotkeyService& hotkeys();
    static KeyboardLayout& keyboardLayout();
    static MainBundle& mainBundle();
    static DefaultsStore& defaultsStore();
    static SearchPaths& searchPaths();
    static FileSystem& fileSystem();
    static SystemLog& systemLog();
    static Workspace& workspace();
    static UrlEventService& urlEvents();
    static AlertService& alerts();
    static ApplicationService& application();
    static AuthorizationService& authorization();
    static ProcessService& processes();
    static LoginItems& loginItems();
    static RunningApplications& runningApplications();
    static Locale& locale();
    static ImageDecoder& imageDecoder();
    static CursorService& cursor();
    static SystemColors& systemColors();
    static TextMetrics& textMetrics();
    static ViewLoader& viewLoader();
    static WindowService& windows();
    static WebService& web();
    static Clock& clock();
    static Console& console();
    /// The calling thread's loop. Other services have one instance a process, this one a thread.
    static RunLoop& runLoop();

    /// Calls `task` on the main thread, the one that loaded the toolkit, on the next pass of its
    /// loop and in the order of the calls. Any thread. What comes before the main thread has asked
    /// for its loop waits for that; a Qt host asks by making its application object.
    static void performOnMainThread(std::function<void()> task);
};

/// Puts another service in use until the scope ends. The service is not owned. Scopes nest and end
/// in reverse order, on the main thread.
///
///     kw::HeadlessHotkeyService hotkeys;
///     const kw::ServiceScope scope(hotkeys);
template <class Service>
class ServiceScope;

/// Makes `build` the way a service is built from now on; one that is in use stays. A host's
/// libraries call it while they are loaded.
template <class Service>
void setServiceFactory(std::function<std::unique_ptr<Service>()> build);

namespace detail {

template <class Service>
struct KW_EXPORT ServiceSlot {
    static Service& inUse();
    static void setFactory(std::function<std::unique_ptr<Service>()> build);
    /// Returns the former override, null where there was none.
    static Service* exchangeOverride(Service* service);
};

extern template struct ServiceSlot<HotkeyService>;
extern template struct ServiceSlot<KeyboardLayout>;
extern template struct ServiceSlot<MainBundle>;
extern template struct ServiceSlot<DefaultsStore>;
extern template struct ServiceSlot<SearchPaths>;
extern template struct ServiceSlot<FileSystem>;
extern template struct ServiceSlot<SystemLog>;
extern template struct ServiceSlot<Workspace>;
extern template struct ServiceSlot<UrlEventService>;
extern template struct ServiceSlot<AlertService>;
extern template struct ServiceSlot<ApplicationService>;
extern template struct ServiceSlot<AuthorizationService>;
extern template struct ServiceSlot<ProcessService>;
extern template struct ServiceSlot<LoginItems>;
extern template struct ServiceSlot<RunningApplications>;
extern template struct ServiceSlot<Locale>;
extern template struct ServiceSlot<ImageDecoder>;
extern template struct ServiceSlot<CursorService>;
extern template struct ServiceSlot<SystemColors>;
extern template struct ServiceSlot<TextMetrics>;
extern template struct ServiceSlot<ViewLoader>;
extern template struct ServiceSlot<WindowService>;
extern template struct ServiceSlot<WebService>;
extern template struct ServiceSlot<Clock>;
extern template struct ServiceSlot<Console>;
extern template struct ServiceSlot<RunLoop>;

// The port behind a service class: what the class itself or the base of it has a slot for.
HotkeyService& portOf(HotkeyService&);
KeyboardLayout& portOf(KeyboardLayout&);
MainBundle& portOf(MainBundle&);
DefaultsStore& portOf(DefaultsStore&);
SearchPaths& portOf(SearchPaths&);
FileSystem& portOf(FileSystem&);
SystemLog& portOf(SystemLog&);
Workspace& portOf(Workspace&);
UrlEventService& portOf(UrlEventService&);
AlertService& portOf(AlertService&);
ApplicationService& portOf(ApplicationService&);
AuthorizationService& portOf(AuthorizationService&);
ProcessService& portOf(ProcessService&);
LoginItems& portOf(LoginItems&);
RunningApplications& portOf(RunningApplications&);
Locale& portOf(Locale&);
ImageDecoder& portOf(ImageDecoder&);
CursorService& portOf(CursorService&);
SystemColors& portOf(SystemColors&);
TextMetrics& portOf(TextMetrics&);
ViewLoader& portOf(ViewLoader&);
WindowService& portOf(WindowService&);
WebService& portOf(WebService&);
Clock& portOf(Clock&);
Console& portOf(Console&);
RunLoop& portOf(RunLoop&);
template <class Service>
using PortOf = std::remove_reference_t<decltype(portOf(std::declval<Service&>()))>;

} // namespace detail

template <class Service>
class ServiceScope {
public:
    explicit ServiceScope(Service& service)
        : m_former(Slot::exchangeOverride(&service)) { }
    ~ServiceScope() { Slot::exchangeOverride(m_former); }
    ServiceScope(const ServiceScope&) = delete;
    ServiceScope& operator=(const ServiceScope&) = delete;

private:
    using Slot = detail::ServiceSlot<detail::PortOf<Service>>;
    detail::PortOf<Service>* m_former;
};

template <class Service>
void setServiceFactory(std::function<std::unique_ptr<Service>()> build) {
    detail::ServiceSlot<Service>::setFactory(std::move(build));
}

} // namespace kw

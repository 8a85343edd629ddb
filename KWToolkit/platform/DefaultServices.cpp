// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The services of a build without a desktop.
#include <KWToolkit/platform/DefaultServices.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/BasicRunLoop.h>

namespace kw::detail {

template <>
std::unique_ptr<HotkeyService> makeDefaultService() {
    return std::make_unique<UnavailableHotkeyService>();
}

template <>
std::unique_ptr<KeyboardLayout> makeDefaultService() {
    return std::make_unique<UnavailableKeyboardLayout>();
}

template <>
std::unique_ptr<MainBundle> makeDefaultService() {
    return std::make_unique<UnavailableMainBundle>();
}

template <>
std::unique_ptr<DefaultsStore> makeDefaultService() {
    return std::make_unique<UnavailableDefaultsStore>();
}

template <>
std::unique_ptr<SearchPaths> makeDefaultService() {
    return std::make_unique<StandardSearchPaths>();
}

template <>
std::unique_ptr<FileSystem> makeDefaultService() {
    return std::make_unique<StandardFileSystem>();
}

template <>
std::unique_ptr<SystemLog> makeDefaultService() {
    return std::make_unique<UnavailableSystemLog>();
}

template <>
std::unique_ptr<Workspace> makeDefaultService() {
    return std::make_unique<UnavailableWorkspace>();
}

template <>
std::unique_ptr<UrlEventService> makeDefaultService() {
    return std::make_unique<ArgumentUrlEventService>();
}

template <>
std::unique_ptr<AuthorizationService> makeDefaultService() {
    return std::make_unique<UnavailableAuthorizationService>();
}

template <>
std::unique_ptr<ProcessService> makeDefaultService() {
    return std::make_unique<UnavailableProcessService>();
}

template <>
std::unique_ptr<LoginItems> makeDefaultService() {
    return std::make_unique<UnavailableLoginItems>();
}

template <>
std::unique_ptr<RunningApplications> makeDefaultService() {
    return std::make_unique<UnavailableRunningApplications>();
}

template <>
std::unique_ptr<Locale> makeDefaultService() {
    return std::make_unique<StandardLocale>();
}

template <>
std::unique_ptr<RunLoop> makeDefaultService() {
    return std::make_unique<StandardRunLoop>();
}

} // namespace kw::detail

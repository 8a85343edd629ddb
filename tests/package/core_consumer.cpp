// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
//
// A host without a GUI toolkit: registers a hotkey wherever it runs, presses it in memory, and logs
// that.
#include <KWToolkit/KWToolkit.h>
#include <KWToolkit/platform/headless/HeadlessHotkeyService.h>
#include <KWToolkit/platform/headless/HeadlessSystemLog.h>
#include <KWToolkitLinux/CrashReportWriter.h>

#include <iostream>
#include <string>

int main() {
    kw::HeadlessHotkeyService service;
    const kw::ServiceScope scope(service);
    int presses = 0;
    auto& hotkeys = kw::KWGlobalHotkeyManager::hotkeyManager();
    hotkeys.registerHotkey(40, {"count", [&presses] { ++presses; }}, true, false, false, false);
    service.press({40, kw::hotkeyCommandMask});

    kw::RunAfterDelay([] { kw::Platform::runLoop().stop(); }, 0);
    kw::Platform::runLoop().run();

    kw::HeadlessSystemLog systemLog;
    const kw::ServiceScope logScope(systemLog);
    kw::GDASLLog("consumer", "user", true).info(std::to_string(presses) + " press");
    const bool isLogged = systemLog.takeEvents().at(1) == "consumer 6 1 press";
    const bool isInstalled = !kw::installCrashReportWriter();
    std::cout << "core consumer: " << presses << " press\n";
    return isLogged && isInstalled ? 0 : 1;
}

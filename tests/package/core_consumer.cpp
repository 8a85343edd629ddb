// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
//
// A host without a GUI toolkit: registers a hotkey wherever it runs, and presses it in memory.
#include <KWToolkit/KWToolkit.h>
#include <KWToolkit/platform/headless/HeadlessHotkeyService.h>

#include <iostream>

int main() {
    kw::HeadlessHotkeyService service;
    const kw::ServiceScope scope(service);
    int presses = 0;
    auto& hotkeys = kw::KWGlobalHotkeyManager::hotkeyManager();
    hotkeys.registerHotkey(40, {"count", [&presses] { ++presses; }}, true, false, false, false);
    service.press({40, kw::hotkeyCommandMask});

    kw::RunAfterDelay([] { kw::Platform::runLoop().stop(); }, 0);
    kw::Platform::runLoop().run();
    std::cout << "core consumer: " << presses << " press\n";
    return presses == 1 ? 0 : 1;
}

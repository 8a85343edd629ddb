// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/Guarded.h>

#include <KWToolkit/platform/Platform.h>

#include <exception>
#include <string>

namespace kw {

void callGuarded(const std::function<void()>& task) {
    constexpr const char* prefix = "*** uncaught exception: ";
    try {
        task();
    } catch (const std::exception& exception) {
        Platform::console().writeLine(std::string(prefix) + exception.what());
    } catch (...) {
        Platform::console().writeLine(std::string(prefix) + "of unknown type");
    }
}

} // namespace kw

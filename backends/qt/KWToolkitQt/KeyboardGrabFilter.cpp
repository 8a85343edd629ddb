// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/KeyboardGrabFilter.h>

#include <KWToolkitQt/ViewWidget.h>

#include <QApplication>
#include <QCoreApplication>

#include <cstdint>

namespace kw::qt {

namespace {

// The X protocol's FocusOut event, as far as it matters.
struct FocusOut {
    std::uint8_t type;
    std::uint8_t detail;
    std::uint16_t sequence;
    std::uint32_t window;
    std::uint8_t mode;
};
constexpr std::uint8_t focusOutType = 10;
constexpr std::uint8_t sentByAClient = 0x80; // set in the type
constexpr std::uint8_t notifyGrab = 1;

} // namespace

void KeyboardGrabFilter::install() {
    static KeyboardGrabFilter filter;
    QCoreApplication::instance()->installNativeEventFilter(&filter);
}

bool KeyboardGrabFilter::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
    if (type != "xcb_generic_event_t")
        return false;
    const auto& event = *static_cast<const FocusOut*>(message);
    return (event.type & ~sentByAClient) == focusOutType && event.mode == notifyGrab
        && dynamic_cast<ViewWidget*>(QApplication::focusWidget());
}

} // namespace kw::qt

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Hands by the XTEST extension, crash reports by the toolkit.
#include "Desktop.h"

#include <KWToolkitLinux/CrashReportWriter.h>

#include <QWidget>
#include <QtGlobal>

#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <utility>

namespace gallery {

namespace {

template <auto destroy>
struct Deleter {
    void operator()(auto* object) const { destroy(object); }
};
using Connection = std::unique_ptr<xcb_connection_t, Deleter<&xcb_disconnect>>;
using KeySymbols = std::unique_ptr<xcb_key_symbols_t, Deleter<&xcb_key_symbols_free>>;
using KeyCodes = std::unique_ptr<xcb_keycode_t, Deleter<&std::free>>;

Connection connect() {
    Connection connection(xcb_connect(nullptr, nullptr));
    return xcb_connection_has_error(connection.get()) ? nullptr : std::move(connection);
}

class XTestHands final : public Hands {
public:
    explicit XTestHands(Connection connection)
        : m_connection(std::move(connection))
        , m_keys(xcb_key_symbols_alloc(m_connection.get()))
        , m_root(xcb_setup_roots_iterator(xcb_get_setup(m_connection.get())).data->root) { }

    void moveMouse(QWidget& widget, QPoint place) override {
        const QPointF onScreen = widget.mapToGlobal(QPointF(place)) * widget.devicePixelRatioF();
        fake(XCB_MOTION_NOTIFY, /*absolute*/ 0, onScreen.toPoint());
    }
    void pressMouse(QWidget& widget, QPoint place) override {
        moveMouse(widget, place);
        fake(XCB_BUTTON_PRESS, XCB_BUTTON_INDEX_1);
    }
    void releaseMouse(QWidget& widget, QPoint place) override {
        moveMouse(widget, place);
        fake(XCB_BUTTON_RELEASE, XCB_BUTTON_INDEX_1);
    }
    void pressKey(Qt::Key key) override { fake(XCB_KEY_PRESS, keyCode(key)); }
    void releaseKey(Qt::Key key) override { fake(XCB_KEY_RELEASE, keyCode(key)); }
    bool areReal() const override { return true; }

private:
    void fake(std::uint8_t type, std::uint8_t detail, QPoint place = {}) {
        xcb_test_fake_input(m_connection.get(), type, detail, XCB_CURRENT_TIME, m_root,
            static_cast<std::int16_t>(place.x()), static_cast<std::int16_t>(place.y()), 0);
        xcb_flush(m_connection.get());
    }
    xcb_keycode_t keyCode(Qt::Key key) const {
        static constexpr std::pair<Qt::Key, xcb_keysym_t> keysyms[] {{Qt::Key_Alt, XKB_KEY_Alt_L},
            {Qt::Key_Return, XKB_KEY_Return}, {Qt::Key_Tab, XKB_KEY_Tab},
            {Qt::Key_Escape, XKB_KEY_Escape}};
        const auto* const found =
            std::ranges::find(keysyms, key, &std::pair<Qt::Key, xcb_keysym_t>::first);
        // The keysyms of Latin letters are their codes, and so are Qt's, which are capitals.
        const xcb_keysym_t keysym =
            found == std::end(keysyms) ? static_cast<xcb_keysym_t>(key) | 0x20 : found->second;
        const KeyCodes codes(xcb_key_symbols_get_keycode(m_keys.get(), keysym));
        return codes ? *codes : 0;
    }

    Connection m_connection;
    KeySymbols m_keys;
    xcb_window_t m_root;
};

} // namespace

bool hasDisplay() { return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") || connect(); }

std::unique_ptr<Hands> realHands() {
    Connection connection = connect();
    if (!connection)
        return nullptr;
    return std::make_unique<XTestHands>(std::move(connection));
}

bool writeCrashReports() { return !kw::installCrashReportWriter(); }

} // namespace gallery

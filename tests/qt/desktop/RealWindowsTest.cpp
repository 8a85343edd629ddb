// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The toolkit's windows on a real display with a window manager.
#include <KWToolkit/hotkeys/KWGlobalHotkeyManager.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/ui/NSApplication.h>
#include <KWToolkit/platform/ui/NSButton.h>
#include <KWToolkit/windows/KWTranFadeWindow.h>
#include <KWToolkit/windows/NSWindow+SmartResize.h>
#include <tests/qt/Window.h>
#include <tests/support/KeyInjector.h>

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QPushButton>
#include <QTimer>

#include <algorithm>
#include <cstring>
#include <optional>

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace {

using namespace kw;

bool soon(const std::function<bool()>& condition) { return QTest::qWaitFor(condition); }

QWidget& widgetOf(const NSWindow& window) {
    for (QWidget* const widget : QApplication::allWidgets()) {
        const auto* const views = dynamic_cast<qt::ViewWidget*>(widget);
        if (views && views->rootView() == window.contentView())
            return *views->window();
    }
    throw std::runtime_error("no widget");
}

/// What the X server knows.
class Server {
public:
    Server()
        : m_xcb(xcb_connect(nullptr, nullptr)) { }
    ~Server() { xcb_disconnect(m_xcb); }

    std::optional<std::uint32_t> property(xcb_window_t window, const char* name) const {
        const auto reply = xcbReply(xcb_get_property_reply, m_xcb,
            xcb_get_property(m_xcb, false, window, atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, 1));
        if (!reply || xcb_get_property_value_length(reply.get()) < 4)
            return std::nullopt;
        return *static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    }
    QSize size(xcb_window_t window) const {
        const auto geometry =
            xcbReply(xcb_get_geometry_reply, m_xcb, xcb_get_geometry(m_xcb, window));
        return {geometry->width, geometry->height};
    }
    xcb_window_t root() const { return xcb_setup_roots_iterator(xcb_get_setup(m_xcb)).data->root; }
    /// As a compositing manager does.
    void own(const char* selection) {
        const auto window = xcb_generate_id(m_xcb);
        xcb_create_window(m_xcb, XCB_COPY_FROM_PARENT, window, root(), 0, 0, 1, 1, 0,
            XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_set_selection_owner(m_xcb, window, atom(selection), XCB_CURRENT_TIME);
        focus(); // it is done
    }
    xcb_window_t focus() const {
        return xcbReply(xcb_get_input_focus_reply, m_xcb, xcb_get_input_focus(m_xcb))->focus;
    }
    /// The upper left corner of what the window manager has put around the window.
    QPoint corner(xcb_window_t window) const {
        for (;;) {
            const auto tree = xcbReply(xcb_query_tree_reply, m_xcb, xcb_query_tree(m_xcb, window));
            if (tree->parent == tree->root)
                break;
            window = tree->parent;
        }
        const auto geometry =
            xcbReply(xcb_get_geometry_reply, m_xcb, xcb_get_geometry(m_xcb, window));
        return {geometry->x, geometry->y};
    }

private:
    xcb_atom_t atom(const char* name) const {
        return xcbReply(xcb_intern_atom_reply, m_xcb,
            xcb_intern_atom(m_xcb, false, static_cast<std::uint16_t>(std::strlen(name)), name))
            ->atom;
    }

    xcb_connection_t* m_xcb;
};

class RealWindows : public testing::Test {
protected:
    bool isActive(const NSWindow& window) {
        return server.property(server.root(), "_NET_ACTIVE_WINDOW") == widgetOf(window).winId();
    }

    test::KeyInjector user {qEnvironmentVariable("DISPLAY").toStdString()};
    Server server;
};

TEST_F(RealWindows, FadeByTheirPropertyFromOneEndToTheOther) {
    const auto window = std::make_shared<KWTranFadeWindow>(NSMakeRect(50, 50, 400, 300));
    const auto view = std::make_shared<Probe>(NSMakeRect(10, 10, 40, 40));
    window->contentView()->addSubview(view);
    std::vector<double> seen;
    const auto watch = [&](bool isOver) {
        const auto now = server.property(
            static_cast<xcb_window_t>(widgetOf(*window).winId()), "_NET_WM_WINDOW_OPACITY");
        const double opacity = now.value_or(0xffffffff) / double(0xffffffff);
        if (seen.empty() || seen.back() != opacity)
            seen.push_back(opacity);
        return isOver;
    };
    window->fadeIn();
    EXPECT_EQ(window->opacity(), NSWindowOpacity::content); // no compositing manager
    ASSERT_TRUE(
        soon([&] { return watch(!widgetOf(*window).graphicsEffect()) && seen.back() == 1; }));
    EXPECT_EQ(seen.front(), 0);
    EXPECT_TRUE(std::ranges::is_sorted(seen));
    EXPECT_GT(seen.size(), 10u);

    // Without a frame it has the keyboard all the same.
    window->makeKeyAndOrderFront();
    EXPECT_TRUE(soon([&] { return isActive(*window); }));
    EXPECT_TRUE(soon([&] { return server.focus() == widgetOf(*window).winId(); }));
    user.type({XKB_KEY_k});
    EXPECT_TRUE(soon([&] { return view->last.charactersIgnoringModifiers == "k"; }));

    server.own("_NET_WM_CM_S0");
    EXPECT_EQ(window->opacity(), NSWindowOpacity::window);
    seen.clear();
    window->fadeOut();
    ASSERT_TRUE(
        soon([&] { return !window->isVisible() || watch(widgetOf(*window).graphicsEffect()); }));
    EXPECT_EQ(seen.front(), 1);
    EXPECT_LT(seen.back(), 0.1);
    EXPECT_TRUE(std::ranges::is_sorted(seen, std::greater()));
    EXPECT_GT(seen.size(), 10u);
}

TEST_F(RealWindows, KeepTheirCornerWhileTheyAreResized) {
    const auto window = std::make_shared<NSWindow>(NSMakeRect(120, 300, 300, 200),
        NSWindowStyleMaskTitled | NSWindowStyleMaskResizable, NSBackingStoreType::buffered, false);
    window->makeKeyAndOrderFront();
    const auto id = static_cast<xcb_window_t>(widgetOf(*window).winId());
    ASSERT_TRUE(soon([&] { return isActive(*window) && window->frame().size.height > 200; }));
    const QPoint corner = server.corner(id);
    EXPECT_EQ(corner, widgetOf(*window).frameGeometry().topLeft());
    for (int i = 0; i < 100; ++i) {
        resizeWindowToSize(*window, {200 + i * 1.37, 300 - i * 1.53});
        const NSRect asked = window->frame();
        if (i % 3 != 0)
            QCoreApplication::processEvents();
        EXPECT_EQ(window->frame(), asked) << i;
    }
    const QSize last(336, 149);
    EXPECT_TRUE(soon([&] { return server.size(id) == last && widgetOf(*window).size() == last; }));
    EXPECT_EQ(server.corner(id), corner);
}

TEST_F(RealWindows, AreMovedByTheirBackground) {
    const auto window = std::make_shared<KWTranFadeWindow>(NSMakeRect(100, 300, 200, 100));
    const auto view = std::make_shared<Probe>(NSMakeRect(0, 0, 50, 100));
    window->contentView()->addSubview(view);
    window->makeKeyAndOrderFront();
    ASSERT_TRUE(soon([&] { return isActive(*window); }));
    const auto id = static_cast<xcb_window_t>(widgetOf(*window).winId());
    const NSRect before = window->frame();
    const QPoint grip = widgetOf(*window).mapToGlobal(QPoint(100, 50));
    user.moveMouse(grip.x(), grip.y());
    user.holdButton(true);
    ASSERT_TRUE(soon([&] { return QGuiApplication::mouseButtons() != Qt::NoButton; }));
    for (int x = grip.x(); server.corner(id).x() <= NSMinX(before) && x < grip.x() + 500;) {
        user.moveMouse(++x, grip.y());
        QCoreApplication::processEvents();
    }
    user.moveMouse(grip.x() + 40, grip.y() + 20);
    user.holdButton(false);
    EXPECT_TRUE(soon([&] {
        return window->frame() == NSMakeRect(NSMinX(before) + 40, NSMinY(before) - 20, 200, 100);
    }));
    // And takes the mouse as before.
    EXPECT_TRUE(soon([&] { return QGuiApplication::mouseButtons() == Qt::NoButton; }));
    user.moveMouse(grip.x() + 40 - 90, grip.y() + 20);
    user.click();
    EXPECT_TRUE(soon([&] { return !view->log.empty() && view->log.back() == "up"; }));
}

TEST_F(RealWindows, RunModallyFromAHotkeyUntilAButtonIsClicked) {
    Window host(nullptr);
    const auto window = std::make_shared<NSWindow>(
        NSMakeRect(0, 0, 300, 200), NSWindowStyleMaskTitled, NSBackingStoreType::buffered, false);
    const auto button = std::make_shared<NSButton>(NSMakeRect(10, 10, 100, 40));
    struct Stop : NSObject {
        static Class& classObject() {
            static auto& object =
                *new Class("Stop", NSObject::classObject(), {method("stop:", [](Stop&, NSObject*) {
                    NSApplication::sharedApplication().stopModalWithCode(5);
                })});
            return object;
        }
        Class& isa() const override { return classObject(); }
    } stop;
    button->setTarget(stop);
    button->setAction(SEL("stop:"));
    window->contentView()->addSubview(button);
    auto& hotkeys = KWGlobalHotkeyManager::hotkeyManager();
    int code = 0;
    const auto keyCode = user.keyCode(XKB_KEY_k);
    hotkeys.registerHotkey(keyCode,
        {"ask", [&] { code = NSApplication::sharedApplication().runModalForWindow(*window); }},
        false, false, true, false);
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        auto* const shown = window->isVisible() && isActive(*window)
            ? widgetOf(*window).findChild<QPushButton*>()
            : nullptr;
        if (!shown || !shown->isVisible())
            return;
        EXPECT_EQ(
            server.property(widgetOf(*window).winId(), "WM_TRANSIENT_FOR"), host.window.winId());
        const QPoint place = shown->mapToGlobal(shown->rect().center());
        user.moveMouse(place.x(), place.y());
        user.click();
        poll.stop();
    });
    poll.start(10);
    user.type({XKB_KEY_Alt_L, XKB_KEY_k});
    EXPECT_TRUE(soon([&] { return code == 5; }));
    hotkeys.unregisterHotkey(keyCode, false, false, true, false);
}

} // namespace

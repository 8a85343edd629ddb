// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Windows of the toolkit's and of a Qt host, without a window manager.
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/ui/NSApplication.h>
#include <KWToolkit/platform/ui/NSButton.h>
#include <KWToolkit/windows/KWTranFadeWindow.h>
#include <KWToolkit/windows/NSWindow+Fade.h>
#include <KWToolkit/windows/NSWindow+SmartResize.h>
#include <tests/qt/Window.h>
#include <tests/support/PumpUntil.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractEventDispatcher>
#include <QDialog>
#include <QGraphicsOpacityEffect>
#include <QPushButton>
#include <QTimer>
#include <QWindow>

#include <cmath>
#include <functional>

namespace {

using namespace kw;
using kw::test::pumpUntil;

constexpr unsigned all = NSWindowStyleMaskTitled | NSWindowStyleMaskClosable
    | NSWindowStyleMaskMiniaturizable | NSWindowStyleMaskResizable;

std::shared_ptr<NSWindow> makeWindow(unsigned style, NSRect rect = NSMakeRect(100, 200, 300, 200)) {
    return std::make_shared<NSWindow>(rect, style, NSBackingStoreType::buffered, false);
}

/// The widget that is the window.
QWidget& widgetOf(const NSWindow& window) {
    for (QWidget* const widget : QApplication::allWidgets()) {
        const auto* const views = dynamic_cast<qt::ViewWidget*>(widget);
        if (views && views->rootView() == window.contentView())
            return *views->window();
    }
    throw std::runtime_error("no widget");
}

/// Does something when the next event loop runs.
void soon(std::function<void()> task) {
    QMetaObject::invokeMethod(qApp, std::move(task), Qt::QueuedConnection);
}

NSApplication& application() { return NSApplication::sharedApplication(); }

/// A window's delegate that refuses, until it is told otherwise.
struct Refusing : NSObject {
    static Class& classObject() {
        static auto& object = *new Class("Refusing", NSObject::classObject(),
            {method("windowShouldClose:", &Refusing::windowShouldClose)});
        return object;
    }
    Class& isa() const override { return classObject(); }
    bool windowShouldClose(NSWindow&) { return closes; }
    bool closes = false;
};

TEST(QtWindows, HaveTheirStylesDecoration) {
    const auto hints = Qt::FramelessWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint
        | Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint
        | Qt::WindowDoesNotAcceptFocus;
    const struct {
        unsigned style;
        Qt::WindowFlags flags;
        bool isFixed;
    } rows[] = {
        {NSWindowStyleMaskBorderless, Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus, true},
        {NSWindowStyleMaskTitled, Qt::WindowTitleHint, true},
        {NSWindowStyleMaskTitled | NSWindowStyleMaskClosable,
            Qt::WindowTitleHint | Qt::WindowCloseButtonHint, true},
        {all, hints & ~(Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus), false},
    };
    for (const auto& row : rows) {
        const auto window = makeWindow(row.style);
        window->setMinSize({50, 50});
        window->orderFront();
        const QWidget& widget = widgetOf(*window);
        EXPECT_EQ(widget.windowFlags() & hints, row.flags) << row.style;
        window->setFrame(NSMakeRect(10, 10, 40, 500), true); // the limits are the user's
        EXPECT_EQ(widget.frameGeometry().size(), QSize(40, 500));
        EXPECT_EQ(widget.minimumSize() == widget.maximumSize(), row.isFixed);
        EXPECT_EQ(
            window->contentView()->frame(), NSMakeRect(0, 0, widget.width(), widget.height()));
    }
    KWTranFadeWindow fading(NSMakeRect(0, 0, 10, 10));
    fading.makeKeyAndOrderFront();
    EXPECT_EQ(widgetOf(fading).windowFlags() & hints, Qt::FramelessWindowHint);
    EXPECT_TRUE(widgetOf(fading).testAttribute(Qt::WA_TranslucentBackground));
}

TEST(QtWindows, RoundEachEdgeOfTheirFrames) {
    const double height = QGuiApplication::primaryScreen()->geometry().height();
    const auto window = makeWindow(all, NSMakeRect(100.4, 200.6, 300.2, 200));
    EXPECT_EQ(window->contentRectForFrameRect(window->frame()), NSMakeRect(100, 201, 301, 200));
    window->makeKeyAndOrderFront();
    const QPoint corner = widgetOf(*window).frameGeometry().topLeft();
    EXPECT_EQ(window->contentRectForFrameRect(window->frame()), NSMakeRect(100, 201, 301, 200));
    for (int i = 0; i < 100; ++i) {
        resizeWindowToSize(*window, {200 + i * 0.37, 300 - i * 0.53});
        EXPECT_EQ(widgetOf(*window).frameGeometry().topLeft(), corner);
        EXPECT_EQ(window->frame().size.height, widgetOf(*window).frameGeometry().height());
    }
    widgetOf(*window).move(7, 9); // as the user does
    EXPECT_EQ(NSMinX(window->frame()), 7);
    EXPECT_EQ(NSMaxY(window->frame()), height - 9);
    window->setFrame(NSMakeRect(0, 0, 1e9, -3), false);
    EXPECT_EQ(window->frame().size.width, 32767);
    EXPECT_EQ(widgetOf(*window).height(), 1);
    window->setFrame(NSMakeRect(0, 0, 200, 100), false);
    window->center();
    EXPECT_EQ(NSMidX(window->frame()),
        QGuiApplication::primaryScreen()->availableGeometry().width() / 2.0);
}

TEST(QtWindows, CloseWhenTheyMayAndLeaveTheHostRunning) {
    QWidget main;
    main.show();
    const auto delegate = std::make_shared<Refusing>();
    auto window = makeWindow(all);
    window->setDelegate(delegate);
    window->orderFront();
    QPointer<QWidget> widget = &widgetOf(*window);
    EXPECT_FALSE(widget->windowHandle()->close());
    EXPECT_TRUE(window->isVisible());
    soon([&] {
        application().terminate(); // refused
        EXPECT_TRUE(window->isVisible());
        delegate->closes = true;
        widget->windowHandle()->close();
        EXPECT_FALSE(window->isVisible());
        main.show(); // the refused end has closed it
        window->orderFront();
        soon([&] { main.close(); });
    });
    EXPECT_EQ(QApplication::exec(), 0);
    window->orderFront();

    // A button's action may be its end.
    struct Closer : NSObject {
        static Class& classObject() {
            static auto& object = *new Class("Closer", NSObject::classObject(),
                {method("end:", [](Closer& self, NSObject*) { self.window->reset(); })});
            return object;
        }
        Class& isa() const override { return classObject(); }
        std::shared_ptr<NSWindow>* window = nullptr;
    } closer;
    closer.window = &window;
    const auto button = std::make_shared<NSButton>(NSMakeRect(10, 10, 60, 30));
    button->setTarget(closer);
    button->setAction(SEL("end:"));
    window->contentView()->addSubview(button);
    QPushButton* shown = nullptr;
    ASSERT_TRUE(pumpUntil([&] { return (shown = widget->findChild<QPushButton*>()); }));
    QTest::mouseClick(shown, Qt::LeftButton);
    EXPECT_FALSE(window);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(widget);
    EXPECT_EQ(button->window(), nullptr);

    // Nor does it dangle where the host deletes the widget.
    window = makeWindow(all);
    delete &widgetOf(*window);
    window->setContentView(nullptr);
    window->setFrame(NSMakeRect(0, 0, 5, 5), true);
    window->makeKeyAndOrderFront();
    EXPECT_FALSE(window->isVisible());
}

TEST(QtWindows, GiveTheKeyboardToTheirViews) {
    const auto window = makeWindow(NSWindowStyleMaskTitled);
    const auto first = std::make_shared<Probe>(NSMakeRect(0, 0, 40, 40));
    const auto second = std::make_shared<Probe>(NSMakeRect(50, 0, 40, 40));
    window->contentView()->addSubview(first);
    window->contentView()->addSubview(second);
    EXPECT_EQ(first->window(), window.get());
    window->makeKeyAndOrderFront();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&widgetOf(*window)));
    EXPECT_TRUE(window->isKeyWindow());
    EXPECT_EQ(&window->firstResponder(), first.get());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(&window->firstResponder(), second.get());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_A);
    EXPECT_EQ(second->last.charactersIgnoringModifiers, "a");
    // What another content leaves, the next one gets.
    const auto other = std::make_shared<Probe>(NSMakeRect(0, 0, 40, 40));
    window->setContentView(other);
    EXPECT_EQ(second->window(), nullptr);
    EXPECT_EQ(&window->firstResponder(), other.get());
}

QRgb pixelOf(QWidget& window) { return window.grab().toImage().pixel(window.width() / 2, 5); }

TEST(QtWindows, FadeTheirContentWhereNobodyBlendsWindows) {
    QMainWindow main;
    auto* const views = new qt::ViewWidget(nullptr);
    main.setCentralWidget(views);
    main.resize(300, 200);
    views->setPalette(Qt::red);
    views->setAutoFillBackground(true);
    main.show();
    NSWindow& hosted = *views->rootView()->window();
    const auto own = makeWindow(NSWindowStyleMaskBorderless);
    own->setBackgroundColor(NSColor::colorWithDeviceRed(1, 0, 0, 1));
    own->orderFront();
    for (NSWindow* const window : {&hosted, own.get()}) {
        QWidget& widget = window == own.get() ? widgetOf(*own) : main;
        EXPECT_EQ(window->opacity(), NSWindowOpacity::content);
        EXPECT_EQ(pixelOf(widget), qRgb(255, 0, 0));
        window->setAlphaValue(0.5);
        EXPECT_NE(pixelOf(widget), qRgb(255, 0, 0));
        window->setAlphaValue(1);
        EXPECT_EQ(widget.graphicsEffect(), nullptr);
        fadeOut(*window);
        fadeIn(*window); // both go on, the first hides
        EXPECT_TRUE(pumpUntil([&] { return !window->isVisible(); }));
        fadeIn(*window);
        EXPECT_TRUE(window->isVisible());
        EXPECT_TRUE(pumpUntil([&] { return !widget.graphicsEffect(); }));
        EXPECT_EQ(pixelOf(widget), qRgb(255, 0, 0));
        // The host's own effect stays.
        auto* const effect = new QGraphicsOpacityEffect;
        widget.setGraphicsEffect(effect);
        EXPECT_EQ(window->opacity(), NSWindowOpacity::none);
        window->setAlphaValue(0.5);
        EXPECT_EQ(widget.graphicsEffect(), effect);
        fadeOut(*window);
    }
    main.close();
    pumpUntil([&] { return !own->isVisible(); });
}

class QtModal : public testing::Test {
protected:
    /// Runs the window modally; does something while it waits.
    int run(std::function<void()> task) {
        const QObject scope;
        QTimer::singleShot(20, &scope, std::move(task));
        return application().runModalForWindow(*window);
    }
    const std::shared_ptr<NSWindow> window = makeWindow(NSWindowStyleMaskTitled);
};

TEST_F(QtModal, ReturnsWhatItWasStoppedWith) {
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    const auto second = makeWindow(all);
    const auto stop = [](int code) { return [code] { application().stopModalWithCode(code); }; };
    const struct {
        std::function<void()> task;
        int code;
    } rows[] = {
        {stop(1), 1},
        {stop(2), 2},
        {[] { application().stopModal(); }, NSRunStoppedResponse},
        {[&] { widgetOf(*window).close(); }, NSRunAbortedResponse},
        {[&] {
             soon([&] {
                 EXPECT_EQ(QApplication::activeModalWidget(), &widgetOf(*second));
                 stop(7)();
             });
             EXPECT_EQ(application().runModalForWindow(*second), 7);
             EXPECT_EQ(QApplication::activeModalWidget(), &widgetOf(*window));
             second->close();
             stop(3)();
         },
            3},
        // Without a loop of the host's there is none to end but this.
        {[] { QCoreApplication::exit(4); }, NSRunAbortedResponse},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(run([&] {
            EXPECT_EQ(QApplication::activeModalWidget(), &widgetOf(*window));
            row.task();
        }),
            row.code)
            << &row - rows;
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        window->orderFront(); // the next one is seen already
    }
    second->close();
    soon([] { QCoreApplication::exit(); });
    QApplication::exec(); // until then Qt takes no loop for one that runs
}

TEST_F(QtModal, WaitsWithoutTurning) {
    int passes = 0;
    QObject scope;
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &scope,
        [&] { ++passes; });
    EXPECT_EQ(run([&] {
        passes = 0;
        QTimer::singleShot(300, [] { application().stopModalWithCode(1); });
    }),
        1);
    EXPECT_LT(passes, 30);
}

TEST_F(QtModal, EndsWithTheApplication) {
    const std::function<void()> ends[] = {
        [] { QCoreApplication::quit(); },
        [] { QCoreApplication::exit(5); },
        [] { application().terminate(); },
        [] { QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection); },
    };
    for (const auto& end : ends) {
        for (const char* const where : {"app", "dialog", "nested", "before"}) {
            std::vector<int> codes;
            const auto begin = [&] { codes.push_back(run(end)); };
            QDialog dialog;
            const auto other = makeWindow(NSWindowStyleMaskTitled);
            soon([&] {
                if (where == std::string("dialog")) {
                    soon(begin);
                    dialog.exec();
                } else if (where == std::string("nested")) {
                    soon(begin);
                    codes.push_back(application().runModalForWindow(*other));
                } else {
                    if (where == std::string("before"))
                        QCoreApplication::exit();
                    begin();
                }
            });
            QApplication::exec();
            EXPECT_THAT(codes, testing::Each(NSRunAbortedResponse)) << &end - ends << where;
            EXPECT_EQ(codes.size(), where == std::string("nested") ? 2u : 1u)
                << &end - ends << where;
            window->close();
        }
    }
    // And the next one runs.
    EXPECT_EQ(run([] { application().stopModalWithCode(1); }), 1);
}

} // namespace

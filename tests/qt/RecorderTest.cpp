// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The recorder as a user of a Qt host meets it.
#include <KWToolkit/hotkeys/KWHotkeyView.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/headless/HeadlessHotkeyService.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Window.h"

#include <QAction>
#include <QMenuBar>
#include <QProxyStyle>

namespace {

using namespace kw;

class Recorder : public testing::Test {
protected:
    Recorder() { window.emplace(view); }

    void arm() { window->click({20, 20}); }
    void type(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(window->views, key, modifiers);
    }
    /// The recorded hotkey; `hasKey` is false where there is none.
    Hotkey recorded() const {
        return view->registeredHotkey() ? hotkeyFromRecord(*view->registeredHotkey()) : Hotkey {};
    }

    HeadlessHotkeyService hotkeys;
    ServiceScope<HeadlessHotkeyService> scope {hotkeys};
    std::shared_ptr<KWHotkeyView> view = std::make_shared<KWHotkeyView>(NSMakeRect(0, 0, 260, 56));
    std::optional<Window> window;
};

TEST_F(Recorder, RecordsWhatIsTypedWhoeverElseWantsIt) {
    const struct {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        Hotkey expected;
    } rows[] {
        {Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier,
            {.hasKey = true, .character = u'K', .control = true, .shift = true}},
        {Qt::Key_S, Qt::ControlModifier, {.hasKey = true, .character = u's', .control = true}},
        {Qt::Key_Tab, Qt::MetaModifier, {.hasKey = true, .character = 0x09, .command = true}},
        {Qt::Key_Backtab, Qt::ShiftModifier | Qt::ControlModifier,
            {.hasKey = true, .character = 0x19, .control = true, .shift = true}},
        {Qt::Key_Return, Qt::AltModifier, {.hasKey = true, .character = 0x0D, .option = true}},
    };
    QAction save;
    save.setShortcut(QKeySequence(Qt::CTRL | Qt::Key_S));
    window->window.addAction(&save);
    int saves = 0;
    QObject::connect(&save, &QAction::triggered, [&] { ++saves; });

    for (const auto& row : rows) {
        arm();
        type(row.key, row.modifiers);
        EXPECT_EQ(recorded(), row.expected) << row.key;
        EXPECT_FALSE(view->acceptHotkey());
        EXPECT_TRUE(window->views->hasFocus());
    }
    EXPECT_EQ(saves, 0);
    type(Qt::Key_S, Qt::ControlModifier); // At rest it is the host's.
    EXPECT_EQ(saves, 1);
}

TEST_F(Recorder, KeepsWhatMakesNoHotkeyToItselfWhileArmed) {
    arm();
    for (const Qt::KeyboardModifiers modifiers : {Qt::NoModifier, Qt::ShiftModifier}) {
        type(Qt::Key_K, modifiers);
        type(Qt::Key_Tab, modifiers);
    }
    EXPECT_TRUE(view->acceptHotkey());
    EXPECT_TRUE(window->views->hasFocus());
    EXPECT_FALSE(recorded().hasKey);
    window->modifier(QEvent::KeyPress, Qt::Key_Meta, Qt::AltModifier);
    EXPECT_EQ(renderHotkeyRecord(*view->modifiersHotkey()), "⌥ ⌘ ");
    type(Qt::Key_Escape);
    EXPECT_FALSE(view->acceptHotkey());
    EXPECT_TRUE(window->views->hasFocus());
}

TEST_F(Recorder, KeepsOptionFromTheMenuBarWhileArmed) {
    struct : QProxyStyle {
        int styleHint(
            StyleHint hint, const QStyleOption*, const QWidget*, QStyleHintReturn*) const override {
            return hint == SH_MenuBar_AltKeyNavigation;
        }
    } style;
    QMenuBar* const menuBar = window->window.menuBar();
    menuBar->setStyle(&style);
    menuBar->addMenu("&File");
    menuBar->show();
    arm();
    type(Qt::Key_Alt);
    EXPECT_TRUE(view->acceptHotkey());
    type(Qt::Key_Escape);
    type(Qt::Key_Alt);
    EXPECT_TRUE(menuBar->hasFocus());
    window.reset(); // before the style
}

TEST_F(Recorder, IsDisarmedByAnyLossOfTheFocus) {
    arm();
    window->other->setFocus();
    EXPECT_FALSE(view->acceptHotkey());
    EXPECT_FALSE(hotkeys.isSuspended());

    arm();
    QWidget another;
    another.show();
    another.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&another));
    EXPECT_FALSE(view->acceptHotkey());

    window->window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window->window));
    arm();
    window.reset();
    EXPECT_FALSE(view->acceptHotkey());
    EXPECT_FALSE(hotkeys.isSuspended());
}

} // namespace

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/headless/HeadlessKeyboardLayout.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Window.h"

namespace {

using namespace kw;
using testing::ElementsAre;

constexpr std::uint32_t shift = NSEventModifierFlagShift;
constexpr std::uint32_t control = NSEventModifierFlagControl;
constexpr std::uint32_t option = NSEventModifierFlagOption;
constexpr std::uint32_t command = NSEventModifierFlagCommand;
constexpr std::uint32_t keypad = NSEventModifierFlagNumericPad;
constexpr std::uint32_t function = NSEventModifierFlagFunction;

constexpr quint32 keyCodeOfQ = 24;
constexpr quint32 keyCodeOfDeadKey = 34;
constexpr quint32 keyCodeOfKeypadSeven = 79;

struct Case {
    const char* name;
    int key;
    Qt::KeyboardModifiers modifiers;
    quint32 scanCode;
    const char* characters;
    std::uint32_t flags;
};

const Case cases[] {
    {"Letter", Qt::Key_A, {}, 0, "a", 0},
    {"CapitalLetter", Qt::Key_A, Qt::ShiftModifier, 0, "A", shift},
    {"LetterWithControl", Qt::Key_C, Qt::ControlModifier, 0, "c", control},
    {"LetterWithAll", Qt::Key_K,
        Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier, 0, "K",
        shift | control | option | command},
    {"LetterBeyondAscii", 0x00C4, Qt::AltModifier, 0, "ä", option},
    {"LetterOfTheLayout", Qt::Key_A, Qt::AltModifier, keyCodeOfQ, "q", option},
    {"ShiftedLetterOfTheLayout", Qt::Key_A, Qt::ShiftModifier, keyCodeOfQ, "Q", shift},
    {"ShiftedDigit", Qt::Key_Exclam, Qt::ShiftModifier, 0, "!", shift},
    {"Space", Qt::Key_Space, Qt::ControlModifier, 0, " ", control},
    {"DeadKey", Qt::Key_Dead_Acute, Qt::AltModifier, keyCodeOfDeadKey, "", option},
    {"UnknownKey", Qt::Key_unknown, {}, 0, "", 0},
    {"Return", Qt::Key_Return, {}, keyCodeOfQ, "\x0D", 0},
    {"KeypadEnter", Qt::Key_Enter, Qt::KeypadModifier, 0, "\x03", keypad},
    {"Tab", Qt::Key_Tab, Qt::ControlModifier, 0, "\x09", control},
    {"BackTab", Qt::Key_Backtab, Qt::ShiftModifier, 0, "\x19", shift},
    {"Escape", Qt::Key_Escape, {}, 0, "\x1B", 0},
    {"Backspace", Qt::Key_Backspace, {}, 0, "\x7F", 0},
    {"ForwardDelete", Qt::Key_Delete, {}, 0, "\uF728", function},
    {"Up", Qt::Key_Up, {}, 0, "\uF700", function},
    {"Down", Qt::Key_Down, {}, 0, "\uF701", function},
    {"Left", Qt::Key_Left, {}, 0, "\uF702", function},
    {"Right", Qt::Key_Right, Qt::AltModifier, 0, "\uF703", option | function},
    {"F1", Qt::Key_F1, {}, 0, "\uF704", function},
    {"F16", Qt::Key_F16, {}, 0, "\uF713", function},
    {"F35", Qt::Key_F35, {}, 0, "\uF726", function},
    {"Insert", Qt::Key_Insert, {}, 0, "\uF727", function},
    {"Home", Qt::Key_Home, {}, 0, "\uF729", function},
    {"End", Qt::Key_End, {}, 0, "\uF72B", function},
    {"PageUp", Qt::Key_PageUp, {}, 0, "\uF72C", function},
    {"PageDown", Qt::Key_PageDown, {}, 0, "\uF72D", function},
    {"PrintWithOption", Qt::Key_SysReq, Qt::AltModifier, 0, "\uF72E", option | function},
    {"ScrollLock", Qt::Key_ScrollLock, {}, 0, "\uF72F", function},
    {"Pause", Qt::Key_Pause, {}, 0, "\uF730", function},
    {"Menu", Qt::Key_Menu, {}, 0, "\uF735", function},
    {"Help", Qt::Key_Help, {}, 0, "\uF746", function},
    {"KeypadDigit", Qt::Key_7, Qt::KeypadModifier, keyCodeOfKeypadSeven, "7", keypad},
    {"KeypadDigitWithoutNumLock", Qt::Key_Home, Qt::KeypadModifier, keyCodeOfKeypadSeven, "\uF729",
        keypad | function},
    {"KeypadOperator", Qt::Key_Plus, Qt::KeypadModifier, 0, "+", keypad},
};

TEST(KeyTranslation, GivesThePlatformsCharactersAndFlags) {
    HeadlessKeyboardLayout layout({{keyCodeOfQ, {u'q', u'Q'}}, {keyCodeOfKeypadSeven, {u'!', 0}}});
    const ServiceScope scope(layout);
    const auto probe = std::make_shared<Probe>(NSMakeRect(0, 0, 40, 40));
    Window window(probe);
    window.click({5, 5});

    for (const Case& given : cases) {
        SCOPED_TRACE(given.name);
        // Tab, where nobody takes it, leads to the next widget: sent as a release, which does not.
        const bool isTab = given.key == Qt::Key_Tab || given.key == Qt::Key_Backtab;
        QKeyEvent event(isTab ? QEvent::KeyRelease : QEvent::KeyPress, given.key, given.modifiers,
            given.scanCode, 0, 0);
        QApplication::sendEvent(window.views, &event);
        EXPECT_EQ(probe->last.type, isTab ? NSEvent::Type::keyUp : NSEvent::Type::keyDown);
        EXPECT_EQ(probe->last.charactersIgnoringModifiers, given.characters);
        EXPECT_EQ(probe->last.modifierFlags, given.flags);
        EXPECT_EQ(probe->last.keyCode, given.scanCode);
    }
}

TEST(KeyTranslation, TellsModifierKeysFromTypingKeys) {
    const auto probe = std::make_shared<Probe>(NSMakeRect(0, 0, 40, 40));
    Window window(probe);
    window.click({5, 5});
    probe->takeLog();

    window.modifier(QEvent::KeyPress, Qt::Key_Alt);
    EXPECT_EQ(probe->last.modifierFlags, option);
    window.modifier(QEvent::KeyPress, Qt::Key_Shift, Qt::AltModifier);
    EXPECT_EQ(probe->last.modifierFlags, option | shift);
    window.modifier(QEvent::KeyRelease, Qt::Key_Alt, Qt::AltModifier | Qt::ShiftModifier);
    EXPECT_EQ(probe->last.modifierFlags, shift);
    EXPECT_THAT(probe->takeLog(), ElementsAre("flags", "flags", "flags"));
}

} // namespace

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/headless/HeadlessKeyboardLayout.h>

#include <gtest/gtest.h>

#include "Window.h"

namespace {

using namespace kw;

constexpr std::uint32_t shift = NSEventModifierFlagShift;
constexpr std::uint32_t control = NSEventModifierFlagControl;
constexpr std::uint32_t option = NSEventModifierFlagOption;
constexpr std::uint32_t command = NSEventModifierFlagCommand;
constexpr std::uint32_t keypad = NSEventModifierFlagNumericPad;
constexpr std::uint32_t function = NSEventModifierFlagFunction;

constexpr quint32 keyCodeOfQ = 24;
constexpr quint32 keyCodeOfDeadKey = 34;
constexpr quint32 keyCodeOfKeypadSeven = 79;

const struct {
    const char* name;
    int key;
    Qt::KeyboardModifiers modifiers;
    quint32 scanCode;
    const char* characters;
    std::uint32_t flags;
} rows[] {
    {"CapitalLetter", Qt::Key_A, Qt::ShiftModifier, 0, "A", shift},
    {"LetterWithControl", Qt::Key_C, Qt::ControlModifier, 0, "c", control},
    {"LetterWithAll", Qt::Key_K,
        Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier, 0, "K",
        shift | control | option | command},
    {"LetterBeyondAscii", 0x00C4, Qt::AltModifier, 0, "ä", option},
    {"LetterOfTheLayout", Qt::Key_A, Qt::AltModifier, keyCodeOfQ, "q", option},
    {"ShiftedLetterOfTheLayout", Qt::Key_A, Qt::ShiftModifier, keyCodeOfQ, "Q", shift},
    {"ShiftedDigit", Qt::Key_Exclam, Qt::ShiftModifier, 0, "!", shift},
    {"DeadKey", Qt::Key_Dead_Acute, Qt::AltModifier, keyCodeOfDeadKey, "", option},
    {"UnknownKey", Qt::Key_unknown, {}, 0, "", 0},
    {"Return", Qt::Key_Return, {}, keyCodeOfQ, "\x0D", 0},
    {"KeypadEnter", Qt::Key_Enter, Qt::KeypadModifier, 0, "\x03", keypad},
    {"BackTab", Qt::Key_Backtab, Qt::ShiftModifier, 0, "\x19", shift},
    {"Escape", Qt::Key_Escape, {}, 0, "\x1B", 0},
    {"Backspace", Qt::Key_Backspace, {}, 0, "\x7F", 0},
    {"ForwardDelete", Qt::Key_Delete, {}, 0, "\uF728", function},
    {"Up", Qt::Key_Up, {}, 0, "\uF700", function},
    {"Right", Qt::Key_Right, Qt::AltModifier, 0, "\uF703", option | function},
    {"F16", Qt::Key_F16, {}, 0, "\uF713", function},
    {"F35", Qt::Key_F35, {}, 0, "\uF726", function},
    {"Insert", Qt::Key_Insert, {}, 0, "\uF727", function},
    {"PrintWithOption", Qt::Key_SysReq, Qt::AltModifier, 0, "\uF72E", option | function},
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

    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        // Tab, where nobody takes it, leads to the next widget: sent as a release, which does not.
        const bool isTab = row.key == Qt::Key_Tab || row.key == Qt::Key_Backtab;
        QKeyEvent event(isTab ? QEvent::KeyRelease : QEvent::KeyPress, row.key, row.modifiers,
            row.scanCode, 0, 0);
        QApplication::sendEvent(window.views, &event);
        EXPECT_EQ(probe->last.type, isTab ? NSEvent::Type::keyUp : NSEvent::Type::keyDown);
        EXPECT_EQ(probe->last.charactersIgnoringModifiers, row.characters);
        EXPECT_EQ(probe->last.modifierFlags, row.flags);
        EXPECT_EQ(probe->last.keyCode, row.scanCode);
    }

    // Modifier keys are no typing keys; what is held is what the event says.
    probe->log.clear();
    window.modifier(QEvent::KeyPress, Qt::Key_Shift, Qt::AltModifier);
    EXPECT_EQ(probe->last.modifierFlags, option | shift);
    window.modifier(QEvent::KeyRelease, Qt::Key_Alt, Qt::AltModifier | Qt::ShiftModifier);
    EXPECT_EQ(probe->last.modifierFlags, shift);
    EXPECT_EQ(probe->log, (std::vector<std::string> {"flags", "flags"}));
}

} // namespace

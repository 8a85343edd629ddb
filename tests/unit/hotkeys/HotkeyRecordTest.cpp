// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/hotkeys/HotkeyRecord.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/headless/HeadlessKeyboardLayout.h>

#include <gtest/gtest.h>

namespace {

using namespace kw;

constexpr std::uint16_t keyA = 0, keyK = 40, keyOne = 18, keyUp = 126, keyUmlaut = 41, keyDead = 50,
                        keyLone = 51, keySpace = 49;

struct HotkeyRecordTest : testing::Test {
    HeadlessKeyboardLayout layout {{
        {keyA, {u'a', u'A'}},
        {keyK, {u'k', u'K'}},
        {keyOne, {u'1', u'!'}},
        {keyUmlaut, {u'ö', u'Ö'}},
        {keyLone, {0xD800, 0}},
        {keySpace, {u' ', u' '}},
    }};
    ServiceScope<HeadlessKeyboardLayout> scope {layout};
};

std::string render(const char* modifiers, std::uint16_t keycode, std::uint16_t character) {
    const std::string held = modifiers;
    const auto has = [&held](char letter) { return held.find(letter) != std::string::npos; };
    HotkeyRecord record;
    fillHotkeyRecord(record, has('m'), has('a'), has('c'), has('s'), keycode, character);
    return renderHotkeyRecord(record);
}

// Modifiers: m Command, a Option, c Control, s Shift.
TEST_F(HotkeyRecordTest, RendersTheKey) {
    const struct {
        const char* modifiers;
        std::uint16_t keycode, character;
        std::string text;
    } rows[] = {
        {"ma", keyK, 'k', "⌥ ⌘ K"},
        {"macs", keyA, 'a', "⌥ ⇧ ⌃ ⌘ A"},
        {"c", keyUp, 0xF700, "⌃ ↑ "},
        {"c", keyUp, 0xF703, "⌃ → "},
        {"m", keySpace, ' ', "⌘ Space"},
        {"m", keyUp, 0x0D, "⌘ ↩ "},
        {"a", keyUp, 0x09, "⌥ ⇥ "},
        {"m", keyOne, '1', "⌘ 1"},
        {"m", keyUmlaut, 0xF6, "⌘ ö"}, // only a to z become capital
        {"m", keyUp, 0xF708, "⌘ F5"},
        {"", keyUp, 0xF712, "F15"},
        {"", keyUp, 0xF713, "F16"},
        {"", keyOne, 0xF714, "1"}, // F17 has no name
        {"", keyOne, 0xF6FF, "1"},
        {"", keyOne, 0x0008, "1"}, // small characters are looked up as function keys
        {"", keyOne, 0x8000, "1"},
        {"", keyK, 0xF700, "K"}, // the layout's letter wins over the character
        {"m", keyDead, 0, std::string("⌘ \0", 5)},
        {"m", keyLone, 0, "⌘ \uFFFD"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(render(row.modifiers, row.keycode, row.character), row.text)
            << row.keycode << " " << std::hex << row.character;
}

TEST_F(HotkeyRecordTest, FindsTheKeyOfACharacter) {
    layout.setKey(200, {u'k', u'K'});
    EXPECT_EQ(keycodeFromUnichar(u'k'), keyK);
    EXPECT_EQ(keycodeFromUnichar(u'a'), keyA);
    EXPECT_EQ(keycodeFromUnichar(u'K'), std::nullopt);
    EXPECT_EQ(keycodeFromUnichar(0), std::nullopt); // what a dead key gives is no character
}

TEST_F(HotkeyRecordTest, FillingOverwritesItsEntriesWithTheirTypes) {
    HotkeyRecord record {{"other", "kept"}};
    EXPECT_EQ(renderHotkeyRecord(record), "");
    fillModifierHotkeyRecord(record, false, false, true, true);
    EXPECT_EQ(renderHotkeyRecord(record), "⇧ ⌃ ");
    EXPECT_EQ(record.size(), 5u);
    fillHotkeyRecord(record, true, true, true, true, 1, 2);
    fillHotkeyRecord(record, false, true, false, true, 0xFFFF, 0xF700);
    EXPECT_EQ(record,
        (HotkeyRecord {{"KWHotkeyValue", 0xF700}, {"KWKeycodeValue", 0xFFFF},
            {"KWCmdModifier", false}, {"KWAltModifier", true}, {"KWControlModifier", false},
            {"KWShiftModifier", true}, {"other", "kept"}}));
}

TEST_F(HotkeyRecordTest, ReadsWhateverAHostKept) {
    const struct {
        const char* name;
        HotkeyRecord record;
        Hotkey hotkey;
    } rows[] = {
        {"key code 0 is a key", {{"KWKeycodeValue", 0}}, {.hasKey = true}},
        {"a key without a number", {{"KWKeycodeValue", "K"}, {"KWHotkeyValue", PropertyList()}},
            {.hasKey = true}},
        {"numbers are no booleans", {{"KWCmdModifier", 1}, {"KWShiftModifier", "true"}}, {}},
        {"integers are reduced", {{"KWKeycodeValue", 0x10028}, {"KWHotkeyValue", -1}},
            {.hasKey = true, .keycode = 0x28, .character = 0xFFFF}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(hotkeyFromRecord(row.record), row.hotkey) << row.name;
}

} // namespace

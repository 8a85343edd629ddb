// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/Unicode.h>

#include <gtest/gtest.h>

namespace {

using namespace kw;

TEST(Unicode, AppendedUnitsStayValidUTF8) {
    const struct {
        char16_t unit;
        std::string utf8;
    } rows[] = {
        {u'A', "A"},
        {0, std::string(1, '\0')},
        {0x7F, "\x7F"},
        {0x80, "\xC2\x80"},
        {0x7FF, "\xDF\xBF"},
        {0x800, "\xE0\xA0\x80"},
        {0xF700, "\xEF\x9C\x80"},
        {0xD800, "\xEF\xBF\xBD"},
        {0xDFFF, "\xEF\xBF\xBD"},
        {0xFFFF, "\xEF\xBF\xBF"},
    };
    for (const auto& row : rows) {
        std::string text;
        appendUnit(text, row.unit);
        EXPECT_EQ(text, row.utf8) << std::hex << static_cast<int>(row.unit);
    }
}

TEST(Unicode, TakesOnlyValidSequences) {
    const struct {
        std::string text;
        std::optional<char32_t> code;
    } rows[] = {
        {"", std::nullopt},
        {std::string(1, '\0'), U'\0'},
        {"\xE2\x8C\xA5x", U'⌥'},
        {"\xF4\x8F\xBF\xBF", U'\U0010FFFF'},
        {"\xF4\x90\x80\x80", std::nullopt}, // above U+10FFFF
        {"\xC0\xAF", std::nullopt}, // overlong
        {"\xE0\x80\xAF", std::nullopt},
        {"\xF0\x80\x80\xAF", std::nullopt},
        {"\xED\xA0\x80", std::nullopt}, // a surrogate
        {"\xE2\x8C", std::nullopt}, // cut short
        {"\xE2x\xA5", std::nullopt},
        {"\x80", std::nullopt},
        {"\xFF", std::nullopt},
    };
    for (const auto& row : rows) {
        std::string_view rest = row.text;
        EXPECT_EQ(takeCodePoint(rest), row.code) << row.text;
        EXPECT_EQ(rest.size() < row.text.size(), row.code.has_value()) << row.text;
    }
}

TEST(Unicode, FirstUnitOfAPairIsItsHighSurrogate) {
    EXPECT_EQ(firstUnit("k"), u'k');
    EXPECT_EQ(firstUnit("😀"), char16_t {0xD83D});
    EXPECT_EQ(firstUnit(""), std::nullopt);
    EXPECT_EQ(firstUnit("\xFF"), std::nullopt);
}

TEST(Unicode, MacOSRoman) {
    const struct {
        const char* text;
        std::optional<std::string> bytes;
    } rows[] = {
        {"quit", "quit"},
        {"Äpfel", "\x80pfel"},
        {"ˇ", "\xFF"},
        {"€π∞", "\xDB\xB9\xB0"},
        {"quit✓", std::nullopt},
        {"\xFF", std::nullopt},
    };
    for (const auto& row : rows)
        EXPECT_EQ(macOSRoman(row.text), row.bytes) << row.text;
}

} // namespace

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/Unicode.h>

#include <gtest/gtest.h>

namespace {

using namespace kw;

TEST(Unicode, AppendedUnitsStayValidUTF8) {
    std::string text;
    for (const char16_t unit : {u'A', u'\0', u'\x7F', u'\x80', u'\u07FF', u'\u0800',
             char16_t {0xD800}, char16_t {0xDFFF}, u'\uE000', u'\uFFFF'})
        appendUnit(text, unit);
    EXPECT_EQ(text,
        std::string("A\0\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBD\xEF\xBF\xBD\xEE\x80\x80"
                    "\xEF\xBF\xBF",
            22));
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
        {"\xE2\xC2\xA5", std::nullopt}, // a lead where a continuation should be
        {"\x80", std::nullopt},
    };
    for (const auto& row : rows) {
        std::string_view rest = row.text;
        EXPECT_EQ(takeCodePoint(rest), row.code) << row.text;
        EXPECT_EQ(rest.size() < row.text.size(), row.code.has_value()) << row.text;
    }
}

bool isValidByCharacters(std::string_view text) {
    while (takeCodePoint(text)) { }
    return text.empty();
}

TEST(Unicode, ValidTextIsOneOfValidCharacters) {
    EXPECT_TRUE(isValidUTF8(""));
    // Up to three bytes of each kind that the standard tells apart and their neighbours, and
    // fourth bytes, at each place of what is worked on at once.
    const std::string kinds =
        "a\x7F\x80\x8F\x90\x9F\xA0\xBF\xC1\xC2\xDF\xE0\xE1\xEC\xED\xEE\xEF\xF0"
        "\xF1\xF3\xF4\xF5\xFF";
    const auto check = [](const std::string& bytes) {
        EXPECT_EQ(isValidUTF8(bytes), isValidByCharacters(bytes)) << testing::PrintToString(bytes);
    };
    for (const char a : kinds) {
        for (const char b : kinds) {
            for (const char c : kinds) {
                check({a, b, c});
                check({a, b, c, '\x80'});
                check({'\xF0', '\x90', a, b, c});
            }
        }
    }
    for (unsigned pair = 0; pair < 0x10000; ++pair)
        check({static_cast<char>(pair >> 8), static_cast<char>(pair)});
    for (const std::string character :
        {"é", "€", "😀", "\x80", "\xC3", "\xE2\x82", "\xF0\x9F\x98"}) {
        for (std::size_t before = 0; before < 70; ++before) {
            for (const std::size_t after : {0, 1, 2, 3, 15, 40, 64})
                check(std::string(before, 'h') + character + std::string(after, 't'));
        }
    }
}

TEST(Unicode, FirstUnitOfAPairIsItsHighSurrogate) {
    EXPECT_EQ(firstUnit("k"), u'k');
    EXPECT_EQ(firstUnit("😀"), char16_t {0xD83D});
    EXPECT_EQ(firstUnit(""), std::nullopt);
    EXPECT_EQ(firstUnit("\xFF"), std::nullopt);
}

TEST(Unicode, MacOSRoman) {
    EXPECT_EQ(macOSRoman("Äpfel"), "\x80pfel");
    EXPECT_EQ(macOSRoman("ˇ€π∞"), "\xFF\xDB\xB9\xB0");
    EXPECT_EQ(macOSRoman("quit✓"), std::nullopt);
    EXPECT_EQ(macOSRoman("\xFF"), std::nullopt);
}

TEST(Unicode, ReadsUTF16InTheOrderOfItsMark) {
    const struct {
        std::string bytes;
        std::optional<std::string> text;
    } rows[] = {
        {"", ""},
        {std::string("\xFE\xFF\0a\xD8\x3D\xDE\x00", 8), "a\U0001F600"},
        {std::string("\xFF\xFE"
                     "a\0\x3D\xD8\x00\xDE",
             8),
            "a\U0001F600"},
        {std::string("a\0\xFF\xFE", 4), "a\uFEFF"}, // the machine's order, and no mark
        {std::string("\xFF\xFE\x3D\xD8"
                     "a\0\x00\xDE",
             8),
            "\uFFFDa\uFFFD"},
        {"\xFF\xFE"
         "a",
            std::nullopt},
    };
    for (const auto& row : rows)
        EXPECT_EQ(textFromUTF16(row.bytes), row.text) << testing::PrintToString(row.bytes);
}

} // namespace

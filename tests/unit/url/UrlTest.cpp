// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/foundation/Unicode.h>
#include <KWToolkit/url/KWUrlDelegateHelper.h>
#include <KWToolkit/url/NSDictionary+GTMNSDictionaryURLArgumentsAdditions.h>
#include <KWToolkit/url/NSString+GTMNSStringURLArgumentsAdditions.h>
#include <KWToolkit/url/NSURL+Encode.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <cstdio>
#include <limits>

namespace {

using namespace kw;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

std::string escapeOf(unsigned byte, const char* format) {
    char text[4];
    std::snprintf(text, sizeof text, format, byte);
    return text;
}

/// What each byte comes to, put together byte by byte.
std::string expected(const std::string& text, auto isKept) {
    std::string result;
    for (const unsigned char byte : text)
        result += isKept(byte) ? std::string(1, static_cast<char>(byte)) : escapeOf(byte, "%%%02X");
    return result;
}

/// All characters below U+0800 and some above, over and over in other places each time, of any
/// number of bytes up to and beyond what is worked on at once.
std::vector<std::string> texts() {
    std::string characters;
    for (char16_t unit = 0; unit < 0x800; unit = static_cast<char16_t>(unit + 1))
        appendUnit(characters, unit);
    characters += "€中😀\xF4\x8F\xBF\xBF";
    std::vector<std::string> texts {characters + characters.substr(1) + characters};
    for (std::size_t size = 0; size < 600; ++size)
        texts.push_back(characters.substr(size % 80, size % 48 + size / 20) + "%");
    texts.emplace_back(10'000, '/'); // more than a byte counts to
    return texts;
}

TEST(Url, EncodesTheTableOnlyAndBack) {
    const auto isKept = [](unsigned char byte) {
        return std::string_view(";/?:@&=+$,[]#!'()* ").find(static_cast<char>(byte))
            == std::string_view::npos;
    };
    for (const std::string& text : texts()) {
        EXPECT_EQ(urlEncode(text), expected(text, isKept));
        EXPECT_EQ(urlDecode(urlEncode(text)), text);
    }
    for (unsigned byte = 0; byte < 256; ++byte) {
        const std::string character(1, static_cast<char>(byte));
        const std::string escape = escapeOf(byte, "%%%02X");
        const bool isOurs = !isKept(static_cast<unsigned char>(byte));
        EXPECT_EQ(urlEncode(character), isOurs ? escape : character);
        EXPECT_EQ(urlDecode("a" + escape + "b"), "a" + (isOurs ? character : escape) + "b");
    }
    const char* const unchanged[] = {
        "", "%", "%%", "%2", "%2f%3b%5d", "%25", "%252", "%0A", "%C3%A9", "%\xD2\xC6"};
    for (const char* text : unchanged)
        EXPECT_EQ(urlDecode(text), text);
    EXPECT_EQ(urlDecode("%%2F2F%252F%2F%"), "%/2F%252F/%");
}

TEST(Url, EscapesArgumentsAndBack) {
    for (const std::string& text : texts()) {
        const auto escaped = gtm_stringByEscapingForURLArgument(text);
        if (!isValidUTF8(text)) {
            EXPECT_EQ(escaped, std::nullopt);
            continue;
        }
        EXPECT_EQ(escaped, expected(text, [](unsigned char byte) {
            return byte < 0x80
                && (std::isalnum(byte) || byte == '-' || byte == '.' || byte == '_' || byte == '~');
        }));
        EXPECT_EQ(gtm_stringByUnescapingFromURLArgument(*escaped), text);
    }
    EXPECT_EQ(gtm_stringByEscapingForURLArgument("a\xED\xA0\x80"), std::nullopt);
}

TEST(Url, UnescapesWhatIsWellFormedOnly) {
    const struct {
        std::string text;
        std::optional<std::string> unescaped;
    } rows[] = {
        {"a+b%2Bc", "a b+c"}, {"%C3%a9%c3%A9é%2f", "éé\xC3\xA9/"},
        {"%2525+%00", std::string("%25 \0", 5)}, {"%", std::nullopt}, {"%2", std::nullopt},
        {"%2+", std::nullopt}, {"%%41", std::nullopt}, {"%4%31", std::nullopt},
        {"%C3", std::nullopt}, // cut short
        {"%C3é", std::nullopt},
        {"%C3\xA9", std::nullopt}, // not valid as it comes, though what comes of it is
        {"\xC3%A9", std::nullopt}, {"\xC3", std::nullopt}, {"%C0%AF", std::nullopt}, // overlong
        {"%ED%A0%80", std::nullopt}, // a surrogate
        {"%F4%90%80%80", std::nullopt}, // above U+10FFFF
    };
    // At any place within what is worked on at once, and across its ends.
    for (const auto& row : rows) {
        for (std::size_t before = 0; before < 270; before += before < 20 ? 1 : 5) {
            for (const std::size_t after : {0, 1, 2, 17, 300}) {
                const std::string head(before, 'h'), tail(after, 't');
                EXPECT_EQ(gtm_stringByUnescapingFromURLArgument(head + row.text + tail),
                    row.unescaped ? std::optional(head + *row.unescaped + tail) : std::nullopt)
                    << row.text << " after " << before << " before " << after;
            }
        }
    }
    for (unsigned digits = 0; digits < 0x10000; ++digits) {
        const char high = static_cast<char>(digits >> 8), low = static_cast<char>(digits);
        const bool areDigits = digits < 0x8000 && std::isxdigit(high) && std::isxdigit(low & 0xFF);
        const bool isCharacter = areDigits && high < '8';
        const std::string digitText {high, low};
        EXPECT_EQ(gtm_stringByUnescapingFromURLArgument("%" + digitText),
            isCharacter ? std::optional(
                              std::string(1, static_cast<char>(std::stoi(digitText, nullptr, 16))))
                        : std::nullopt)
            << digits;
    }
}

TEST(Url, ParsesQueries) {
    const auto parsed = gtm_dictionaryWithHttpArgumentsString;
    EXPECT_THAT(parsed(""), IsEmpty());
    EXPECT_THAT(parsed("&&"), IsEmpty());
    EXPECT_THAT(parsed("a=1&a=2&b&&c=d=e%3D&"),
        ElementsAre(Pair("a", "1"), Pair("b", ""), Pair("c", "d=e=")));
    EXPECT_THAT(parsed("=x&a%20+b=%2B"), ElementsAre(Pair("", "x"), Pair("a  b", "+")));
    EXPECT_THAT(parsed("%zz=1&\xFF=2&v=%"), ElementsAre(Pair("", "1"), Pair("v", "")));
    EXPECT_THAT(parsed("a&a=2"), ElementsAre(Pair("a", "")));
}

TEST(Url, BuildsQueries) {
    EXPECT_EQ(gtm_httpArgumentsString(PropertyMap()), "");
    EXPECT_EQ(gtm_httpArgumentsString({{"a b", 3}}), "a%20b=3");
    EXPECT_EQ(gtm_httpArgumentsString({{"", ""}, {"é", "&="}}), "=&%C3%A9=%26%3D");
    EXPECT_EQ(
        gtm_httpArgumentsString({{"\xFF", "(null)"}, {"k", "\xC3"}}), "k=(null)&(null)=%28null%29");
    EXPECT_EQ(gtm_httpArgumentsString(std::map<std::string, int> {{"n", -1}}), "n=-1");
}

TEST(Url, DescribesValues) {
    const struct {
        PropertyValue value;
        const char* text;
    } rows[] = {
        {"as it is\xFF", "as it is\xFF"},
        {true, "1"},
        {false, "0"},
        {std::numeric_limits<std::int64_t>::min(), "-9223372036854775808"},
        {3.0, "3"},
        {0.1, "0.1"},
        {-1e21, "-1e+21"},
        {-std::numeric_limits<double>::denorm_min(), "-5e-324"},
        {-2.2250738585072014e-308, "-2.2250738585072014e-308"},
        {NSNull(), "<null>"},
        {PropertyList {}, "()"},
        {PropertyList {"", 1, PropertyList {"x"}}, "(, 1, (x))"},
        {PropertyMap {{"a", 1}, {"b", PropertyMap()}}, "{a = 1; b = {};}"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(description(row.value), row.text);
}

TEST(Url, CutsUrlsIntoParameters) {
    const struct {
        const char* url;
        std::vector<std::string> parameters;
    } rows[] = {
        {"app://", {""}},
        {"//", {""}},
        {"app://open&!p!&x&!p!&y", {"open", "x", "y"}},
        {"a//b//c&!p!&&!p!&", {"b//c", "", ""}},
        {"app://a&!p!&!p!&%2F", {"a", "!p!&%2F"}},
        {"&!p!&://a", {"a"}},
        {"app://open%26%21p%21%26http//site/page&!p!&y", {"open", "http://site/page", "y"}},
        {"app://open%26%21p%21%26a%26%21p%21%26b&!p!&c", {"open", "a", "c"}},
        {"app://open%26%21p%21%26xhttp//a", {"open", "xhttp//a"}},
        {"app://open%26%21p%21%26http//http//a", {"open", "http://http//a"}},
        {"app://open&!p!&http//a%26%21p%21%26b", {"open", "http//a%26%21p%21%26b"}},
        {"app://%26%21p%21%26", {"", ""}},
        {"app://http//a", {"http//a"}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(KWUrlDelegateHelper::parametersFromString(row.url), row.parameters) << row.url;
    for (const char* url : {"", "/", "app:/open"}) {
        try {
            KWUrlDelegateHelper::parametersFromString(url);
            FAIL() << url;
        } catch (const NSException& exception) {
            EXPECT_EQ(exception.name(), "NSRangeException");
        }
    }
}

} // namespace

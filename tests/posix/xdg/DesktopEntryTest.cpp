// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/DesktopEntry.h>

#include <gtest/gtest.h>

namespace {

using namespace kw;
using namespace std::string_view_literals;

constexpr std::string_view damagedEntry = "Name=before any group\n"
                                          "# [comment]=1\r\n"
                                          "\n"
                                          "[Desktop Entry]\r\n"
                                          "  Name =\tPlayer \r\n"
                                          "Name[de]=Spieler\n"
                                          "Name[de_AT]=Spüler\n"
                                          "Name[de@euro]=Euro\n"
                                          "=no key\n"
                                          "no value\n"
                                          "Comment=one\\stwo\\n=\n"
                                          "[Desktop Entry\n"
                                          "[\n"
                                          "[Desktop Action new\n"
                                          "Name=New\n"
                                          "\xFF\0=\xFE\n"
                                          "[Desktop Entry]\n"
                                          "Version=1\n"
                                          "Version=2"sv;

TEST(DesktopEntry, DamagedLinesSurvive) {
    for (const std::string_view text : {damagedEntry, std::string_view(), std::string_view("\n"),
             std::string_view("[\n[]\n]"), std::string_view("\0", 1)})
        EXPECT_EQ(DesktopEntry(text).text(), text);
}

TEST(DesktopEntry, FindsValues) {
    const DesktopEntry entry(damagedEntry);
    const struct {
        std::string group, key;
        std::optional<std::string> value;
    } rows[] = {
        {"Desktop Entry", "Name", "Player "},
        {"Desktop Entry", "Comment", "one\\stwo\\n="},
        {"Desktop Entry", "Version", "2"},
        {"Desktop Entry", "", std::nullopt},
        {"Desktop Entry", "no value", std::nullopt},
        {"Desktop Entry", "# [comment]", std::nullopt},
        {"Desktop Action new", "Name", "New"},
        {"desktop entry", "Name", std::nullopt},
    };
    for (const auto& row : rows)
        EXPECT_EQ(entry.value(row.group, row.key), row.value) << row.key;
    EXPECT_EQ(entry.string("Desktop Entry", "Comment"), "one two\n=");
}

TEST(DesktopEntry, PrefersTheNearestLocale) {
    const DesktopEntry entry(damagedEntry);
    const std::pair<std::string, std::string> rows[] = {
        {"de_AT.UTF-8@euro", "Spüler"}, // the country goes before the modifier
        {"de_CH@euro", "Euro"},
        {"de_CH.UTF-8", "Spieler"},
        {"de", "Spieler"},
        {"d", "Player "},
        {"C", "Player "},
        {"", "Player "},
    };
    for (const auto& [locale, name] : rows)
        EXPECT_EQ(entry.localizedString("Desktop Entry", "Name", locale), name) << locale;
    EXPECT_FALSE(entry.localizedString("Desktop Entry", "Icon", "de"));
}

TEST(DesktopEntry, UnescapesStrings) {
    EXPECT_EQ(unescapedDesktopString(R"(\s\n\t\r\\s\x\;\)"), " \n\t\r\\s\\x\\;\\");
}

TEST(DesktopEntry, ChangesOneValueOnly) {
    DesktopEntry entry("[A]\nx=1\nx=2\n\n[B]\nx=3\n[A]\ny=4");
    entry.setValue("A", "x", "5"); // the one that holds
    entry.setValue("A", "z", "6");
    entry.setValue("C", "x", "7");
    EXPECT_EQ(entry.value("A", "x"), "5");
    EXPECT_EQ(entry.text(), "[A]\nx=1\nx=5\nz=6\n\n[B]\nx=3\n[A]\ny=4\n[C]\nx=7\n");
    entry.removeKey("A", "x");
    EXPECT_EQ(entry.text(), "[A]\nz=6\n\n[B]\nx=3\n[A]\ny=4\n[C]\nx=7\n");
    const std::vector<std::string> parts {"a", "b;c", R"(d\\)"};
    EXPECT_EQ(DesktopEntry::listValue(parts), R"(a;b\;c;d\\;)");
    EXPECT_EQ(DesktopEntry::list(DesktopEntry::listValue(parts)), parts);
}

TEST(DesktopEntry, SplitsExec) {
    using Positions = std::vector<std::size_t>;
    const struct {
        std::string exec;
        std::optional<std::vector<std::pair<std::string, Positions>>> arguments;
    } rows[] = {
        {"", {{}}},
        {" player  %U ", {{{"player", {}}, {"%U", {0}}}}},
        {"p %% %f%%%i 50% %1",
            {{{"p", {}}, {"%", {}}, {"%f%%i", {0, 3}}, {"50%", {}}, {"%1", {}}}}},
        {R"("/a b/p" "" --x=%u)", {{{"/a b/p", {}}, {"", {}}, {"--x=%u", {4}}}}},
        {R"("\"\`\$\\\n%f%%")", {{{"\"`$\\\\n%f%", {}}}}},
        {R"(a\ b"c d"e \)", {{{"a bc de", {}}, {"\\", {}}}}},
        {R"(p "open)", std::nullopt},
        {R"(p "open\")", std::nullopt},
    };
    for (const auto& row : rows) {
        const auto arguments = splitExec(row.exec);
        ASSERT_EQ(arguments.has_value(), row.arguments.has_value()) << row.exec;
        if (!arguments)
            continue;
        ASSERT_EQ(arguments->size(), row.arguments->size()) << row.exec;
        for (std::size_t i = 0; i < arguments->size(); ++i) {
            EXPECT_EQ((*arguments)[i].text, (*row.arguments)[i].first);
            EXPECT_EQ((*arguments)[i].fieldCodes, (*row.arguments)[i].second) << row.exec;
        }
    }
}

} // namespace

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/StringsTable.h>

#include <gtest/gtest.h>

namespace {

using namespace kw;

TEST(StringsTable, ReadsUntilTheFirstMistake) {
    const std::pair<std::string, StringsTable> rows[] = {
        {"", {}},
        {"\xEF\xBB\xBF\"a\"=\"b\";", {{"a", "b"}}},
        {"/* one */ \"a\" // two\r\n = /* \"x\" */ \"b\" ; // end", {{"a", "b"}}},
        {"\"a\" = \"1\"; \"b\" = \"2\"; \"a\" = \"3\";", {{"a", "3"}, {"b", "2"}}},
        {"\"\" = \"\"; \"a;=\" = \"/* b */\";", {{"", ""}, {"a;=", "/* b */"}}},
        {R"("a" = "\\\"\n\t\r\q\U20ac\U00e4";)", {{"a", "\\\"\n\t\rq€ä"}}},
        {R"("a" = "\U20a";)", {{"a", "U20a"}}},
        {R"("a" = "\U-0ab\Ud800";)", {{"a", "U-0ab\xEF\xBF\xBD"}}},
        {"\"a\" = \"1\"; \"b\" = \"2\" \"c\" = \"3\";", {{"a", "1"}}},
        {"\"a\" = \"1\"; b = \"2\";", {{"a", "1"}}},
        {"\"a\" = \"1\"; \"b\" \"2\";", {{"a", "1"}}},
        {"\"a\" = \"1\"; \"b\" = \"2;", {{"a", "1"}}},
        {"\"a\" = \"1\"; /* \"b\" = \"2\";", {{"a", "1"}}},
        {"\"a\" = \"1\"; \"b\" = \"\\", {{"a", "1"}}},
        {"\"a\" = \"1\"; \"b\" = \"\\U12", {{"a", "1"}}},
    };
    for (const auto& [text, table] : rows)
        EXPECT_EQ(parseStringsTable(text), table) << text;
}

} // namespace

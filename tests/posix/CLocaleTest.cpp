// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/CLocale.h>

#include <tests/support/ChildProcess.h>
#include <tests/support/FakeEnvironment.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

using namespace kw;

TEST(CLocale, NumbersAreTheUsers) {
    const test::TemporaryFolder folder;
    ::setenv("LOCPATH", folder.path().c_str(), 1);
    const struct {
        const char *language, *encoding, *decimal, *grouping;
        std::vector<int> groupSizes;
    } rows[] = {
        {"fr_FR", "UTF-8", ",", "\u202F", {3}},
        {"en_IN", "UTF-8", ".", ",", {3, 2}},
        {"ru_RU", "KOI8-R", ",", "\u00A0", {3, 3}},
        {"no_NO", "none", ".", "", {}},
    };
    for (const auto& row : rows) {
        const std::string name = std::string(row.language) + "." + row.encoding;
        test::ChildProcess({"localedef", "-i", row.language, "-f", row.encoding, folder.path(name)})
            .wait();
        const NumberSeparators found =
            CLocale(test::FakeEnvironment {{"LC_NUMERIC", name}, {"LANG", "C"}}).numberSeparators();
        EXPECT_EQ(found.decimal, row.decimal) << name;
        EXPECT_EQ(found.grouping, row.grouping) << name;
        EXPECT_EQ(found.groupSizes, row.groupSizes) << name;
    }
    for (const char* const name : {"", "C", "C.UTF-8"}) {
        const CLocale locale(
            test::FakeEnvironment {{"LC_ALL", name}, {"LC_MESSAGES", "fr_FR.UTF-8"}});
        EXPECT_EQ(locale.numberSeparators().decimal, ".") << name;
        EXPECT_EQ(locale.numberSeparators().grouping, "") << name;
    }
    ::unsetenv("LOCPATH");
}

} // namespace

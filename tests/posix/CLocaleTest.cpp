// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/CLocale.h>

#include <tests/support/ChildProcess.h>
#include <tests/support/FakeEnvironment.h>
#include <tests/support/ForkedTask.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

using namespace kw;

TEST(CLocale, NumbersAreTheUsers) {
    const std::pair<std::string, std::string> rows[] = {
        {"fr_FR.UTF-8", ",|\u202F|3"},
        {"en_IN.UTF-8", ".|,|32"},
        {"ru_RU.KOI8-R", ",|\u00A0|33"},
        {"no_NO.none", ".||"},
        {"C", ".||"},
        {"", ".||"},
    };
    const test::TemporaryFolder folder;
    for (const auto& [name, separators] : rows) {
        const auto dot = name.find('.');
        if (dot != name.npos)
            test::ChildProcess({"localedef", "-i", name.substr(0, dot), "-f", name.substr(dot + 1),
                                   folder.path(name)})
                .wait();
        // In a process of its own: the C library remembers, and never frees, where locales are.
        test::ForkedTask task([&](int output) {
            ::setenv("LOCPATH", folder.path().c_str(), 1);
            const test::FakeEnvironment environment {
                {"LC_NUMERIC", name}, {"LC_MESSAGES", "fr_FR"}};
            const NumberSeparators found = CLocale(environment).numberSeparators();
            std::string text = found.decimal + "|" + found.grouping + "|";
            for (const int size : found.groupSizes)
                text += std::to_string(size);
            test::say(output, text);
        });
        EXPECT_EQ(task.result(), separators) << name;
    }
}

} // namespace

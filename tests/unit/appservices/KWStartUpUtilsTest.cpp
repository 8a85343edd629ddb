// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/appservices/KWStartUpUtils.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/headless/HeadlessLoginItems.h>
#include <KWToolkit/platform/headless/HeadlessMainBundle.h>
#include <KWToolkit/platform/headless/HeadlessSearchPaths.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace kw;
using testing::ElementsAre;
using testing::Optional;

class KWStartUpUtilsTest : public testing::Test {
protected:
    KWStartUpUtilsTest() { bundle.values.bundlePath = "/Applications/Host.app"; }

    HeadlessLoginItems login;
    HeadlessMainBundle bundle;
    HeadlessSearchPaths paths;
    const ServiceScope<HeadlessLoginItems> loginScope {login};
    const ServiceScope<HeadlessMainBundle> bundleScope {bundle};
    const ServiceScope<HeadlessSearchPaths> pathsScope {paths};
    const LoginItem host {"/Applications/Host.app", false};
    const LoginItem hiddenHost {"/Applications/Host.app", true};
    const LoginItem other {"/Applications/Other.app", true, "token"};
};

TEST_F(KWStartUpUtilsTest, TheNameMatchesAnywhereInThePath) {
    const struct {
        std::optional<std::string> path;
        const char* name;
        bool isFound;
    } rows[] = {
        {"/Applications/Mail.app", "Mail", true},
        {"/Mailbox/Other.app", "Mail", true},
        {"/Applications/mail.app", "Mail", false},
        {"~/Applications/A.app", "/home/user/App", true},
        {"~/Applications/A.app", "~", false},
        {"~other/A.app", "~other", true},
        {"/A.app", "", false},
        {"", "", false},
        {std::nullopt, "", false},
        {std::nullopt, "B.app", false},
    };
    for (const auto& row : rows) {
        login.items = {other, {.path = row.path}};
        EXPECT_EQ(KWStartUpUtils::ApplicationIsStartUpItem(row.name), row.isFound) << row.name;
        EXPECT_FALSE(KWStartUpUtils::removeApplicationToLogin(row.name));
        EXPECT_EQ(login.items->size(), row.isFound ? 1U : 2U) << row.name;
    }
}

TEST_F(KWStartUpUtilsTest, AddingLeavesOneItemAtTheFront) {
    EXPECT_FALSE(KWStartUpUtils::addApplicationToStartUpItems(false));
    EXPECT_THAT(login.items, Optional(ElementsAre(host)));
    login.items = {host, hiddenHost, other, {.path = "/Host/X.app"}, {}, host};
    EXPECT_FALSE(KWStartUpUtils::addApplicationToStartUpItems(true));
    EXPECT_THAT(login.items, Optional(ElementsAre(hiddenHost, other, LoginItem())));
    // The name only says what is replaced.
    EXPECT_FALSE(KWStartUpUtils::addApplicationToStartUpItems("Other", false));
    EXPECT_THAT(login.items, Optional(ElementsAre(host, hiddenHost, LoginItem())));
    EXPECT_TRUE(KWStartUpUtils::ApplicationIsStartUpItem());
    EXPECT_FALSE(KWStartUpUtils::removeApplicationToLogin());
    EXPECT_THAT(login.items, Optional(ElementsAre(LoginItem())));
}

TEST_F(KWStartUpUtilsTest, OnlyRemovingMakesAnEmptyList) {
    EXPECT_FALSE(KWStartUpUtils::ApplicationIsStartUpItem());
    EXPECT_EQ(login.items, std::nullopt);
    EXPECT_FALSE(KWStartUpUtils::removeApplicationToLogin());
    EXPECT_THAT(login.items, Optional(ElementsAre()));
}

TEST_F(KWStartUpUtilsTest, WhatIsNotKnownOrAvailableIsSaid) {
    bundle.values.name.clear();
    login.items = {host};
    EXPECT_THROW(KWStartUpUtils::addApplicationToStartUpItems(true), NSException);
    EXPECT_THROW(KWStartUpUtils::removeApplicationToLogin(), NSException);
    EXPECT_THROW(KWStartUpUtils::ApplicationIsStartUpItem(), NSException);
    EXPECT_THAT(login.items, Optional(ElementsAre(host)));

    UnavailableLoginItems unavailable;
    const ServiceScope scope(unavailable);
    EXPECT_EQ(KWStartUpUtils::addApplicationToStartUpItems("Host", true),
        std::errc::function_not_supported);
    EXPECT_EQ(KWStartUpUtils::removeApplicationToLogin("Host"), std::errc::function_not_supported);
}

} // namespace

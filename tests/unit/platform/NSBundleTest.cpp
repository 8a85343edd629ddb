// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSBundle.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/headless/HeadlessMainBundle.h>
#include <tests/support/TemporaryFolder.h>

#include <gtest/gtest.h>

namespace {

using namespace kw;

class NSBundleTest : public testing::Test {
protected:
    ~NSBundleTest() override { bundle.declare({}); }

    NSBundle& bundle = NSBundle::mainBundle();
    HeadlessMainBundle desktop;
    ServiceScope<HeadlessMainBundle> scope {desktop};
};

TEST_F(NSBundleTest, WhatTheHostDeclaresGoesFirstFieldByField) {
    desktop.values = {"Found", "org.found", "1", "found", "/found", "/found/bin", "/found/res"};
    bundle.declare({.name = "Declared", .version = "2", .bundlePath = "/declared"});
    const BundleInfo info = bundle.info();
    const std::pair<std::string, std::string> fields[] = {
        {info.name, "Declared"},
        {info.identifier, "org.found"},
        {info.version, "2"},
        {info.executable, "found"},
        {info.bundlePath, "/declared"},
        {info.executablePath, "/found/bin"},
        {info.resourcePath, "/found/res"},
    };
    for (const auto& [field, expected] : fields)
        EXPECT_EQ(field, expected);
    EXPECT_EQ(bundle.objectForInfoDictionaryKey("CFBundleName"), "Declared");
    EXPECT_EQ(bundle.objectForInfoDictionaryKey("CFBundleIdentifier"), "org.found");
    EXPECT_EQ(bundle.objectForInfoDictionaryKey("CFBundleShortVersionString"), "2");
    EXPECT_EQ(bundle.objectForInfoDictionaryKey("CFBundleExecutable"), "found");
    EXPECT_EQ(bundle.objectForInfoDictionaryKey("CFBundle"), std::nullopt);

    bundle.declare({.identifier = "org.declared"});
    EXPECT_EQ(bundle.info().name, "Found");
    desktop.values.version = "";
    EXPECT_EQ(bundle.objectForInfoDictionaryKey("CFBundleShortVersionString"), std::nullopt);
}

TEST_F(NSBundleTest, TextsComeFromTheFirstLanguageThatHasThem) {
    const test::TemporaryFolder folder;
    folder.write("de_AT.lproj/Localizable.strings", R"("tomato" = "Paradeiser";)");
    folder.write(
        "de.lproj/Localizable.strings", R"("tomato" = "Tomate"; "egg" = "Ei"; "none" = "";)");
    folder.write("de.lproj/Other.strings", R"("egg" = "Anderes Ei";)");
    folder.write(
        "Base.lproj/Localizable.strings", R"("egg" = "Egg"; "milk" = "Milk"; "none" = "x";)");
    std::filesystem::create_directories(folder.path("fr.lproj/Localizable.strings"));
    desktop.values.resourcePath = folder.path();
    desktop.languages = {"fr", "de_AT", "de"};
    const struct {
        std::string key, value, table, text;
    } rows[] = {
        {"tomato", "", "", "Paradeiser"},
        {"tomato", "", "Localizable", "Paradeiser"},
        {"egg", "fallback", "", "Ei"},
        {"egg", "", "Other", "Anderes Ei"},
        {"tomato", "", "Other", "tomato"},
        {"milk", "", "", "Milk"},
        {"none", "fallback", "", ""},
        {"bread", "", "", "bread"},
        {"bread", "fallback", "", "fallback"},
        {"egg", "", "Missing", "egg"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(bundle.localizedStringForKey(row.key, row.value, row.table), row.text) << row.key;

    desktop.languages = {};
    EXPECT_EQ(bundle.localizedStringForKey("egg", ""), "Egg");
}

TEST_F(NSBundleTest, WithoutResourcesNoFolderIsRead) {
    const test::TemporaryFolder folder;
    folder.write("Base.lproj/Localizable.strings", R"("egg" = "somebody else's";)");
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    EXPECT_EQ(bundle.localizedStringForKey("egg", ""), "egg");
    std::filesystem::current_path(before);
}

} // namespace

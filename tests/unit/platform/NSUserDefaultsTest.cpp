// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSUserDefaults.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/headless/HeadlessDefaultsStore.h>
#include <KWToolkit/platform/headless/HeadlessMainBundle.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace kw;

constexpr auto least = std::numeric_limits<std::int64_t>::min();
constexpr auto greatest = std::numeric_limits<std::int64_t>::max();

class NSUserDefaultsTest : public testing::Test {
protected:
    HeadlessDefaultsStore store;
    HeadlessMainBundle bundle;
    ServiceScope<HeadlessDefaultsStore> storeScope {store};
    ServiceScope<HeadlessMainBundle> bundleScope {bundle};
    NSUserDefaults defaults = NSUserDefaults::standardUserDefaults();
};

TEST_F(NSUserDefaultsTest, ConvertsWhatIsStored) {
    const struct {
        PropertyValue value;
        bool truth;
        std::int64_t integer;
        double real;
        std::optional<std::string> text;
    } rows[] = {
        {true, true, 1, 1, std::nullopt},
        {false, false, 0, 0, std::nullopt},
        {0, false, 0, 0, "0"},
        {least, true, least, -0x1p63, "-9223372036854775808"},
        {0.1, true, 0, 0.1, "0.1"},
        {-2.9, true, -2, -2.9, "-2.9"},
        {1e300, true, greatest, 1e300, "1e+300"},
        {-1e300, true, least, -1e300, "-1e+300"},
        {0x1p63, true, greatest, 0x1p63, "9223372036854775808"},
        {"", false, 0, 0, ""},
        {"yes", true, 0, 0, "yes"},
        {" Truth", true, 0, 0, " Truth"},
        {"no 1", false, 0, 0, "no 1"},
        {"00", false, 0, 0, "00"},
        {"-007.5e1x", true, -7, -75, "-007.5e1x"},
        {"\t+3", true, 3, 3, "\t+3"},
        {"+-3", false, 0, 0, "+-3"},
        {"--3", false, 0, 0, "--3"},
        {"- 3", false, 0, 0, "- 3"},
        {"inf", false, 0, 0, "inf"},
        {"-nan", false, 0, 0, "-nan"},
        {"0x10", false, 0, 0, "0x10"},
        {".5", false, 0, 0.5, ".5"},
        {"99999999999999999999", true, greatest, 1e20, "99999999999999999999"},
        {"-99999999999999999999", true, least, -1e20, "-99999999999999999999"},
        {NSNull(), false, 0, 0, std::nullopt},
        {PropertyList {1}, false, 0, 0, std::nullopt},
        {PropertyMap {{"a", 1}}, false, 0, 0, std::nullopt},
    };
    for (const auto& row : rows) {
        EXPECT_FALSE(defaults.setObject(row.value, "key"));
        const auto name = row.text.value_or("no text");
        EXPECT_EQ(defaults.objectForKey("key"), row.value) << name;
        EXPECT_EQ(defaults.boolForKey("key"), row.truth) << name;
        EXPECT_EQ(defaults.integerForKey("key"), row.integer) << name;
        EXPECT_EQ(defaults.doubleForKey("key"), row.real) << name;
        EXPECT_EQ(defaults.stringForKey("key"), row.text) << name;
        EXPECT_EQ(defaults.arrayForKey("key").has_value(), row.value.list() != nullptr) << name;
        EXPECT_EQ(defaults.dictionaryForKey("key").has_value(), row.value.map() != nullptr) << name;
    }
}

TEST_F(NSUserDefaultsTest, KeysThatAreNotSetAreEmpty) {
    EXPECT_FALSE(defaults.objectForKey("key"));
    EXPECT_FALSE(defaults.stringForKey("key"));
    EXPECT_FALSE(defaults.boolForKey("key"));
    EXPECT_EQ(defaults.integerForKey("key"), 0);
    EXPECT_EQ(defaults.doubleForKey("key"), 0);
    EXPECT_FALSE(defaults.arrayForKey("key"));
    EXPECT_FALSE(defaults.dictionaryForKey("key"));
}

TEST_F(NSUserDefaultsTest, DomainsAreApartAndErrorsChangeNothing) {
    EXPECT_EQ(defaults.domain(), "org.example.Host");
    NSUserDefaults shared("org.example.Suite");
    EXPECT_FALSE(defaults.apply({{"a", 1}, {"b", 2}}));
    EXPECT_FALSE(shared.setObject(3, "a"));
    EXPECT_FALSE(defaults.removeObjectForKey("b"));
    store.setError(std::make_error_code(std::errc::no_space_on_device));
    EXPECT_EQ(defaults.setObject(4, "a"), std::errc::no_space_on_device);
    EXPECT_EQ(defaults.removeObjectForKey("a"), std::errc::no_space_on_device);
    EXPECT_EQ(defaults.dictionaryRepresentation(), (PropertyMap {{"a", 1}}));
    EXPECT_EQ(shared.dictionaryRepresentation(), (PropertyMap {{"a", 3}}));
}

static_assert(!std::is_convertible_v<int*, PropertyValue>); // would be true, and stored as that

} // namespace

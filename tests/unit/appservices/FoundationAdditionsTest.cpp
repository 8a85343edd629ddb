// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The additions to basic values.
#include <KWToolkit/appservices/KWByteUnits.h>
#include <KWToolkit/appservices/NSDate+PastFuture.h>
#include <KWToolkit/appservices/NSError+DebugDescription.h>
#include <KWToolkit/appservices/NSMutableArray+Prefill.h>
#include <KWToolkit/appservices/NSString+UUID.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/headless/HeadlessLocale.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <set>

namespace {

using namespace kw;

TEST(FoundationAdditions, SizesAreWrittenInTheLargestUnit) {
    HeadlessLocale locale;
    const ServiceScope scope(locale);
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const struct {
        double bytes;
        unsigned flags;
        const char* text;
    } rows[] = {
        {999, 0, "999 B"},
        {1000, 0, "1 kB"},
        {1000, 2, "1 kB"},
        {1536, 1, "1.5 kB"},
        {1048576, 1, "1 MB"},
        {1234567, 0, "1.23 MB"},
        {1e30, 0, "1000000 YB"},
        {1e30, 4, "1,000,000 YB"},
        {0x1p90, 1, "1024 YB"},
        {123e46, 4, "1,230,000,000,000,000,000,000,000 YB"},
        // What is rounded is the shortest decimal, half to even, after the unit is chosen.
        {1015, 0, "1.02 kB"},
        {1025, 0, "1.02 kB"},
        {999999, 0, "1000 kB"},
        {999.996, 0, "1000 B"},
        {0.005, 0, "0 B"},
        {0.0051, 0, "0.01 B"},
        {0.995, 0, "1 B"},
        {-0.001, 0, "-0 B"},
        {-1234567.125, 4, "-1,234,567.12 B"},
        {std::numeric_limits<double>::quiet_NaN(), 0, "NaN B"},
        {infinity, 4, "+∞ YB"},
        {-infinity, 0, "-∞ B"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(unitStringFromBytes(row.bytes, row.flags), row.text) << row.bytes;

    const std::pair<NumberSeparators, const char*> styles[] = {
        {{",", "\u202F", {3}}, "-1\u202F234\u202F567,5 B"},
        {{".", ",", {3, 2}}, "-12,34,567.5 B"},
        {{".", "'", {2, 3, 0}}, "-12'345'67.5 B"},
        {{".", "'", {0}}, "-1234567.5 B"},
        {{".", "", {3}}, "-1234567.5 B"},
    };
    for (const auto& [separators, text] : styles) {
        locale.separators = separators;
        EXPECT_EQ(unitStringFromBytes(-1234567.5, KWByteUnitsDecimalStyle), text);
    }
}

TEST(FoundationAdditions, DatesAreBeforeOrAfterNow) {
    using std::chrono::system_clock;
    const auto now = system_clock::now();
    for (const auto date : {system_clock::time_point::min(), now - std::chrono::nanoseconds(1)})
        EXPECT_TRUE(isInThePast(date) && !isInTheFuture(date));
    for (const auto date : {system_clock::time_point::max(), now + std::chrono::hours(1)})
        EXPECT_TRUE(isInTheFuture(date) && !isInThePast(date));
}

TEST(FoundationAdditions, UuidsAreRandomAndDiffer) {
    std::set<std::string> all;
    for (int i = 0; i < 1000; ++i) {
        const std::string text = uuid().value();
        EXPECT_THAT(text,
            testing::MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-"
                                  "[0-9A-F]{12}"));
        all.insert(text);
    }
    EXPECT_EQ(all.size(), 1000U);
}

TEST(FoundationAdditions, ListsArePrefilledWithNulls) {
    EXPECT_EQ(arrayWithSize(0), PropertyList());
    PropertyList list = arrayWithSize(3);
    EXPECT_EQ(list, (PropertyList {NSNull(), NSNull(), NSNull()}));
    list[1] = "b";
    EXPECT_EQ(description(list), "(<null>, b, <null>)");
}

TEST(FoundationAdditions, ErrorsAreDescribedWithWhatIsBelowThem) {
    const auto underlying = [](std::optional<NSErrorUserInfo> userInfo) {
        return std::make_shared<const NSError>(NSError {"U", -1, std::move(userInfo)});
    };
    const std::pair<std::optional<NSErrorUserInfo>, std::optional<std::string>> rows[] = {
        {std::nullopt, std::nullopt},
        {NSErrorUserInfo {}, "{code = 5; domain = D;}"},
        {NSErrorUserInfo {{{"a", 1}, {"code", "x"}, {"domain", NSNull()}}, nullptr},
            "{a = 1; code = 5; domain = D;}"},
        {NSErrorUserInfo {{}, underlying(NSErrorUserInfo {{{"b", 2}}, underlying({{}})})},
            "{NSUnderlyingError = {NSUnderlyingError = {code = -1; domain = U;}; b = 2; code = -1; "
            "domain = U;}; code = 5; domain = D;}"},
        {NSErrorUserInfo {{{NSUnderlyingErrorKey, "none"}}, underlying(std::nullopt)},
            "{NSUnderlyingError = Error Domain=U Code=-1 \"(null)\"; code = 5; domain = D;}"},
    };
    for (const auto& [userInfo, text] : rows)
        EXPECT_EQ(debugDescription({"D", 5, userInfo}), text);
    EXPECT_EQ(description(NSError {"D", 5, NSErrorUserInfo {{{"a", 1}}, underlying({})}}),
        "Error Domain=D Code=5 UserInfo={NSUnderlyingError = Error Domain=U Code=-1 \"(null)\"; a "
        "= 1;}");
}

} // namespace

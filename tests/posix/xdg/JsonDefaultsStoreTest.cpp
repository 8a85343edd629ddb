// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/JsonDefaultsStore.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/headless/HeadlessConsole.h>
#include <tests/support/ForkedTask.h>
#include <tests/support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/time.h>

#include <cmath>
#include <cstdint>
#include <fstream>
#include <limits>
#include <random>
#include <thread>

namespace {

using namespace kw;
using test::say;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSubsetOf;
using testing::SizeIs;
using testing::StartsWith;

constexpr auto file = "app/defaults.json";

class JsonDefaultsStoreTest : public testing::Test {
protected:
    // In memory where possible: thousands of writes would else wait for a disk that others use.
    test::TemporaryFolder folder {std::filesystem::is_directory("/dev/shm")
            ? std::filesystem::path("/dev/shm")
            : std::filesystem::temp_directory_path()};
    JsonDefaultsStore store {folder.path()};
    HeadlessConsole console;
    ServiceScope<HeadlessConsole> scope {console};
};

std::string nested(int depth) { return std::string(depth, '[') + std::string(depth, ']'); }

PropertyValue nestedValue(int depth) {
    PropertyValue value = PropertyList();
    for (int i = 1; i < depth; ++i)
        value = PropertyList {value};
    return value;
}

TEST_F(JsonDefaultsStoreTest, ValuesComeBackAsTheyWere) {
    const PropertyMap values {
        {"", "the empty key"},
        {std::string("nul\0in it", 9), std::string("a\0b", 3)},
        {"truth", true},
        {"one", 1},
        {"one, real", 1.0},
        {"tenth", 0.1},
        {"smallest", std::numeric_limits<double>::denorm_min()},
        {"largest", std::numeric_limits<double>::max()},
        {"least integer", std::numeric_limits<std::int64_t>::min()},
        {"greatest integer", std::numeric_limits<std::int64_t>::max()},
        {"text", "\"\\\n\t\x7F ⌥ \U0001F600"},
        {"list", PropertyList {1, "a\nb", PropertyList(), PropertyMap()}},
        {"map", PropertyMap {{"b", PropertyMap {{"c", false}}}, {"a", PropertyList {1.5}}}},
        {"null", NSNull()},
        {"nulls", PropertyList {NSNull(), PropertyMap {{"", NSNull()}}}},
        {"deep", nestedValue(255)},
    };
    EXPECT_FALSE(store.write("app", {values.begin(), values.end()}));
    EXPECT_EQ(store.read("app"), values);
    EXPECT_FALSE(store.write("app", {{"zero", -0.0}}));
    EXPECT_TRUE(std::signbit(*store.read("app").at("zero").real()));
    EXPECT_THAT(folder.names("app"), ElementsAre("defaults.json", "defaults.json.lock"));
}

TEST_F(JsonDefaultsStoreTest, KeepsWhatItDoesNotChangeByteForByte) {
    folder.write(file, R"({ "z" : 1.10,"big":123456789012345678901234567890 ,
        "list": [ 1e999, null,{"k":null}], "null":null, "u":18446744073709551615,
        "twice":1, "b":[0,null], "twice":2, "gone": {}, "brackets": "]}\"{,:" }
)");
    EXPECT_EQ(store.read("app"),
        (PropertyMap {{"z", 1.1}, {"big", 123456789012345678901234567890.0},
            {"u", 18446744073709551615.0}, {"twice", 2}, {"b", PropertyList {0, NSNull()}},
            {"null", NSNull()}, {"gone", PropertyMap()}, {"brackets", "]}\"{,:"}}));
    EXPECT_FALSE(store.write(
        "app", {{"b", PropertyList {1}}, {"twice", 3}, {"gone", std::nullopt}, {"a", true}}));
    EXPECT_EQ(folder.read(file), R"({
    "z": 1.10,
    "big": 123456789012345678901234567890,
    "list": [ 1e999, null,{"k":null}],
    "null": null,
    "u": 18446744073709551615,
    "twice": 1,
    "b": [
        1
    ],
    "twice": 3,
    "brackets": "]}\"{,:",
    "a": true
}
)");
    EXPECT_FALSE(store.write("app", {{"twice", std::nullopt}}));
    EXPECT_FALSE(store.read("app").contains("twice"));
}

TEST_F(JsonDefaultsStoreTest, WritesOnlyWhatChanges) {
    const auto inode = [&] {
        struct stat status {};
        EXPECT_EQ(::stat(folder.path(file).c_str(), &status), 0);
        return status.st_ino;
    };
    folder.write(file, R"({"a":1.0,"m":{"y":1,"x":[2]}})");
    const auto before = inode();
    EXPECT_FALSE(store.write("app",
        {{"a", 1.0}, {"m", PropertyMap {{"x", PropertyList {2}}, {"y", 1}}}, {"b", std::nullopt}}));
    EXPECT_EQ(inode(), before);
    EXPECT_FALSE(store.write("app", {{"a", 1}}));
    EXPECT_NE(inode(), before);
    EXPECT_TRUE(store.read("app").at("a").integer());
}

TEST_F(JsonDefaultsStoreTest, RefusesWhatItCannotHold) {
    folder.write(file, R"({"a":1})");
    const std::string bad = "\xC3(";
    const std::pair<std::string, PropertyValue> changes[] = {
        {"b", bad},
        {bad, 1},
        {"b", PropertyMap {{bad, 1}}},
        {"b", PropertyList {"\xED\xA0\x80"}},
        {"b", std::numeric_limits<double>::infinity()},
        {"b", PropertyList {std::nan("")}},
        {"b", nestedValue(256)},
    };
    for (const auto& [key, value] : changes)
        EXPECT_EQ(store.write("app", {{"a", 2}, {key, value}}), std::errc::invalid_argument);
    EXPECT_EQ(store.write("app", {{bad, std::nullopt}}), std::errc::invalid_argument);
    EXPECT_EQ(folder.read(file), R"({"a":1})");

    for (const std::string& domain : {std::string(), std::string("."), std::string(".."),
             std::string("a/b"), std::string("a\0b", 3)}) {
        EXPECT_EQ(store.write(domain, {{"a", 1}}), std::errc::invalid_argument) << domain;
        EXPECT_THAT(store.read(domain), IsEmpty());
    }
    EXPECT_EQ(store.write(std::string(256, 'd'), {{"a", 1}}), std::errc::filename_too_long);
    EXPECT_THAT(folder.names(), ElementsAre("app"));
    EXPECT_THAT(folder.names("app"), ElementsAre("defaults.json"));
}

TEST_F(JsonDefaultsStoreTest, SetsDamagedFilesAside) {
    const std::string damages[] = {"", " \n", "null", "[]", "{", "}", "{}{}", "{},", R"({"a":1,})",
        R"({"a" 1})", R"({"a"})", R"({"a":})", R"({,})", R"({a:1})", R"({1:1})", R"({"a":01})",
        R"({"a":1 2})", R"({"a":[1})", R"({"a":1])", R"({"a":[1}]})", R"({"a":"b)", R"({"a":"\x"})",
        std::string("{\"a\":1\0}", 8), "{\"a\":\"\xFF\"}", "{\"\xFF\":1}", "{\"a\":\"\n\"}",
        R"({"a":"\uD800"})", R"({"a":NaN})", R"({"a":1:2})", R"({"a":)" + nested(256) + "}"};
    for (const std::string& damage : damages) {
        folder.write(file, damage);
        EXPECT_THAT(store.read("app"), IsEmpty()) << damage;
        EXPECT_FALSE(store.write("app", {{"a", std::nullopt}}));
        EXPECT_EQ(folder.read(file), damage);
        EXPECT_FALSE(store.write("app", {{"b", 2}}));
        EXPECT_EQ(store.read("app"), (PropertyMap {{"b", 2}})) << damage;
        // Some of them within one second, so that names are taken.
        const auto names = folder.names("app");
        const auto name = console.lines().back().substr(console.lines().back().rfind(' ') + 1);
        EXPECT_THAT(name, StartsWith("defaults.json.damaged-2"));
        EXPECT_EQ(folder.read("app/" + name), damage);
    }
    EXPECT_THAT(folder.names("app"), SizeIs(std::size(damages) + 2));
    EXPECT_THAT(console.lines(), SizeIs(std::size(damages)));
    EXPECT_THAT(console.lines()[0], HasSubstr(folder.path(file)));

    folder.write(file, R"({"a":)" + nested(255) + "}");
    EXPECT_FALSE(store.write("app", {{"b", 2}}));
    EXPECT_THAT(store.read("app"), SizeIs(2));
    EXPECT_THAT(console.lines(), SizeIs(std::size(damages)));
}

TEST_F(JsonDefaultsStoreTest, LeavesAFileAloneThatItCannotRead) {
    std::filesystem::create_directories(folder.path(file));
    EXPECT_EQ(store.write("app", {{"a", 1}}), std::errc::is_a_directory);
    folder.write("blocked", "");
    EXPECT_EQ(store.write("blocked", {{"a", 1}}), std::errc::not_a_directory);
    EXPECT_THAT(folder.names("app"), ElementsAre("defaults.json", "defaults.json.lock"));
    EXPECT_THAT(console.lines(), IsEmpty());
}

TEST_F(JsonDefaultsStoreTest, MakesFoldersForTheUserAlone) {
    JsonDefaultsStore deep(folder.path("x/config"));
    EXPECT_FALSE(deep.write("app", {{"a", 1}}));
    for (const auto* const path : {"x", "x/config", "x/config/app"})
        EXPECT_EQ(std::filesystem::status(folder.path(path)).permissions(),
            std::filesystem::perms::owner_all)
            << path;
}

/// Counts up to `last` under the key, and says where a number is not what was written before.
void count(JsonDefaultsStore& store, const std::string& key, int last, int output) {
    for (int number = 1; number <= last; ++number) {
        if (const auto error = store.write("app", {{key, number}}))
            return say(output, error.message());
        const auto values = store.read("app");
        const auto found = values.find(key);
        if (found == values.end() || found->second != PropertyValue(number))
            return say(output, key + " lost " + std::to_string(number));
    }
}

TEST_F(JsonDefaultsStoreTest, ProcessesLoseNothingOfEachOther) {
    const auto counting = [&](const std::string& key) {
        return [this, key](int output) {
            // A signal often comes while the process waits for the other's lock.
            struct sigaction ignore {};
            ignore.sa_handler = [](int) { };
            ::sigaction(SIGALRM, &ignore, nullptr);
            const itimerval often {{0, 300}, {0, 300}};
            ::setitimer(ITIMER_REAL, &often, nullptr);
            count(store, key, 1000, output);
        };
    };
    test::ForkedTask first(counting("first"));
    test::ForkedTask second(counting("second"));
    EXPECT_EQ(first.result(), "");
    EXPECT_EQ(second.result(), "");
    EXPECT_EQ(store.read("app"), (PropertyMap {{"first", 1000}, {"second", 1000}}));
}

TEST_F(JsonDefaultsStoreTest, ThreadsLoseNothingOfEachOther) {
    const auto counting = [this](const std::string& key) {
        for (int number = 0; number < 100; ++number)
            store.write("app", {{key + std::to_string(number), store.read("app").size() < 200}});
    };
    std::thread first(counting, "first");
    std::thread second(counting, "second");
    first.join();
    second.join();
    EXPECT_THAT(store.read("app"), SizeIs(200));
}

TEST_F(JsonDefaultsStoreTest, AKilledProcessLosesNothingThatWasWritten) {
    std::minstd_rand random(std::random_device {}());
    std::int64_t last = 0;
    store.write("app", {{"number", last}});
    for (int round = 0; round < 200; ++round) {
        test::ForkedTask writer([&](int output) {
            while (!store.write("app", {{"number", ++last}}))
                say(output, ".");
        });
        std::size_t acknowledged = 0;
        const auto enough = random() % 4;
        while (acknowledged < enough)
            acknowledged += writer.readSome().size();
        while (writer.waitForOutput(static_cast<long>(random() % 2'000'000)) && random() % 2)
            acknowledged += writer.readSome().size();
        writer.kill();
        for (std::string some = writer.readSome(); !some.empty(); some = writer.readSome())
            acknowledged += some.size();

        const auto values = store.read("app");
        ASSERT_TRUE(values.contains("number")) << "in round " << round;
        const auto number = *values.at("number").integer();
        const auto sure = last + static_cast<std::int64_t>(acknowledged);
        EXPECT_GE(number, sure);
        EXPECT_LE(number, sure + 1);
        last = number;
        EXPECT_THAT(folder.names("app"),
            IsSubsetOf({"defaults.json", "defaults.json.lock", ".defaults.json.replacement"}));
    }
    EXPECT_FALSE(store.write("app", {{"number", 0}}));
    EXPECT_THAT(folder.names("app"), ElementsAre("defaults.json", "defaults.json.lock"));
    EXPECT_THAT(console.lines(), IsEmpty());
}

/// Puts a file system of 64 KiB at the path, for this process alone. Says why where that cannot be.
bool mountSmallDisk(const std::string& path, int output) {
    const auto user = std::to_string(::getuid());
    const auto group = std::to_string(::getgid());
    if (::unshare(CLONE_NEWNS) != 0) {
        if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
            say(output, "this test needs root or unprivileged user namespaces");
            return false;
        }
        std::ofstream("/proc/self/uid_map") << "0 " + user + " 1";
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/gid_map") << "0 " + group + " 1";
    }
    const bool mounted = ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0
        && ::mount("tmpfs", path.c_str(), "tmpfs", 0, "size=64k") == 0;
    if (!mounted)
        say(output, "a tmpfs cannot be mounted");
    return mounted;
}

TEST_F(JsonDefaultsStoreTest, AFullDiskChangesNothing) {
    test::ForkedTask task([&](int output) {
        if (!mountSmallDisk(folder.path(), output))
            return;
        const PropertyMap old {{"a", std::string(5000, 'a')}};
        const auto expect = [&](bool holds, std::string_view what) {
            if (!holds)
                say(output, std::string(what) + "; ");
        };
        const std::set<std::string> names {"defaults.json", "defaults.json.lock"};
        expect(!store.write("app", {old.begin(), old.end()}), "writes where there is room");
        folder.write("filler", std::string(65536, 'f'));
        for (const std::size_t size : {1, 60000}) {
            const DefaultsChanges changes {{"b", std::string(size, 'b')}};
            expect(store.write("app", changes) == std::errc::no_space_on_device, "says it is full");
            expect(store.read("app") == old, "keeps the old content");
            expect(folder.names("app") == names, "leaves no rubbish");
        }
        std::filesystem::remove(folder.path("filler"));
        expect(!store.write("app", {{"b", 1}}), "writes when there is room again");
        expect(store.read("app").size() == 2 && folder.names("app") == names, "is as before");
    });
    EXPECT_EQ(task.result(), "");
}

} // namespace

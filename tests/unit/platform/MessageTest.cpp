// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/foundation/NSException.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace kw;
using testing::HasSubstr;

class Song : public NSObject { };

class Player : public NSObject {
public:
    void toggle() { ++toggles; }
    void open(const std::string& file) { opened = file; }
    int volume() const { return 11; }
    int sum(int a, std::uint16_t b) { return a + b; }
    void play(Song& song) { playing = &song; }
    void queue(const Song* song) { queued = song; }
    std::shared_ptr<Song> current(std::shared_ptr<Song> song) { return song; }

    static Class& classObject() {
        static Class object("Player", NSObject::classObject(),
            {
                method("toggle", &Player::toggle),
                method("open:", &Player::open),
                method("volume", &Player::volume),
                method("sum:and:", &Player::sum),
                method("play:", &Player::play),
                method("queue:", &Player::queue),
                method("current:", &Player::current),
                method("reset", [](Player& player) { player.toggles = 0; }),
            });
        return object;
    }
    Class& isa() const override { return classObject(); }

    int toggles = 0;
    std::string opened;
    Song* playing = nullptr;
    const Song* queued = nullptr;
};

class LoudPlayer : public Player {
public:
    static Class& classObject() {
        static Class object("LoudPlayer", Player::classObject(),
            {method("volume", [](LoudPlayer&) { return 12; })});
        return object;
    }
    Class& isa() const override { return classObject(); }
};

std::string reasonOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const NSException& exception) {
        EXPECT_EQ(exception.name(), NSInvalidArgumentException);
        return exception.reason();
    }
    return "(no exception)";
}

TEST(SEL, ComparesByName) {
    EXPECT_EQ(SEL("open:"), SEL(std::string("open:")));
    EXPECT_NE(SEL("open:"), SEL("open"));
    EXPECT_NE(SEL(""), SEL());
    EXPECT_FALSE(SEL());
    EXPECT_EQ(SEL().name(), "");
}

TEST(Message, CallsTheMethodOfThatNameOfTheNearestClass) {
    LoudPlayer player;
    player.performSelector(SEL("toggle"));
    send(player, SEL("open:"), "song.ogg");
    EXPECT_EQ(player.toggles, 1);
    EXPECT_EQ(player.opened, "song.ogg");
    EXPECT_EQ(send<int>(player, SEL("volume")), 12);
    send(player, SEL("volume")); // a result may be dropped
    send(player, SEL("reset"));
    EXPECT_EQ(player.toggles, 0);
    EXPECT_TRUE(player.isKindOfClass(Player::classObject()));
    EXPECT_FALSE(Player().isKindOfClass(LoudPlayer::classObject()));
    EXPECT_FALSE(player.respondsToSelector(SEL("stop")));
    EXPECT_FALSE(player.respondsToSelector(SEL()));
}

TEST(Message, IntegersMatchBySizeAndSign) {
    Player player;
    const unsigned short other = 2;
    EXPECT_EQ(send<int>(player, SEL("sum:and:"), 1, other), 3);
    EXPECT_EQ(send<int>(player, SEL("sum:and:"), 1, u'\2'), 3);
    EXPECT_THAT(reasonOf([&] { send<int>(player, SEL("sum:and:"), 1, 2); }), HasSubstr("i@:iS"));
}

TEST(Message, ObjectsAreCheckedOnArrival) {
    Player player;
    const auto song = std::make_shared<Song>();
    send(player, SEL("play:"), *song);
    send(player, SEL("queue:"), song.get());
    EXPECT_EQ(player.playing, song.get());
    EXPECT_EQ(player.queued, song.get());
    send(player, SEL("queue:"), nullptr);
    EXPECT_EQ(player.queued, nullptr);
    EXPECT_EQ(send<std::shared_ptr<NSObject>>(player, SEL("current:"), song), song);

    EXPECT_THAT(reasonOf([&] { send(player, SEL("play:"), player); }), HasSubstr("class Player"));
    EXPECT_THAT(reasonOf([&] { send(player, SEL("play:"), nullptr); }), HasSubstr("no object"));
    EXPECT_EQ(player.playing, song.get());
}

TEST(Message, WhatDoesNotFitIsAnErrorAndCallsNothing) {
    Player player;
    EXPECT_EQ(reasonOf([&] { send(player, SEL("open:"), 5); }),
        "-[Player open:]: the method's encoding is v@:@\"NSString\", the message's is v@:i");
    EXPECT_THAT(reasonOf([&] { send(player, SEL("open:")); }), HasSubstr("is v@:"));
    EXPECT_THAT(reasonOf([&] { send(player, SEL("toggle"), 1); }), HasSubstr("is v@:i"));
    EXPECT_THAT(reasonOf([&] { send<double>(player, SEL("volume")); }), HasSubstr("d@:"));
    EXPECT_THAT(
        reasonOf([&] { send(player, SEL("open:"), std::vector<int>()); }), HasSubstr("vector"));
    EXPECT_THAT(reasonOf([&] { player.performSelector(SEL("stop")); }),
        testing::StartsWith("-[Player stop]: unrecognized selector sent to instance 0x"));
    EXPECT_EQ(player.opened, "");
    EXPECT_EQ(player.toggles, 0);
}

TEST(Class, AddedMethodsReachSubclassesMadeBefore) {
    Class base("Base", Player::classObject());
    Class derived("Derived", base);
    const Method volume = *Player::classObject().instanceMethod(SEL("volume"));
    const auto name = [](int i) { return SEL("method" + std::to_string(i)); };
    for (int i = 0; i < 100; ++i) {
        EXPECT_TRUE(base.addMethod(name(i), volume.implementation, volume.typeEncoding));
        EXPECT_FALSE(base.addMethod(name(i), volume.implementation, volume.typeEncoding));
    }
    for (int i = 0; i < 100; ++i) {
        ASSERT_NE(derived.instanceMethod(name(i)), nullptr);
        EXPECT_EQ(derived.instanceMethod(name(i))->name, name(i));
    }
    EXPECT_EQ(derived.instanceMethod(name(100)), nullptr);
    EXPECT_NE(derived.instanceMethod(SEL("toggle")), nullptr);
    EXPECT_EQ(Player::classObject().instanceMethod(name(0)), nullptr);
}

} // namespace

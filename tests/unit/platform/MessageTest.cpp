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
    void setRate(double newRate) { rate = newRate; }

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
                method("setRate:", &Player::setRate),
                method("reset", [](Player& player) { player.toggles = 0; }),
            });
        return object;
    }
    Class& isa() const override { return classObject(); }

    int toggles = 0;
    std::string opened;
    Song* playing = nullptr;
    const Song* queued = nullptr;
    double rate = 1;
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
    EXPECT_TRUE(SEL(""));
    EXPECT_FALSE(SEL());
    EXPECT_EQ(SEL().name(), "");
}

TEST(Message, CallsTheMethodOfThatName) {
    Player player;
    player.performSelector(SEL("toggle"));
    send(player, SEL("open:"), "song.ogg");
    EXPECT_EQ(player.toggles, 1);
    EXPECT_EQ(player.opened, "song.ogg");
    EXPECT_EQ(send<int>(player, SEL("volume")), 11);
    send(player, SEL("volume")); // a result may be dropped
    send(player, SEL("reset"));
    EXPECT_EQ(player.toggles, 0);
}

TEST(Message, FindsInheritedAndOverriddenMethods) {
    LoudPlayer player;
    EXPECT_EQ(send<int>(player, SEL("volume")), 12);
    player.performSelector(SEL("toggle"));
    EXPECT_EQ(player.toggles, 1);
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

TEST(Message, WrongTypesAreAnErrorWithBothEncodings) {
    Player player;
    EXPECT_EQ(reasonOf([&] { send(player, SEL("open:"), 5); }),
        "-[Player open:]: the method's encoding is v@:@\"NSString\", the message's is v@:i");
    EXPECT_THAT(reasonOf([&] { send(player, SEL("open:")); }), HasSubstr("is v@:"));
    EXPECT_THAT(reasonOf([&] { send(player, SEL("toggle"), 1); }), HasSubstr("is v@:i"));
    EXPECT_THAT(reasonOf([&] { send<double>(player, SEL("volume")); }), HasSubstr("d@:"));
    EXPECT_THAT(reasonOf([&] { send(player, SEL("setRate:"), 1); }), HasSubstr("v@:d"));
    EXPECT_THAT(
        reasonOf([&] { send(player, SEL("setRate:"), std::vector<int>()); }), HasSubstr("vector"));
    EXPECT_EQ(player.opened, "");
    EXPECT_EQ(player.toggles, 0);
}

TEST(Message, UnknownMethodIsAnError) {
    Player player;
    EXPECT_THAT(reasonOf([&] { player.performSelector(SEL("stop")); }),
        testing::StartsWith("-[Player stop]: unrecognized selector sent to instance 0x"));
}

TEST(Class, AddedMethodsReachSubclassesMadeBefore) {
    Class base("Base", Player::classObject());
    Class derived("Derived", base);
    const SEL shout("shout");
    const Method volume = *Player::classObject().instanceMethod(SEL("volume"));
    EXPECT_EQ(derived.instanceMethod(shout), nullptr);
    EXPECT_TRUE(base.addMethod(shout, volume.implementation, volume.typeEncoding));
    EXPECT_FALSE(base.addMethod(shout, volume.implementation, volume.typeEncoding));
    ASSERT_NE(derived.instanceMethod(shout), nullptr);
    EXPECT_EQ(derived.instanceMethod(shout), base.instanceMethod(shout));
    EXPECT_EQ(Player::classObject().instanceMethod(shout), nullptr);
}

TEST(Class, FindsEveryMethodOfALargeTable) {
    const Method volume = *Player::classObject().instanceMethod(SEL("volume"));
    Class cls("Large", Player::classObject());
    const auto name = [](int i) { return SEL("method" + std::to_string(i)); };
    for (int i = 0; i < 100; ++i)
        cls.addMethod(name(i), volume.implementation, volume.typeEncoding);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(cls.instanceMethod(name(i))->name, name(i));
    EXPECT_EQ(cls.instanceMethod(name(100)), nullptr);
    EXPECT_NE(cls.instanceMethod(SEL("toggle")), nullptr);
}

} // namespace

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>
#include <KWToolkit/platform/foundation/NSKeyValueObserving.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <vector>

namespace {

using namespace kw;
using Options = NSKeyValueObservingOptions;

enum class Mood : std::uint8_t { calm = 3 };

/// Tells of changes of its name itself, of others not.
class Person : public NSObject {
public:
    const std::string& name() const { return m_name; }
    void setName(std::string name) { setAndNotify(*this, nameKey, m_name, std::move(name)); }
    void setFriend(std::shared_ptr<Person> person) {
        setAndNotify(*this, SEL("friend"), m_friend, std::move(person));
    }
    void setNothing(int) { throw std::runtime_error("not now"); }

    static Class& classObject() {
        static auto& object = *new Class("Person", NSObject::classObject(), {},
            {
                property("name", &Person::name, &Person::setName),
                property(
                    "friend", [](const Person& person) { return person.m_friend; },
                    [](Person& person, std::shared_ptr<Person> other) {
                        person.setFriend(std::move(other));
                    }),
                property("age", &Person::age),
                property("mood", &Person::mood),
                property("isShy", &Person::isShy),
                property("height", &Person::height),
                property("initial", &Person::initial),
                property("large", &Person::large),
                property("nickname", &Person::nickname),
                property("sizes", &Person::sizes),
                property("shout", [](const Person& person) { return person.m_name + "!"; }),
                property(
                    "nothing", [](const Person&) { return 0; }, &Person::setNothing),
            });
        return object;
    }
    Class& isa() const override { return classObject(); }

    static inline const SEL nameKey {"name"};
    std::int8_t age = 7;
    Mood mood = Mood::calm;
    bool isShy = true;
    float height = 1.5F;
    char16_t initial = u'A';
    std::uint64_t large = std::numeric_limits<std::uint64_t>::max();
    std::optional<std::string> nickname;
    std::vector<int> sizes {1, 2};

private:
    std::string m_name = "Ann";
    std::shared_ptr<Person> m_friend;
};

std::string thrownBy(const std::function<void()>& call) {
    try {
        call();
    } catch (const NSException& exception) {
        return exception.name();
    }
    return "nothing";
}

TEST(KeyValueCoding, BoxesValuesSoThatNobodyNeedsToKnowTheirTypes) {
    const Person person;
    EXPECT_EQ(std::any_cast<std::int64_t>(valueForKey(person, "age")), 7);
    EXPECT_EQ(std::any_cast<std::int64_t>(valueForKey(person, "mood")), 3);
    EXPECT_EQ(std::any_cast<std::int64_t>(valueForKey(person, "initial")), 65);
    EXPECT_EQ(std::any_cast<std::uint64_t>(valueForKey(person, "large")), person.large);
    EXPECT_EQ(std::any_cast<double>(valueForKey(person, "height")), 1.5);
    EXPECT_EQ(std::any_cast<bool>(valueForKey(person, "isShy")), true);
    EXPECT_EQ(std::any_cast<std::string>(valueForKey(person, "shout")), "Ann!");
    EXPECT_FALSE(valueForKey(person, "friend").has_value());
    EXPECT_FALSE(valueForKey(person, "nickname").has_value());
    EXPECT_EQ(valueForKey<std::vector<int>>(person, "sizes"), (std::vector {1, 2}));
}

TEST(KeyValueCoding, WritesWhatFitsAndNothingElse) {
    Person person;
    const struct {
        std::any value;
        std::optional<int> age; ///< none where it does not fit
    } rows[] {
        {boxed(-128), -128},
        {boxed(128), {}},
        {boxed(std::numeric_limits<std::uint64_t>::max()), {}},
        {boxed(127.9), 127},
        {boxed(-128.9), -128},
        {boxed(128.0), {}},
        {boxed(-129.0), {}},
        {boxed(std::nan("")), {}},
        {boxed(true), 1},
        {boxed("5"), {}},
        {std::any(), {}},
        {boxed(std::make_shared<Person>()), {}},
    };
    for (const auto& row : rows) {
        person.age = 0;
        EXPECT_EQ(thrownBy([&] { setValueForKey(person, row.value, "age"); }),
            row.age ? "nothing" : NSInvalidArgumentException);
        EXPECT_EQ(person.age, row.age.value_or(0));
    }
    setValueForKey(person, 2, "isShy");
    setValueForKey(person, 3, "mood");
    setValueForKey(person, std::numeric_limits<std::uint64_t>::max(), "large");
    setValueForKey(person, "Annie", "nickname");
    EXPECT_TRUE(person.isShy);
    EXPECT_EQ(person.large, std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(person.nickname, "Annie");
    setValueForKey(person, nullptr, "nickname");
    EXPECT_EQ(person.nickname, std::nullopt);
    EXPECT_EQ(unboxed<std::int64_t>(boxed(-9223372036854775808.0)),
        std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(thrownBy([] { unboxed<std::int64_t>(boxed(9223372036854775808.0)); }),
        NSInvalidArgumentException);
    EXPECT_EQ(thrownBy([&] { setValueForKey(person, std::make_shared<NSObject>(), "friend"); }),
        NSInvalidArgumentException);
    EXPECT_EQ(thrownBy([&] { setValueForKey(person, "x", "shout"); }), NSUnknownKeyException);
    EXPECT_EQ(thrownBy([&] { valueForKey(person, "salary"); }), NSUnknownKeyException);
}

TEST(KeyValueCoding, FollowsPaths) {
    Person ann;
    const auto bob = std::make_shared<Person>();
    setValueForKey(ann, bob, "friend");
    setValueForKeyPath(ann, "Bob", "friend.name");
    EXPECT_EQ(bob->name(), "Bob");
    EXPECT_EQ(valueForKeyPath<std::string>(ann, "friend.shout"), "Bob!");
    EXPECT_FALSE(valueForKeyPath(ann, "friend.friend.name").has_value());
    setValueForKeyPath(ann, "nobody", "friend.friend.name");
    for (const char* const path : {"name.length", "friend.salary", "salary.size", "", "name."})
        EXPECT_EQ(thrownBy([&] { valueForKeyPath(ann, path); }), NSUnknownKeyException) << path;
}

/// Writes down what it is told.
struct Diary : NSObject {
    static std::string text(const std::any& value) {
        const auto* const string = std::any_cast<std::string>(&value);
        return string ? *string : value.has_value() ? "?" : "-";
    }
    void observeValueForKeyPath(const std::string& keyPath, NSObject&,
        const NSKeyValueChange& change, const void* context) override {
        EXPECT_EQ(change.kind, NSKeyValueChangeKind::setting);
        EXPECT_EQ(context, this);
        entries.push_back(keyPath + (change.isPrior ? " before " : " ") + text(change.oldValue)
            + ">" + text(change.newValue));
    }
    std::vector<std::string> take() { return std::exchange(entries, {}); }
    NSKeyValueObservation observe(NSObject& object, const char* path, Options options = {}) {
        return addObserver(object, *this, path, options, this);
    }
    std::vector<std::string> entries;
};
using Entries = std::vector<std::string>;

TEST(KeyValueObserving, TellsOfEachSetOnce) {
    Person person;
    Diary diary;
    diary.observe(person, "name");
    diary.observe(person, "age");
    diary.observe(person, "undeclared");
    const auto told = [&](const std::function<void()>& change) {
        change();
        return diary.take();
    };
    EXPECT_EQ(told([&] { person.setName("Bea"); }), Entries {"name ->-"});
    EXPECT_EQ(told([&] { person.setName("Bea"); }), Entries {"name ->-"}); // the same value
    EXPECT_EQ(told([&] { setValueForKey(person, "Cleo", "name"); }), Entries {"name ->-"});
    EXPECT_EQ(told([&] { setValueForKey(person, 8, "age"); }), Entries {"age ->-"});
    EXPECT_EQ(told([&] { person.age = 9; }), Entries {});
    EXPECT_EQ(
        told([&] { didChangeValueForKey(person, SEL("undeclared")); }), Entries {"undeclared ->-"});
    EXPECT_EQ(told([&] {
        willChangeValueForKey(person, Person::nameKey);
        willChangeValueForKey(person, SEL("age"));
        person.setName("Dora");
        setValueForKey(person, 10, "age");
        didChangeValueForKey(person, SEL("age"));
        EXPECT_EQ(diary.take(), Entries {"age ->-"});
        didChangeValueForKey(person, Person::nameKey);
    }),
        Entries {"name ->-"});
    diary.observe(person, "nothing");
    EXPECT_THROW(setValueForKey(person, 1, "nothing"), std::runtime_error);
    EXPECT_EQ(diary.take(), Entries {});
    EXPECT_EQ(told([&] { person.setName("Eve"); }), Entries {"name ->-"});
}

TEST(KeyValueObserving, TellsValuesWhereTheyAreAskedFor) {
    const struct {
        Options options;
        Entries told; ///< on adding, then as Ann becomes Bob
    } rows[] {
        {{}, {"name ->-"}},
        {{.newValue = true}, {"name ->Bob"}},
        {{.oldValue = true}, {"name Ann>-"}},
        {{.newValue = true, .oldValue = true}, {"name Ann>Bob"}},
        {{.initial = true}, {"name ->-", "name ->-"}},
        {{.newValue = true, .initial = true}, {"name ->Ann", "name ->Bob"}},
        {{.prior = true}, {"name before ->-", "name ->-"}},
        {{.newValue = true, .oldValue = true, .prior = true},
            {"name before Ann>-", "name Ann>Bob"}},
    };
    for (const bool isPath : {false, true}) {
        for (const auto& row : rows) {
            Person root;
            const auto person = std::make_shared<Person>();
            root.setFriend(person);
            Diary diary;
            diary.observe(isPath ? root : *person, isPath ? "friend.name" : "name", row.options);
            person->setName("Bob");
            Entries told = row.told;
            for (std::string& entry : told)
                entry.insert(0, isPath ? "friend." : "");
            EXPECT_EQ(diary.take(), told);
            // Another person of another name is a change of the name, too.
            if (isPath && row.options.newValue && row.options.oldValue && !row.options.prior) {
                root.setFriend(std::make_shared<Person>());
                EXPECT_EQ(diary.take(), Entries {"friend.name Bob>Ann"});
                root.setFriend(nullptr);
                EXPECT_EQ(diary.take(), Entries {"friend.name Ann>-"});
            }
        }
    }
}

TEST(KeyValueObserving, GoesOverToTheObjectsThatReplaceOthersOnAPath) {
    Person root;
    Diary diary;
    const auto observation = diary.observe(root, "friend.friend.name");
    const auto one = std::make_shared<Person>(), other = std::make_shared<Person>(),
               end = std::make_shared<Person>(), newEnd = std::make_shared<Person>();
    const auto changesTold = [&](Person& person) {
        person.setName("x");
        return diary.take().size();
    };
    one->setFriend(end);
    root.setFriend(one);
    EXPECT_EQ(diary.take(), Entries {"friend.friend.name ->-"});
    EXPECT_EQ(changesTold(*end), 1);
    EXPECT_EQ(changesTold(*one), 0); // its name is not on the path
    root.setFriend(other);
    EXPECT_EQ(diary.take().size(), 1);
    EXPECT_EQ(changesTold(*end), 0);
    one->setFriend(newEnd);
    EXPECT_EQ(diary.take().size(), 0);
    other->setFriend(end);
    other->setFriend(newEnd);
    EXPECT_EQ(diary.take().size(), 2);
    EXPECT_EQ(changesTold(*end), 0);
    EXPECT_EQ(changesTold(*newEnd), 1);
    {
        const auto brief = std::make_shared<Person>();
        brief->setFriend(end);
        root.setFriend(brief);
        root.setFriend(other);
        root.setFriend(brief);
    }
    EXPECT_EQ(diary.take().size(), 3);
    removeObserver(root, observation);
    root.setFriend(one);
    EXPECT_EQ(changesTold(*end), 0);
    EXPECT_EQ(changesTold(*newEnd), 0);
}

TEST(KeyValueObserving, EndsByHandleOrByTheNewestOfItsKind) {
    Person person;
    Diary diary;
    const auto first = diary.observe(person, "name");
    diary.observe(person, "name", {.newValue = true});
    diary.observe(person, "friend.name");
    EXPECT_FALSE(removeObserver(person, diary, "name", nullptr)); // another context
    EXPECT_FALSE(removeObserver(person, diary, "friend", &diary));
    EXPECT_TRUE(removeObserver(person, diary, "name", &diary));
    person.setName("Bob");
    EXPECT_EQ(diary.take(), Entries {"name ->-"});
    removeObserver(person, first);
    EXPECT_TRUE(removeObserver(person, diary, "friend.name", &diary));
    EXPECT_FALSE(removeObserver(person, diary, "friend.name", &diary));
    person.setName("Cleo");
    EXPECT_EQ(diary.take(), Entries {});
}

TEST(KeyValueObserving, KeepsTheirOrderAsMostOfManyLeave) {
    Person person;
    Diary diary;
    std::vector<NSKeyValueObservation> observations;
    for (int i = 0; i < 100; ++i)
        observations.push_back(
            diary.observe(person, "name", i % 20 == 0 ? Options {.newValue = true} : Options {}));
    for (std::size_t i = 0; i < observations.size(); ++i) {
        if (i % 10 != 0)
            removeObserver(person, observations[i]);
    }
    person.setName("Bob");
    const std::string told = "name ->Bob", plain = "name ->-";
    EXPECT_EQ(
        diary.take(), (Entries {told, plain, told, plain, told, plain, told, plain, told, plain}));
}

TEST(KeyValueObserving, AsksNothingOfPropertiesThatNobodyObserves) {
    Person person;
    Diary diary;
    EXPECT_FALSE(person.isObserved(Person::nameKey));
    const auto first = diary.observe(person, "name"), second = diary.observe(person, "name");
    removeObserver(person, first);
    EXPECT_TRUE(person.isObserved(Person::nameKey));
    removeObserver(person, second);
    EXPECT_FALSE(person.isObserved(Person::nameKey));
    // Two keys may share a bit, so from here on one cannot tell.
    const auto third = diary.observe(person, "name");
    diary.observe(person, "age");
    removeObserver(person, third);
    setValueForKey(person, 1, "age");
    EXPECT_EQ(diary.take(), Entries {"age ->-"});
}

/// Its getter takes away what is told through it.
struct Fickle : Person {
    static Class& classObject() {
        static auto& object = *new Class(
            "Fickle", Person::classObject(), {}, {property("friend", [](const Fickle& fickle) {
                if (fickle.onRead)
                    fickle.onRead();
                return std::shared_ptr<Person>();
            })});
        return object;
    }
    Class& isa() const override { return classObject(); }
    std::function<void()> onRead;
};

TEST(KeyValueObserving, StandsWhatGettersAndFirstCallsDo) {
    Fickle fickle;
    Diary diary;
    diary.observe(fickle, "friend.name");
    fickle.onRead = [&] { removeObserver(fickle, diary, "friend.name", &diary); };
    fickle.setFriend(nullptr);
    EXPECT_EQ(diary.take(), Entries {});

    fickle.onRead = [] { throw std::runtime_error("no"); };
    EXPECT_THROW(diary.observe(fickle, "friend.name"), std::runtime_error);
    EXPECT_FALSE(fickle.isObserved(SEL("friend")));

    fickle.onRead = nullptr;
    struct Brief : NSObject {
        void observeValueForKeyPath(const std::string& keyPath, NSObject& object,
            const NSKeyValueChange&, const void*) override {
            EXPECT_TRUE(removeObserver(object, *this, keyPath));
        }
    } brief;
    EXPECT_EQ(addObserver(fickle, brief, "friend.name", {.initial = true}), nullptr);
}

TEST(KeyValueObserving, AddsNobodyWhereAddingThrows) {
    Person person;
    NSObject careless;
    EXPECT_EQ(thrownBy([&] { addObserver(person, careless, "name", {.initial = true}); }),
        NSInternalInconsistencyException);
    person.setName("Bob");
}

TEST(KeyValueObserving, AnObserverThatHandlesNothingThrows) {
    Person person;
    NSObject careless;
    addObserver(person, careless, "name");
    EXPECT_EQ(thrownBy([&] { person.setName("Bob"); }), NSInternalInconsistencyException);
    EXPECT_EQ(person.name(), "Bob");
}

} // namespace

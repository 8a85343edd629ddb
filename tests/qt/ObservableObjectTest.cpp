// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/ObservableObject.h>

#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>
#include <KWToolkit/platform/foundation/NSOperationQueue.h>
#include <KWToolkit/runtime/NSObject+OBBlockObservation.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QChildEvent>
#include <QEventLoop>
#include <QLabel>
#include <QSlider>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTimer>

#include <cstdint>
#include <limits>
#include <thread>

namespace {

using namespace kw;
using testing::ElementsAre;

/// Writes down the values at a key path.
class Observer final : public NSObject {
public:
    Observer(std::shared_ptr<NSObject> object, const char* keyPath)
        : m_object(std::move(object))
        , m_observation(
              addObserver(*m_object, *this, keyPath, {.newValue = true, .oldValue = true})) { }
    ~Observer() override { removeObserver(*m_object, m_observation); }
    void observeValueForKeyPath(
        const std::string&, NSObject&, const NSKeyValueChange& change, const void*) override {
        values.push_back(change.newValue);
        oldValues.push_back(change.oldValue);
    }
    template <class T>
    std::vector<T> takeValues() {
        std::vector<T> result;
        for (const std::any& value : std::exchange(values, {}))
            result.push_back(unboxed<T>(value));
        return result;
    }

    std::vector<std::any> values;
    std::vector<std::any> oldValues;

private:
    std::shared_ptr<NSObject> m_object;
    NSKeyValueObservation m_observation;
};

TEST(Observable, TravelsAsTheTypesOfAnyProperty) {
    QLabel label;
    NSObject& object = *qt::observable(label);
    setValueForKey(object, "Grüße", "text");
    EXPECT_EQ(label.text(), QString::fromUtf8("Grüße"));
    EXPECT_EQ(valueForKey<std::string>(object, "text"), "Grüße");
    setValueForKey(object, 7.9, "margin");
    EXPECT_EQ(std::any_cast<std::int64_t>(valueForKey(object, "margin")), 7);
    setValueForKey(object, true, "wordWrap");
    EXPECT_TRUE(std::any_cast<bool>(valueForKey(object, "wordWrap")));
    setValueForKey(object, 0.5, "windowOpacity");
    EXPECT_NEAR(std::any_cast<double>(valueForKey(object, "windowOpacity")), 0.5, 0.01);
    setValueForKey(object, static_cast<int>(Qt::AlignRight), "alignment");
    EXPECT_EQ(label.alignment(), Qt::AlignRight);
    EXPECT_EQ(valueForKey<int>(object, "alignment"), Qt::AlignRight);
    setValueForKey(object, Qt::RichText, "textFormat");
    EXPECT_EQ(valueForKey<Qt::TextFormat>(object, "textFormat"), Qt::RichText);
    setValueForKey(object, QVariant(QSize(3, 4)), "minimumSize");
    EXPECT_EQ(valueForKey<QVariant>(object, "minimumSize"), QSize(3, 4));

    const std::pair<const char*, std::any> refused[] {
        {"margin", boxed(1e10)}, {"margin", boxed(std::numeric_limits<std::int64_t>::max())},
        {"margin", boxed("7")}, {"margin", {}}, {"textFormat", boxed(std::int64_t(1) << 40)},
        {"text", boxed(1)}, {"minimumSize", boxed(1)}, {"noSuch", boxed(1)},
        {"sizeHint", boxed(1)}, // read only
    };
    for (const auto& [key, value] : refused)
        EXPECT_THROW(setValueForKey(object, value, key), NSException) << key;
    EXPECT_EQ(label.margin(), 7);
    EXPECT_EQ(object.isa().name(), "QLabel");
    EXPECT_EQ(qt::observable(label).get(), &object);
}

TEST(Observable, TellsOfEachChangeOnceAndOnlyAWriteByTheNameOfWhatWas) {
    QSlider slider;
    Observer observer(qt::observable(slider), "value");
    slider.setValue(3);
    setValueForKey(*qt::observable(slider), 5, "value");
    slider.setValue(5); // no change, no signal
    EXPECT_THAT(observer.takeValues<int>(), ElementsAre(3, 5));
    EXPECT_FALSE(observer.oldValues.at(0).has_value());
    EXPECT_EQ(unboxed<int>(observer.oldValues.at(1)), 3);

    std::thread::id toldOn;
    addObserverForKeyPath(*qt::observable(slider), "objectName",
        [&](NSObject&, const NSKeyValueChange&) { toldOn = std::this_thread::get_id(); });
    std::thread other([&] { slider.setObjectName("other"); });
    const auto id = other.get_id();
    other.join();
    EXPECT_EQ(toldOn, id);
}

TEST(Observable, LeadsKeyPathsThroughObjects) {
    QSortFilterProxyModel proxy;
    QStandardItemModel first;
    QStandardItemModel second;
    second.setObjectName("second");
    Observer observer(qt::observable(proxy), "sourceModel.objectName");
    proxy.setSourceModel(&first);
    first.setObjectName("first");
    setValueForKey(*qt::observable(proxy), qt::observable(second), "sourceModel");
    first.setObjectName("no more");
    second.setObjectName("");
    EXPECT_THAT(observer.takeValues<std::string>(), ElementsAre("", "first", "second", ""));
    EXPECT_EQ(proxy.sourceModel(), &second);
    QSlider slider; // no model
    EXPECT_THROW(
        setValueForKey(*qt::observable(proxy), qt::observable(slider), "sourceModel"), NSException);
    setValueForKey(*qt::observable(proxy), nullptr, "sourceModel");
    EXPECT_FALSE(valueForKey(*qt::observable(proxy), "sourceModel").has_value());
}

TEST(Observable, LivesAsLongAsTheObjectAndReadsAsNothingAfterIt) {
    const auto life = std::make_shared<int>();
    auto slider = std::make_unique<QSlider>();
    addObserverForKeyPath(
        *qt::observable(*slider), "value", [life](NSObject&, const NSKeyValueChange&) { });
    EXPECT_EQ(life.use_count(), 2); // the observation lasts though nobody holds the observable
    const auto kept = qt::observable(*slider);
    Observer observer(kept, "value");
    QObject::connect(slider.get(), &QObject::destroyed,
        [&] { EXPECT_FALSE(valueForKey(*kept, "value").has_value()); });
    slider.reset();
    EXPECT_FALSE(valueForKey(*kept, "value").has_value());
    EXPECT_THROW(setValueForKey(*kept, 1, "value"), NSException);
    EXPECT_TRUE(observer.values.empty());
    slider = std::make_unique<QSlider>();
    EXPECT_NE(qt::observable(*slider), kept);

    // An observer may delete what it observes.
    auto* const doomed = new QSlider;
    addObserverForKeyPath(*qt::observable(*doomed), "value",
        [life, doomed](NSObject&, const NSKeyValueChange&) { delete doomed; });
    setValueForKey(*qt::observable(*doomed), 3, "value");
}

struct DescribedAtRunTime : QSlider {
    DescribedAtRunTime() {
        meta.d.superdata = &QSlider::staticMetaObject;
        meta.d.static_metacall = nullptr;
    }
    const QMetaObject* metaObject() const override { return &meta; }
    QMetaObject meta = QSlider::staticMetaObject;
};

/// Asks for its children while they are made.
struct Parent : QWidget {
    void childEvent(QChildEvent* event) override {
        if (event->added())
            addObserverForKeyPath(*qt::observable(*event->child()), "objectName",
                [this](NSObject& object, const NSKeyValueChange&) { told = object.isa().name(); });
    }
    std::string told;
};

TEST(Observable, HasWhatTheWholeObjectHasWhoeverAskedEarlier) {
    Parent parent;
    auto* const slider = new QSlider(&parent);
    EXPECT_EQ(qt::observable(*slider)->isa().name(), "QSlider");
    setValueForKey(*qt::observable(*slider), 5, "value");
    slider->setObjectName("named");
    EXPECT_EQ(parent.told, "QWidget"); // still, though it is no more than that

    DescribedAtRunTime described;
    EXPECT_EQ(&qt::observable(described)->isa(), &qt::observable(*slider)->isa());

    // Asked for when it is all but gone.
    std::shared_ptr<NSObject> late;
    QObject::connect(
        slider, &QObject::destroyed, [&](QObject* object) { late = qt::observable(*object); });
    delete slider;
    EXPECT_FALSE(valueForKey(*late, "objectName").has_value());
}

TEST(Observable, TheMainQueueRunsInTheHostsLoopWhoeverAsksFirst) {
    std::thread::id ranOn;
    QEventLoop loop;
    std::thread([&] {
        NSOperationQueue::mainQueue()->addOperation([&] {
            ranOn = std::this_thread::get_id();
            loop.quit();
        });
    }).join();
    QTimer::singleShot(10'000, &loop, &QEventLoop::quit);
    loop.exec();
    EXPECT_EQ(ranOn, std::this_thread::get_id());
}

} // namespace

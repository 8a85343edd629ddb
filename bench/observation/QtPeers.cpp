// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Qt's signals and its bindable properties.
#include <bench/observation/Measure.h>
#include <bench/observation/QtModel.h>

#include <QProperty>

#include <optional>

namespace kw::bench {

namespace {

struct SignalWay {
    using Model = QtModel;
    using Handle = QMetaObject::Connection;
    static Handle add(Model& model, std::int64_t& counter) {
        return QObject::connect(
            &model, &Model::valueChanged, &model, [&counter](int) { ++counter; },
            Qt::DirectConnection);
    }
    static void remove(Model&, Handle& handle) { QObject::disconnect(handle); }
};

class PropertyModel {
public:
    QProperty<int> value {0};

    [[gnu::noinline]] void setValue(int newValue) { value.setValue(newValue); }
};

struct PropertyWay {
    struct Count {
        std::int64_t* counter;
        void operator()() const { ++*counter; }
    };
    using Model = PropertyModel;
    // The observation ends with its handler.
    using Handle = std::optional<QPropertyChangeHandler<Count>>;
    static Handle add(Model& model, std::int64_t& counter) {
        return model.value.onValueChanged(Count {&counter});
    }
    static void remove(Model&, Handle& handle) { handle.reset(); }
};

const bool registered[] = {
    registerPeer<SignalWay>("QtSignal"), registerPeer<PropertyWay>("QtProperty")};

} // namespace

} // namespace kw::bench

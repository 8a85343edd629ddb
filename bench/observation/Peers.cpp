// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The signals of Boost and of libsigc++.
#include <bench/observation/Measure.h>

#include <boost/signals2.hpp>
#include <sigc++/sigc++.h>

namespace kw::bench {

namespace {

template <class Signal>
class SignalModel {
public:
    Signal valueChanged;

    [[gnu::noinline]] void setValue(int value) {
        m_value = value;
        valueChanged(value);
    }

private:
    int m_value = 0;
};

template <class Signal, class Connection>
struct SignalWay {
    using Model = SignalModel<Signal>;
    using Handle = Connection;
    static Handle add(Model& model, std::int64_t& counter) {
        return model.valueChanged.connect([&counter](int) { ++counter; });
    }
    static void remove(Model&, Handle& handle) { handle.disconnect(); }
};

const bool registered[] = {
    registerPeer<SignalWay<boost::signals2::signal<void(int)>, boost::signals2::connection>>(
        "Boost"),
    registerPeer<SignalWay<sigc::signal<void(int)>, sigc::connection>>("Sigc"),
};

} // namespace

} // namespace kw::bench

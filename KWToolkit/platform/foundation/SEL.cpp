// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/SEL.h>

#include <mutex>
#include <unordered_set>

namespace kw {

namespace {

struct Names {
    std::mutex mutex;
    std::unordered_set<std::string> set; // which does not move its elements
};

// Never destroyed: selectors are used in static destructors.
Names& names() {
    static auto& value = *new Names;
    return value;
}

} // namespace

SEL::SEL(std::string_view name) {
    const std::lock_guard lock(names().mutex);
    m_name = &*names().set.emplace(name).first;
}

SEL SEL::existing(std::string_view name) {
    const std::lock_guard lock(names().mutex);
    const auto found = names().set.find(std::string(name));
    SEL selector;
    if (found != names().set.end())
        selector.m_name = &*found;
    return selector;
}

const std::string& SEL::name() const {
    static const auto& none = *new std::string;
    return m_name ? *m_name : none;
}

} // namespace kw

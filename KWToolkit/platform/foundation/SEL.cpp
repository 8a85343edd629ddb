// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/SEL.h>

#include <mutex>
#include <unordered_set>

namespace kw {

SEL::SEL(std::string_view name) {
    // Never destroyed: selectors are used in static destructors. Sets do not move their elements.
    static auto& mutex = *new std::mutex;
    static auto& names = *new std::unordered_set<std::string>;

    const std::lock_guard lock(mutex);
    m_name = &*names.emplace(name).first;
}

const std::string& SEL::name() const {
    static const auto& none = *new std::string;
    return m_name ? *m_name : none;
}

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/SEL.h>

#include <memory>
#include <mutex>
#include <unordered_map>

namespace kw {

SEL::SEL(std::string_view name) {
    // Keys view the entries' own names. Never destroyed: selectors are used in static destructors.
    static std::mutex mutex;
    static auto& names = *new std::unordered_map<std::string_view, std::unique_ptr<const Entry>>;

    const std::lock_guard lock(mutex);
    if (const auto found = names.find(name); found != names.end()) {
        m_entry = found->second.get();
        return;
    }
    const auto ordinal = static_cast<std::uint32_t>(names.size() + 1);
    auto entry = std::make_unique<const Entry>(Entry {std::string(name), ordinal});
    m_entry = entry.get();
    names.emplace(m_entry->name, std::move(entry));
}

const std::string& SEL::name() const {
    static const auto& none = *new std::string;
    return m_entry ? m_entry->name : none;
}

} // namespace kw

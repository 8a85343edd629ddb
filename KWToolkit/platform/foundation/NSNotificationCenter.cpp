// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSNotificationCenter.h>

#include <algorithm>
#include <utility>

namespace kw {

NSNotificationCenter& NSNotificationCenter::defaultCenter() {
    static auto& center = *new NSNotificationCenter;
    return center;
}

NSNotificationCenter::Observer NSNotificationCenter::addObserver(
    std::string name, const NSObject* object, Block block) {
    const std::lock_guard lock(m_mutex);
    const auto observer = static_cast<Observer>(++m_last);
    m_entries.push_back(
        {observer, std::move(name), object, std::make_shared<const Block>(std::move(block))});
    return observer;
}

void NSNotificationCenter::removeObserver(Observer observer) {
    std::shared_ptr<const Block> removed; // ends outside the lock: what it holds may come back here
    const std::lock_guard lock(m_mutex);
    const auto entry = std::ranges::find(m_entries, observer, &Entry::observer);
    if (entry == m_entries.end())
        return;
    removed = std::move(entry->block);
    m_entries.erase(entry);
}

std::shared_ptr<const NSNotificationCenter::Block> NSNotificationCenter::blockOf(
    Observer observer) const {
    const std::lock_guard lock(m_mutex);
    const auto entry = std::ranges::find(m_entries, observer, &Entry::observer);
    return entry == m_entries.end() ? nullptr : entry->block;
}

void NSNotificationCenter::postNotificationName(const std::string& name, NSObject* object) {
    std::vector<Observer> observers;
    {
        const std::lock_guard lock(m_mutex);
        for (const Entry& entry : m_entries) {
            if (entry.name == name && (!entry.object || entry.object == object))
                observers.push_back(entry.observer);
        }
    }
    for (const Observer observer : observers) {
        if (const auto block = blockOf(observer))
            (*block)({name, object});
    }
}

} // namespace kw

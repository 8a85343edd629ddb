// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/logging/GDASLLogManager.h>

#include <KWToolkit/logging/GDASLLog.h>
#include <KWToolkit/platform/foundation/NSException.h>

#include <utility>

namespace kw {

namespace {

struct Shared {
    std::recursive_mutex mutex; // sharedInstance allocates while it holds it
    GDASLLogManager* registry = nullptr;
};

Shared& shared() {
    static auto& value = *new Shared;
    return value;
}

} // namespace

Class& GDASLLogManager::classObject() {
    static auto& object = *new Class("GDASLLogManager", NSObject::classObject());
    return object;
}

GDASLLogManager& GDASLLogManager::sharedInstance() {
    const std::lock_guard lock(shared().mutex);
    if (GDASLLogManager* const made = allocWithZone())
        made->init();
    return *shared().registry;
}

GDASLLogManager* GDASLLogManager::allocWithZone() {
    const std::lock_guard lock(shared().mutex);
    if (shared().registry)
        return nullptr;
    return shared().registry = new GDASLLogManager;
}

GDASLLogManager& GDASLLogManager::init() {
    const std::lock_guard lock(m_mutex);
    m_logs.clear();
    setEnabled(true);
    return *this;
}

void GDASLLogManager::setLog(std::shared_ptr<GDASLLog> log, const std::string& key) {
    if (!log)
        throw NSException(NSInvalidArgumentException, "setLog:forKey: the channel is null");
    // The former channel, if it ends here, ends after the lock.
    const std::lock_guard lock(m_mutex);
    std::swap(m_logs[key], log);
}

std::shared_ptr<GDASLLog> GDASLLogManager::getLogForKey(const std::string& key) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_logs.find(key);
    return found == m_logs.end() ? nullptr : found->second;
}

} // namespace kw

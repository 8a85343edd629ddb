// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSObject.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

namespace kw {

class GDASLLog;

/// The log channels that the modules of a host share by name, and the switch that every channel
/// obeys. One registry a process, made with the first channel at the latest, never destroyed.
///
///     kw::GDASLLogManager::sharedInstance().setEnabled(false); // silence
class KW_EXPORT GDASLLogManager : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// The registry. Any thread.
    static GDASLLogManager& sharedInstance();
    /// Makes the registry, without setting it up, if there is none. Deliberate: where there is one
    /// the answer is null, not the registry.
    static GDASLLogManager* allocWithZone();
    /// Sets up: no channels, logging enabled.
    GDASLLogManager& init();

    /// Puts a channel under a name, in the place of any earlier one. Any thread. A null channel
    /// throws `NSException` ("NSInvalidArgumentException").
    void setLog(std::shared_ptr<GDASLLog> log, const std::string& key);
    /// The channel of that name, or null. Any thread.
    std::shared_ptr<GDASLLog> getLogForKey(const std::string& key) const;

    /// Whether channels log at all. Any thread, without a lock: messages that are on their way when
    /// the switch is turned may or may not be logged.
    bool enabled() const { return m_enabled.load(std::memory_order_relaxed); }
    void setEnabled(bool enabled) { m_enabled.store(enabled, std::memory_order_relaxed); }

    // The registry cannot be copied or released.
    GDASLLogManager& copyWithZone() { return *this; }
    GDASLLogManager& retain() { return *this; }
    void release() { }
    GDASLLogManager& autorelease() { return *this; }
    static constexpr std::uint32_t retainCount() { return 0xFFFFFFFF; }

private:
    GDASLLogManager() = default;

    mutable std::mutex m_mutex;
    std::unordered_map<std::string, std::shared_ptr<GDASLLog>> m_logs;
    std::atomic<bool> m_enabled = false;
};

} // namespace kw

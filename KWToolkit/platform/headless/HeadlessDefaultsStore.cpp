// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/headless/HeadlessDefaultsStore.h>

namespace kw {

PropertyMap HeadlessDefaultsStore::read(const std::string& domain) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_domains.find(domain);
    return found == m_domains.end() ? PropertyMap() : found->second;
}

std::error_code HeadlessDefaultsStore::write(
    const std::string& domain, const DefaultsChanges& changes) {
    const std::lock_guard lock(m_mutex);
    if (m_error)
        return m_error;
    PropertyMap& values = m_domains[domain];
    for (const auto& [key, value] : changes) {
        if (value)
            values.insert_or_assign(key, *value);
        else
            values.erase(key);
    }
    return {};
}

void HeadlessDefaultsStore::setError(std::error_code error) {
    const std::lock_guard lock(m_mutex);
    m_error = error;
}

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/DefaultsStore.h>

#include <mutex>

namespace kw {

/// Settings in memory.
class KW_EXPORT HeadlessDefaultsStore final : public DefaultsStore {
public:
    PropertyMap read(const std::string& domain) override;
    std::error_code write(const std::string& domain, const DefaultsChanges& changes) override;

    /// Lets every write fail with this error from now on; the empty one lets them succeed.
    void setError(std::error_code error);

private:
    std::mutex m_mutex;
    std::map<std::string, PropertyMap> m_domains;
    std::error_code m_error;
};

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/services/DefaultsStore.h>

#include <cstdint>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

namespace kw {

/// A host's settings, which outlive the process. Any thread; nothing is cached, so what another
/// process changed is seen at once.
///
///     auto defaults = kw::NSUserDefaults::standardUserDefaults();
///     if (!defaults.boolForKey("introSeen"))
///         defaults.setObject(true, "introSeen");
class KW_EXPORT NSUserDefaults {
public:
    /// The settings of the host: the domain is the main bundle's identifier.
    static NSUserDefaults standardUserDefaults();
    /// The settings of a domain that several applications share.
    explicit NSUserDefaults(std::string suiteName)
        : m_domain(std::move(suiteName)) { }

    /// Nothing where the key is not set.
    std::optional<PropertyValue> objectForKey(const std::string& key) const;
    /// Numbers as text; nothing for other kinds.
    std::optional<std::string> stringForKey(const std::string& key) const;
    /// True are `true`, numbers but 0, and strings in which Y, y, T, t or a digit from 1 to 9 comes
    /// first, or after white space, a sign and zeros. Anything else is false.
    bool boolForKey(const std::string& key) const;
    /// 0 where there is no number, or no string that begins with one. Real numbers are cut toward 0
    /// and kept within the type's range.
    std::int64_t integerForKey(const std::string& key) const;
    double doubleForKey(const std::string& key) const;
    std::optional<PropertyList> arrayForKey(const std::string& key) const;
    std::optional<PropertyMap> dictionaryForKey(const std::string& key) const;
    PropertyMap dictionaryRepresentation() const;

    /// On disk when the call returns without an error. With one, nothing was changed.
    std::error_code setObject(PropertyValue value, const std::string& key);
    std::error_code removeObjectForKey(const std::string& key);
    /// Several changes at the cost of one, all or none.
    std::error_code apply(const DefaultsChanges& changes);

    const std::string& domain() const { return m_domain; }

private:
    std::string m_domain;
};

} // namespace kw

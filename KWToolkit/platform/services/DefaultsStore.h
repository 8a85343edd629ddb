// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/PropertyList.h>

#include <map>
#include <optional>
#include <string>
#include <system_error>

namespace kw {

/// Keys with their new values; a key without a value is removed.
using DefaultsChanges = std::map<std::string, std::optional<PropertyValue>>;

/// Settings that outlive the process, in domains. Used on any thread, and by several processes at
/// once.
class KW_EXPORT DefaultsStore {
public:
    virtual ~DefaultsStore();

    /// The settings of a domain; empty where there are none or they cannot be read.
    virtual PropertyMap read(const std::string& domain) = 0;

    /// Makes the changes, all or none, and leaves the other keys of the domain as they are. Without
    /// an error they are there for good when the call returns: a crash or a power cut later loses
    /// none. `std::errc::invalid_argument` says that a store that keeps text cannot hold a change:
    /// strings and keys are UTF-8, numbers finite.
    virtual std::error_code write(const std::string& domain, const DefaultsChanges& changes) = 0;
};

/// Keeps nothing and says so.
class KW_EXPORT UnavailableDefaultsStore final : public DefaultsStore {
public:
    PropertyMap read(const std::string&) override { return {}; }
    std::error_code write(const std::string&, const DefaultsChanges&) override;
};

} // namespace kw

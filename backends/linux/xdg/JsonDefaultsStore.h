// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/DefaultsStore.h>

namespace kw {

/// Keeps each domain in a file of its own, `<folder>/<domain>/defaults.json`: a JSON object
/// (RFC 8259) which users may edit.
///
/// A write has "defaults.json.lock" beside it locked, reads the file as it is then, and puts a new
/// one in its place. What it does not change stays, also what a `PropertyValue` cannot hold; what
/// is as it should be is not written. A read needs no lock.
///
/// A file that is damaged (no JSON object, or nested deeper than 256) reads as empty and is never
/// overwritten: the next change renames it to "defaults.json.damaged-<UTC time>", with "-2" and so
/// on where there is one, and says so on the console.
class KW_EXPORT JsonDefaultsStore final : public DefaultsStore {
public:
    /// Nothing for the user's XDG config home, which is looked up at each call.
    explicit JsonDefaultsStore(std::optional<std::string> folder = std::nullopt);

    PropertyMap read(const std::string& domain) override;
    /// Fails with `std::errc::invalid_argument` where the domain is no file name, or a change
    /// cannot be stored; else with what the system says.
    std::error_code write(const std::string& domain, const DefaultsChanges& changes) override;

private:
    std::optional<std::string> fileOf(const std::string& domain) const;

    std::optional<std::string> m_folder;
};

} // namespace kw

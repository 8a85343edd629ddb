// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/StringsTable.h>
#include <KWToolkit/platform/services/MainBundle.h>

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace kw {

/// The host: what it is called, where it lies, its texts in the user's language. Any thread.
///
/// What the host declares goes before what the desktop knows, field by field; see the backend's
/// main bundle for how it finds out.
class KW_EXPORT NSBundle {
public:
    static NSBundle& mainBundle();

    /// The keys are "CFBundleName", "CFBundleIdentifier", "CFBundleShortVersionString" and
    /// "CFBundleExecutable". Nothing for another key, and where a value is not known.
    std::optional<std::string> objectForInfoDictionaryKey(std::string_view key) const;
    /// A field that is not known is empty.
    BundleInfo info() const;
    std::string bundlePath() const { return info().bundlePath; }

    /// Puts values in place of what the desktop knows. An empty field declares nothing.
    void declare(BundleInfo values);

    /// The text for `key` in the table `<resourcePath>/<language>.lproj/<table>.strings` of the
    /// first of the user's languages that has the key, then in Base.lproj; else `value`, or the key
    /// where that is empty. The empty table name is "Localizable". A table is read once;
    /// `parseStringsTable` tells what a table looks like.
    std::string localizedStringForKey(
        const std::string& key, const std::string& value, const std::string& table = {}) const;

private:
    NSBundle() = default;
    const StringsTable& tableAt(const std::string& path) const;

    mutable std::mutex m_mutex;
    BundleInfo m_declared;
    mutable std::map<std::string, StringsTable> m_tables; ///< by path
};

} // namespace kw

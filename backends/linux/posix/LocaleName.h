// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <backends/linux/posix/Environment.h>

#include <string>
#include <string_view>
#include <vector>

namespace kw {

/// A locale's name in the form "language_COUNTRY.ENCODING@modifier"; all but the first may be
/// missing. The encoding is of no use here.
struct LocaleName {
    std::string language; ///< "de"
    std::string country; ///< "_AT"
    std::string modifier; ///< "@euro"
};

KW_EXPORT LocaleName localeName(std::string_view name);

/// The locale of a category such as "LC_NUMERIC": the first set of LC_ALL, its own variable and
/// LANG; else "C".
KW_EXPORT std::string localeOf(const char* category, const Environment& environment);

/// The locale of texts.
KW_EXPORT std::string messagesLocale(const Environment& environment);

/// The user's languages, best first and none twice, each after the form with the country: "de_AT",
/// "de". They are those of LANGUAGE, up to an entry "C" or "POSIX", or that of the locale where
/// LANGUAGE is not set, or the locale is "C" or "POSIX", for which there is none.
KW_EXPORT std::vector<std::string> preferredLanguages(const Environment& environment);

} // namespace kw

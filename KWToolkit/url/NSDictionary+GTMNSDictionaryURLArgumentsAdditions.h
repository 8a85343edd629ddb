// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// A query, such as "name=Ann+Lee&size=3", and the arguments in it.
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/PropertyList.h>

#include <map>
#include <string>
#include <string_view>

namespace kw {

/// The arguments of a query without its question mark. Of a key that occurs twice the first counts;
/// one without an equals sign has an empty value. A key or a value that
/// `gtm_stringByUnescapingFromURLArgument` makes nothing of is empty.
KW_EXPORT std::map<std::string, std::string> gtm_dictionaryWithHttpArgumentsString(
    std::string_view query);

/// The query of these arguments, without a question mark, in no particular order: keys and the
/// `description` of values, escaped by `gtm_stringByEscapingForURLArgument`. A key or value that is
/// not valid UTF-8 is written as "(null)".
KW_EXPORT std::string gtm_httpArgumentsString(const PropertyMap& arguments);

/// The same for a map of anything that a property value can be made of.
template <class Value>
std::string gtm_httpArgumentsString(const std::map<std::string, Value>& arguments) {
    return gtm_httpArgumentsString(PropertyMap(arguments.begin(), arguments.end()));
}
template <>
KW_EXPORT std::string gtm_httpArgumentsString(const std::map<std::string, std::string>& arguments);

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/appservices/NSError+DebugDescription.h>

namespace kw {

std::optional<std::string> debugDescription(const NSError& error) {
    // Deliberate: the domain and the code of an error without user information are not shown.
    if (!error.userInfo)
        return std::nullopt;
    PropertyMap values = error.userInfo->values;
    values.insert_or_assign("domain", error.domain);
    values.insert_or_assign("code", error.code);
    if (const auto& underlying = error.userInfo->underlyingError)
        values.insert_or_assign(
            NSUnderlyingErrorKey, debugDescription(*underlying).value_or(description(*underlying)));
    return description(PropertyValue(std::move(values)));
}

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSError.h>

namespace kw {

std::string description(const NSError& error) {
    const std::string text = "Error Domain=" + error.domain + " Code=" + std::to_string(error.code);
    if (!error.userInfo)
        return text + " \"(null)\"";
    PropertyMap values = error.userInfo->values;
    if (const auto& underlying = error.userInfo->underlyingError)
        values.insert_or_assign(NSUnderlyingErrorKey, description(*underlying));
    return text + " UserInfo=" + description(PropertyValue(std::move(values)));
}

} // namespace kw

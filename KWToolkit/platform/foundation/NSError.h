// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/PropertyList.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace kw {

struct NSError;

/// The key of an underlying error where user information is shown.
inline constexpr const char* NSUnderlyingErrorKey = "NSUnderlyingError";

/// What an error tells besides its code.
struct NSErrorUserInfo {
    PropertyMap values;
    /// What brought the error about, or null. It goes before a value of the key
    /// `NSUnderlyingErrorKey`.
    std::shared_ptr<const NSError> underlyingError;
};

/// An error: a code, the domain in which it has a meaning, and what else is known.
struct NSError {
    std::string domain;
    std::int64_t code = 0;
    std::optional<NSErrorUserInfo> userInfo;
};

/// As text: `Error Domain=D Code=5 "(null)"`, or with the user information, in which an underlying
/// error is described the same way, `Error Domain=D Code=5 UserInfo={a = 1;}`.
KW_EXPORT std::string description(const NSError& error);

} // namespace kw

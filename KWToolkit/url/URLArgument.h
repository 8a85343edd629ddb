// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/url/EscapeTable.h>

namespace kw {

/// How the bytes of an argument are escaped: all but those that RFC 3986 calls unreserved.
inline constexpr EscapeTable urlArgumentTable(
    {{0x00, ','}, {'/', '/'}, {':', '@'}, {'[', '^'}, {'`', '`'}, {'{', '}'}, {0x7F, 0xFF}});

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <string>

namespace kw {

// Flags; other bits have no effect.
inline constexpr unsigned KWByteUnitsBinary = 1; ///< a unit is 1024 of the one below, not 1000
inline constexpr unsigned KWByteUnitsDecimalStyle = 4; ///< digits are grouped as the user does

/// A size for people to read, such as "1.5 MB", with two decimals at most, rounded half to even,
/// and the user's separators. The unit is chosen before rounding: 999999 is "1000 kB". Negative
/// sizes stay in bytes.
KW_EXPORT std::string unitStringFromBytes(double bytes, unsigned flags);

} // namespace kw

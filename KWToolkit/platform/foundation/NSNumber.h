// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Numbers as texts.
#pragma once

#include <KWToolkit/platform/Export.h>

#include <concepts>
#include <string>

namespace kw {

/// A number's plain decimal form, the same in every language: no grouping, "%0.16g" for a double
/// and "%0.7g" for a float.
KW_EXPORT std::string stringValue(double number);
KW_EXPORT std::string stringValue(float number);
inline std::string stringValue(long double number) {
    return stringValue(static_cast<double>(number));
}
template <std::integral Number>
std::string stringValue(Number number) {
    return std::to_string(+number);
}

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSNumber.h>

#include <array>
#include <charconv>

namespace kw {

namespace {

// std::to_chars looks at no locale.
std::string general(double number, int precision) {
    std::array<char, 32> text;
    const auto end = std::to_chars(
        text.data(), text.data() + text.size(), number, std::chars_format::general, precision);
    return {text.data(), end.ptr};
}

} // namespace

std::string stringValue(double number) { return general(number, 16); }
std::string stringValue(float number) { return general(number, 7); }

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/appservices/KWByteUnits.h>

#include <KWToolkit/platform/Platform.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <string_view>

namespace kw {

namespace {

constexpr int mostDecimals = 2;

/// The digits of a number and where its decimal point is: 0.0125 is {"125", -1}.
struct Decimal {
    std::string digits;
    int point = 0;
};

/// The shortest decimal that is this number, which is finite and not negative.
Decimal shortestDecimal(double number) {
    std::array<char, 32> buffer;
    const auto written = std::to_chars(
        buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::scientific);
    const std::string_view text(buffer.data(), written.ptr); // as "1.25e-02"
    const auto letter = text.find('e');
    Decimal decimal {std::string(text.substr(0, 1))};
    if (letter > 1)
        decimal.digits += text.substr(2, letter - 2);
    const auto exponent = letter + (text[letter + 1] == '+' ? 2 : 1);
    std::from_chars(text.data() + exponent, written.ptr, decimal.point);
    ++decimal.point;
    return decimal;
}

/// Rounds to the most decimals, half to even, and takes zeros at the end away.
void round(Decimal& decimal) {
    auto& [digits, point] = decimal;
    const int kept = point + mostDecimals;
    if (kept < static_cast<int>(digits.size())) {
        const auto count = static_cast<std::size_t>(std::max(kept, 0));
        const std::string_view rest = std::string_view(digits).substr(count);
        const bool isOdd = count > 0 && (digits[count - 1] - '0') % 2 != 0;
        const bool isUp = kept >= 0 && (rest > "5" || (rest == "5" && isOdd));
        digits.resize(count);
        while (isUp && digits.ends_with('9'))
            digits.pop_back();
        if (isUp && digits.empty()) {
            digits = "1";
            ++point;
        } else if (isUp) {
            ++digits.back();
        }
    }
    digits.erase(digits.find_last_not_of('0') + 1);
}

/// Puts separators between the groups of an integer's digits.
std::string grouped(std::string digits, const NumberSeparators& separators) {
    auto end = digits.size();
    for (std::size_t i = 0; !separators.grouping.empty() && !separators.groupSizes.empty(); ++i) {
        const int size = separators.groupSizes[std::min(i, separators.groupSizes.size() - 1)];
        if (size <= 0 || end <= static_cast<std::size_t>(size))
            break;
        end -= static_cast<std::size_t>(size);
        digits.insert(end, separators.grouping);
    }
    return digits;
}

std::string numberText(double number, bool isGrouped) {
    if (std::isnan(number))
        return "NaN";
    if (std::isinf(number))
        return number > 0 ? "+∞" : "-∞";
    const NumberSeparators separators = Platform::locale().numberSeparators();
    Decimal decimal = shortestDecimal(std::abs(number));
    round(decimal);
    const auto& [digits, point] = decimal;
    const auto before = static_cast<std::size_t>(std::max(point, 0));
    std::string whole = digits.substr(0, before);
    whole.resize(before, '0');
    if (whole.empty())
        whole.push_back('0');
    // Deliberate: what is rounded to zero from below keeps its sign.
    std::string text = std::signbit(number) ? "-" : "";
    text += isGrouped ? grouped(std::move(whole), separators) : whole;
    if (digits.size() > before)
        text.append(separators.decimal)
            .append(static_cast<std::size_t>(std::max(-point, 0)), '0')
            .append(digits, before);
    return text;
}

} // namespace

std::string unitStringFromBytes(double bytes, unsigned flags) {
    constexpr std::array<std::string_view, 9> units {"", "k", "M", "G", "T", "P", "E", "Z", "Y"};
    const double base = flags & KWByteUnitsBinary ? 1024.0 : 1000.0;
    std::size_t exponent = 0;
    // Deliberate: rounding does not change the unit, so "1000 kB" is possible.
    while (bytes >= base && exponent + 1 < units.size()) {
        bytes /= base;
        ++exponent;
    }
    std::string text = numberText(bytes, (flags & KWByteUnitsDecimalStyle) != 0);
    return text.append(" ").append(units[exponent]).append("B");
}

} // namespace kw

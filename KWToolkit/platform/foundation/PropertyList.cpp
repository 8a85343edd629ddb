// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/PropertyList.h>

#include <charconv>
#include <iterator>
#include <string_view>

namespace kw {

namespace {

template <class Number>
std::string shortest(Number number) {
    char digits[32]; // 24 are the most that a double takes
    return {digits, std::to_chars(digits, std::end(digits), number).ptr};
}

} // namespace

std::string description(const PropertyValue& value) {
    if (const auto* string = value.string())
        return *string;
    if (const auto* boolean = value.boolean())
        return *boolean ? "1" : "0";
    if (const auto* integer = value.integer())
        return shortest(*integer);
    if (const auto* real = value.real())
        return shortest(*real);
    if (value.isNull())
        return "<null>";

    std::string text;
    std::string_view separator;
    if (const auto* list = value.list()) {
        for (const PropertyValue& element : *list) {
            text.append(separator).append(description(element));
            separator = ", ";
        }
        return "(" + text + ")";
    }
    for (const auto& [key, element] : *value.map()) {
        text.append(separator).append(key).append(" = ").append(description(element)).append(";");
        separator = " ";
    }
    return "{" + text + "}";
}

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSUserDefaults.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSBundle.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

namespace kw {

namespace {

std::string_view withoutBlanks(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(" \t\n\r"), text.size()));
}

template <class Number>
Number parse(std::string_view text) {
    Number number = 0;
    text = withoutBlanks(text);
    const bool isNegative = text.starts_with('-');
    const std::string_view digits = text.substr(isNegative || text.starts_with('+') ? 1 : 0);
    if (digits.find_first_of("0123456789.") != 0)
        return 0; // what else reads as a number: a second sign, "inf", "nan"
    if (!isNegative)
        text = digits;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (std::is_integral_v<Number> && result.ec == std::errc::result_out_of_range)
        return isNegative ? std::numeric_limits<Number>::min() : std::numeric_limits<Number>::max();
    return number;
}

double toReal(const PropertyValue& value) {
    if (const auto* const text = value.string())
        return parse<double>(*text);
    if (const auto* const number = value.integer())
        return static_cast<double>(*number);
    if (const auto* const number = value.real())
        return *number;
    const auto* const boolean = value.boolean();
    return boolean && *boolean ? 1 : 0;
}

std::int64_t toInteger(double number) {
    constexpr double limit = 0x1p63;
    if (std::isnan(number))
        return 0;
    if (number >= limit)
        return std::numeric_limits<std::int64_t>::max();
    if (number < -limit)
        return std::numeric_limits<std::int64_t>::min();
    return static_cast<std::int64_t>(number);
}

bool isTrue(std::string_view text) {
    text = withoutBlanks(text);
    if (text.starts_with('-') || text.starts_with('+'))
        text.remove_prefix(1);
    text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
    return !text.empty() && std::string_view("YyTt123456789").find(text[0]) != text.npos;
}

template <class Value>
std::optional<Value> copied(const Value* value) {
    return value ? std::optional(*value) : std::nullopt;
}

} // namespace

NSUserDefaults NSUserDefaults::standardUserDefaults() {
    return NSUserDefaults(NSBundle::mainBundle().info().identifier);
}

std::optional<PropertyValue> NSUserDefaults::objectForKey(const std::string& key) const {
    const PropertyMap values = dictionaryRepresentation();
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : std::optional(found->second);
}

std::optional<std::string> NSUserDefaults::stringForKey(const std::string& key) const {
    const auto value = objectForKey(key);
    if (!value)
        return std::nullopt;
    const bool isText = value->string() || value->integer() || value->real();
    return isText ? std::optional(description(*value)) : std::nullopt;
}

bool NSUserDefaults::boolForKey(const std::string& key) const {
    const auto value = objectForKey(key);
    if (value && value->string())
        return isTrue(*value->string());
    return value && toReal(*value) != 0;
}

std::int64_t NSUserDefaults::integerForKey(const std::string& key) const {
    const auto value = objectForKey(key);
    if (value && value->integer())
        return *value->integer();
    if (value && value->string())
        return parse<std::int64_t>(*value->string());
    return value ? toInteger(toReal(*value)) : 0;
}

double NSUserDefaults::doubleForKey(const std::string& key) const {
    const auto value = objectForKey(key);
    return value ? toReal(*value) : 0;
}

std::optional<PropertyList> NSUserDefaults::arrayForKey(const std::string& key) const {
    const auto value = objectForKey(key);
    return value ? copied(value->list()) : std::nullopt;
}

std::optional<PropertyMap> NSUserDefaults::dictionaryForKey(const std::string& key) const {
    const auto value = objectForKey(key);
    return value ? copied(value->map()) : std::nullopt;
}

PropertyMap NSUserDefaults::dictionaryRepresentation() const {
    return Platform::defaultsStore().read(m_domain);
}

std::error_code NSUserDefaults::setObject(PropertyValue value, const std::string& key) {
    return apply({{key, std::move(value)}});
}

std::error_code NSUserDefaults::removeObjectForKey(const std::string& key) {
    return apply({{key, std::nullopt}});
}

std::error_code NSUserDefaults::apply(const DefaultsChanges& changes) {
    return Platform::defaultsStore().write(m_domain, changes);
}

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <concepts>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace kw {

class PropertyValue;

/// A string-keyed map of property values: what a host keeps in its defaults.
using PropertyMap = std::map<std::string, PropertyValue>;
using PropertyList = std::vector<PropertyValue>;

/// A value that stands where there is none.
struct NSNull {
    friend bool operator==(NSNull, NSNull) = default;
};

/// A boolean, an integer, a real number, a string, a list, a map or a null.
///
/// The kinds stay apart: the integer 1 is not the boolean true. The getters answer null for a value
/// of another kind.
class PropertyValue {
public:
    template <std::same_as<bool> T> // a pointer is none
    PropertyValue(T value)
        : m_value(value) { }
    template <std::integral T>
        requires(!std::same_as<T, bool>)
    PropertyValue(T value)
        : m_value(static_cast<std::int64_t>(value)) { }
    PropertyValue(double value)
        : m_value(value) { }
    PropertyValue(std::string value)
        : m_value(std::move(value)) { }
    PropertyValue(const char* value)
        : m_value(std::string(value)) { }
    PropertyValue(PropertyList value)
        : m_value(std::move(value)) { }
    PropertyValue(PropertyMap value)
        : m_value(std::move(value)) { }
    PropertyValue(NSNull value)
        : m_value(value) { }

    const bool* boolean() const { return std::get_if<bool>(&m_value); }
    const std::int64_t* integer() const { return std::get_if<std::int64_t>(&m_value); }
    const double* real() const { return std::get_if<double>(&m_value); }
    const std::string* string() const { return std::get_if<std::string>(&m_value); }
    const PropertyList* list() const { return std::get_if<PropertyList>(&m_value); }
    const PropertyMap* map() const { return std::get_if<PropertyMap>(&m_value); }
    bool isNull() const { return std::holds_alternative<NSNull>(m_value); }

    friend bool operator==(const PropertyValue&, const PropertyValue&) = default;

private:
    std::variant<bool, std::int64_t, double, std::string, PropertyList, PropertyMap, NSNull>
        m_value;
};

/// As text: strings as they are, integers in decimal, real numbers in their shortest form ("3",
/// "0.1", "1e+21"), booleans as "1" and "0", nulls as "<null>", lists as "(1, two)" and maps as "{a
/// = 1; b = two;}".
KW_EXPORT std::string description(const PropertyValue& value);

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/JsonMembers.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <ranges>
#include <stdexcept>
#include <utility>

namespace kw {

namespace {

using Json = nlohmann::json;

constexpr int deepestNesting = 256;
constexpr int indentation = 4;
constexpr std::string_view blanks = " \t\r\n";

/// Takes an object apart without looking into its values.
class Splitter {
public:
    explicit Splitter(std::string_view text)
        : m_rest(text) { }

    bool take(char token) {
        skipBlanks();
        if (!m_rest.starts_with(token))
            return false;
        m_rest.remove_prefix(1);
        return true;
    }

    bool isAtEnd() {
        skipBlanks();
        return m_rest.empty();
    }

    /// What is before the next comma, colon or closing bracket that is within no string and no
    /// bracket. Nothing where there is none.
    std::optional<std::string_view> item() {
        skipBlanks();
        int depth = 1; // that of the object
        bool inString = false;
        for (std::size_t i = 0; i < m_rest.size(); ++i) {
            const char next = m_rest[i];
            if (next == '"') {
                inString = !inString;
            } else if (inString) {
                i += next == '\\';
            } else if (next == '{' || next == '[') {
                if (++depth > deepestNesting)
                    return std::nullopt;
            } else if (depth > 1) {
                depth -= next == '}' || next == ']';
            } else if (std::string_view(",:}]").find(next) != std::string_view::npos) {
                const std::string_view item = m_rest.substr(0, i);
                m_rest.remove_prefix(i);
                return item.substr(0, item.find_last_not_of(blanks) + 1);
            }
        }
        return std::nullopt;
    }

private:
    void skipBlanks() {
        m_rest.remove_prefix(std::min(m_rest.find_first_not_of(blanks), m_rest.size()));
    }

    std::string_view m_rest;
};

/// Throws `Json::exception` where the value cannot be in a text.
Json jsonOf(const PropertyValue& value, int depth) {
    if (depth > deepestNesting)
        throw std::invalid_argument("nested too deep");
    if (const auto* const number = value.real()) {
        if (!std::isfinite(*number))
            throw std::invalid_argument("not finite");
        return *number;
    }
    if (const auto* const boolean = value.boolean())
        return *boolean;
    if (const auto* const number = value.integer())
        return *number;
    if (const auto* const text = value.string())
        return *text;
    if (value.isNull())
        return nullptr;
    if (const auto* const list = value.list()) {
        Json array = Json::array();
        for (const PropertyValue& item : *list)
            array.push_back(jsonOf(item, depth + 1));
        return array;
    }
    Json object = Json::object();
    for (const auto& [key, item] : *value.map())
        object[key] = jsonOf(item, depth + 1);
    return object;
}

std::optional<PropertyValue> propertyOf(const Json& json) {
    switch (json.type()) {
    case Json::value_t::null:
        return NSNull();
    case Json::value_t::boolean:
        return json.get<bool>();
    case Json::value_t::number_integer:
        return json.get<std::int64_t>();
    case Json::value_t::number_unsigned:
        if (json.get<std::uint64_t>() > std::numeric_limits<std::int64_t>::max())
            return json.get<double>();
        return json.get<std::int64_t>();
    case Json::value_t::number_float:
        return json.get<double>();
    case Json::value_t::string:
        return json.get<std::string>();
    case Json::value_t::array: {
        PropertyList list;
        for (const Json& item : json) {
            if (auto value = propertyOf(item))
                list.push_back(std::move(*value));
        }
        return list;
    }
    case Json::value_t::object: {
        PropertyMap map;
        for (const auto& [key, item] : json.items()) {
            if (auto value = propertyOf(item))
                map.insert_or_assign(key, std::move(*value));
        }
        return map;
    }
    default:
        return std::nullopt;
    }
}

/// Discarded where a number is beyond the range of real numbers. Throws `Json::parse_error`.
Json parsed(std::string_view text) {
    try {
        return Json::parse(text);
    } catch (const Json::out_of_range&) {
        return Json::value_t::discarded;
    }
}

/// Lines after the first move in, to stand in an object.
std::string indented(const std::string& text) {
    std::string lines;
    for (const char c : text) {
        lines += c;
        if (c == '\n')
            lines.append(indentation, ' ');
    }
    return lines;
}

} // namespace

std::optional<JsonChanges> jsonChanges(const DefaultsChanges& changes) {
    JsonChanges texts;
    try {
        for (const auto& [key, value] : changes) {
            static_cast<void>(Json(key).dump()); // throws for a key that is not valid UTF-8
            texts[key] =
                value ? std::optional(indented(jsonOf(*value, 2).dump(indentation))) : std::nullopt;
        }
    } catch (const Json::exception&) {
        return std::nullopt;
    } catch (const std::invalid_argument&) {
        return std::nullopt;
    }
    return texts;
}

std::optional<JsonMembers> JsonMembers::parse(std::string_view text) {
    Splitter splitter(text);
    JsonMembers members;
    // Values are parsed one by one, and the parser takes a zero byte for the end of its text.
    if (text.find('\0') != text.npos || !splitter.take('{'))
        return std::nullopt;
    if (splitter.take('}'))
        return splitter.isAtEnd() ? std::optional(std::move(members)) : std::nullopt;
    do {
        const auto key = splitter.item();
        if (!key || !splitter.take(':'))
            return std::nullopt;
        const auto value = splitter.item();
        if (!value)
            return std::nullopt;
        try {
            const Json name = parsed(*key);
            parsed(*value);
            if (!name.is_string())
                return std::nullopt;
            members.m_members.push_back({name.get<std::string>(), std::string(*value)});
        } catch (const Json::parse_error&) {
            return std::nullopt;
        }
    } while (splitter.take(','));
    if (!splitter.take('}') || !splitter.isAtEnd())
        return std::nullopt;
    return members;
}

std::string JsonMembers::text() const {
    std::string text = "{";
    for (const Member& member : m_members) {
        text += text.size() > 1 ? ",\n" : "\n";
        text.append(indentation, ' ');
        text += Json(member.key).dump() + ": " + member.text;
    }
    return text + (m_members.empty() ? "}\n" : "\n}\n");
}

PropertyMap JsonMembers::values() const {
    PropertyMap values;
    for (const Member& member : m_members) {
        if (auto value = propertyOf(parsed(member.text)))
            values.insert_or_assign(member.key, std::move(*value));
        else
            values.erase(member.key);
    }
    return values;
}

bool JsonMembers::apply(const JsonChanges& changes) {
    bool changed = false;
    for (const auto& change : changes) {
        const auto& text = change.second;
        const auto hasKey = [&](const Member& member) { return member.key == change.first; };
        if (!text) {
            changed |= std::erase_if(m_members, hasKey) > 0;
            continue;
        }
        auto backwards = std::views::reverse(m_members);
        const auto last = std::ranges::find_if(backwards, hasKey);
        if (last == backwards.end())
            m_members.push_back({change.first, *text});
        else if (parsed(last->text).dump() != parsed(*text).dump())
            last->text = *text;
        else
            continue;
        changed = true;
    }
    return changed;
}

} // namespace kw

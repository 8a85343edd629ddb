// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/DefaultsStore.h>

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kw {

/// Keys with their new values in JSON; a key without a value is removed.
using JsonChanges = std::map<std::string, std::optional<std::string>>;

/// Nothing where a string or key is not valid UTF-8, a number not finite, or a value nested too
/// deep to be read again.
std::optional<JsonChanges> jsonChanges(const DefaultsChanges& changes);

/// The members of a JSON object (RFC 8259), in their order, with the values as they are written:
/// what is not changed keeps its bytes, so numbers of any size and whatever else a `PropertyValue`
/// cannot hold survive.
class JsonMembers {
public:
    /// No members.
    JsonMembers() = default;
    /// Nothing for a text that is not a JSON object, or nests deeper than 256 values.
    static std::optional<JsonMembers> parse(std::string_view text);
    std::string text() const;

    /// The values that a `PropertyValue` can hold. Integers that do not fit are real numbers; a
    /// value with a number beyond the range of real numbers is left out.
    PropertyMap values() const;
    /// False where the members are what they were.
    bool apply(const JsonChanges& changes);

private:
    struct Member {
        std::string key;
        std::string text;
    };
    std::vector<Member> m_members; ///< of two with the same key the later holds
};

} // namespace kw

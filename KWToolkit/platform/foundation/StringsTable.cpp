// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/StringsTable.h>

#include <KWToolkit/platform/foundation/Unicode.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

namespace kw {

namespace {

class Reader {
public:
    explicit Reader(std::string_view text)
        : m_rest(text) {
        take("\xEF\xBB\xBF"); // a byte order mark
    }

    std::optional<std::pair<std::string, std::string>> entry() {
        auto key = quoted();
        if (!key || !takeNext("="))
            return std::nullopt;
        auto text = quoted();
        if (!text || !takeNext(";"))
            return std::nullopt;
        return std::pair(std::move(*key), std::move(*text));
    }

private:
    bool take(std::string_view token) {
        if (!m_rest.starts_with(token))
            return false;
        m_rest.remove_prefix(token.size());
        return true;
    }

    bool takeNext(std::string_view token) {
        skipSpaceAndComments();
        return take(token);
    }

    void skipUntilAfter(std::string_view end) {
        const auto place = m_rest.find(end);
        m_rest.remove_prefix(place == m_rest.npos ? m_rest.size() : place + end.size());
    }

    void skipSpaceAndComments() {
        for (;;) {
            m_rest.remove_prefix(std::min(m_rest.find_first_not_of(" \t\r\n"), m_rest.size()));
            if (take("/*"))
                skipUntilAfter("*/");
            else if (take("//"))
                skipUntilAfter("\n");
            else
                return;
        }
    }

    std::optional<std::string> quoted() {
        if (!takeNext("\""))
            return std::nullopt;
        std::string text;
        while (!m_rest.empty()) {
            const char next = m_rest[0];
            m_rest.remove_prefix(1);
            if (next == '"')
                return text;
            if (next == '\\')
                appendEscaped(text);
            else
                text += next;
        }
        return std::nullopt;
    }

    void appendEscaped(std::string& text) {
        std::uint16_t unit = 0;
        const std::string_view digits = m_rest.substr(std::min<std::size_t>(1, m_rest.size()), 4);
        if (m_rest.starts_with('U')
            && std::from_chars(digits.data(), digits.data() + digits.size(), unit, 16).ptr
                == m_rest.data() + 5) {
            appendUnit(text, unit);
            m_rest.remove_prefix(5);
            return;
        }
        if (m_rest.empty())
            return;
        constexpr std::string_view letters = "ntr";
        const auto letter = letters.find(m_rest[0]);
        text += letter == letters.npos ? m_rest[0] : "\n\t\r"[letter];
        m_rest.remove_prefix(1);
    }

    std::string_view m_rest;
};

} // namespace

StringsTable parseStringsTable(std::string_view text) {
    StringsTable table;
    Reader reader(text);
    while (auto entry = reader.entry())
        table.insert_or_assign(std::move(entry->first), std::move(entry->second));
    return table;
}

} // namespace kw

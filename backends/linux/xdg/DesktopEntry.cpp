// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/DesktopEntry.h>

#include <backends/linux/posix/LocaleName.h>

#include <algorithm>
#include <ranges>
#include <utility>

namespace kw {

namespace {

constexpr std::string_view blanks = " \t\r\n";

std::string_view withoutStart(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(blanks), text.size()));
}

std::string_view withoutEnd(std::string_view text, std::string_view characters = blanks) {
    return text.substr(0, text.find_last_not_of(characters) + 1);
}

} // namespace

DesktopEntry::DesktopEntry(std::string_view text)
    : m_groups(1) {
    while (!text.empty()) {
        const std::string_view whole =
            text.substr(0, std::min(text.find('\n'), text.size() - 1) + 1);
        text.remove_prefix(whole.size());
        const std::string_view line = withoutEnd(withoutStart(whole), "\r\n");
        Line kept {.text = std::string(whole)};
        if (line.starts_with('[')) {
            // What follows a damaged header does not belong to the group before it either.
            const auto end = std::min(line.rfind(']'), line.size());
            m_groups.push_back({.name = std::string(line.substr(1, end - 1))});
        } else if (const auto equals = line.find('=');
            equals != line.npos && !line.starts_with('#')) {
            kept.key = withoutEnd(line.substr(0, equals));
            kept.value = withoutStart(line.substr(equals + 1));
        }
        m_groups.back().lines.push_back(std::move(kept));
    }
}

std::string DesktopEntry::text() const {
    std::string text;
    for (const Group& group : m_groups) {
        for (const Line& line : group.lines)
            text += line.text;
    }
    return text;
}

std::optional<std::string> DesktopEntry::value(std::string_view group, std::string_view key) const {
    const Line* found = nullptr;
    for (const Group& candidate : m_groups) {
        for (const Line& line : candidate.lines) {
            if (candidate.name == group && line.key == key && !key.empty())
                found = &line;
        }
    }
    return found ? std::optional(found->value) : std::nullopt;
}

std::optional<std::string> DesktopEntry::string(
    std::string_view group, std::string_view key) const {
    const auto raw = value(group, key);
    return raw ? std::optional(unescapedDesktopString(*raw)) : std::nullopt;
}

std::optional<std::string> DesktopEntry::localizedString(
    std::string_view group, std::string_view key, std::string_view locale) const {
    const auto [language, country, modifier] = localeName(locale);
    const std::string region = language + country;
    const std::string names[] {region + modifier, region, language + modifier, language};
    for (const std::string& name : names) {
        if (auto text = string(group, std::string(key).append("[").append(name).append("]")))
            return text;
    }
    return string(group, key);
}

void DesktopEntry::setValue(
    std::string_view group, std::string_view key, const std::string& value) {
    const std::string line = std::string(key) + "=" + value + "\n";
    // The one that `value` reads, should there be several.
    for (Group& candidate : std::views::reverse(m_groups)) {
        if (candidate.name != group)
            continue;
        auto lines = std::views::reverse(candidate.lines);
        const auto former = std::ranges::find(lines, key, &Line::key);
        if (former != lines.end()) {
            *former = {line, std::string(key), value};
            return;
        }
    }
    auto found = std::ranges::find(m_groups, group, &Group::name);
    if (found == m_groups.end()) {
        // A last line without an end would run into the header.
        if (!text().empty() && text().back() != '\n')
            m_groups.back().lines.push_back({.text = "\n"});
        m_groups.push_back({.name = std::string(group)});
        m_groups.back().lines.push_back({.text = std::string("[").append(group).append("]\n")});
        found = m_groups.end() - 1;
    }
    auto& lines = found->lines;
    auto end = lines.end();
    while (end != lines.begin() && withoutEnd((end - 1)->text).empty())
        --end;
    if (end != lines.begin() && (end - 1)->text.back() != '\n')
        (end - 1)->text += '\n';
    lines.insert(end, {line, std::string(key), value});
}

void DesktopEntry::removeKey(std::string_view group, std::string_view key) {
    for (Group& candidate : m_groups) {
        if (candidate.name == group)
            std::erase_if(candidate.lines, [&](const Line& line) { return line.key == key; });
    }
}

std::vector<std::string> DesktopEntry::list(std::string_view value) {
    std::vector<std::string> parts;
    std::string part;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] == '\\' && i + 1 < value.size()) {
            part += value[++i] == ';' ? ";" : value.substr(i - 1, 2);
        } else if (value[i] == ';') {
            parts.push_back(std::exchange(part, {}));
        } else {
            part += value[i];
        }
    }
    if (!part.empty())
        parts.push_back(std::move(part));
    return parts;
}

std::string DesktopEntry::listValue(const std::vector<std::string>& parts) {
    std::string value;
    for (const std::string& part : parts) {
        for (const char character : part)
            value.append(character == ';' ? "\\" : "") += character;
        value += ';';
    }
    return value;
}

std::string escapedDesktopString(std::string_view text) {
    constexpr std::string_view characters = "\n\t\r\\";
    std::string value;
    for (const char character : text) {
        const auto letter = characters.find(character);
        if (letter == characters.npos)
            value += character;
        else
            (value += '\\') += "ntr\\"[letter];
    }
    // A blank at the beginning would not be part of the value.
    if (value.starts_with(' '))
        value.replace(0, 1, "\\s");
    return value;
}

std::string quotedExecArgument(std::string_view argument) {
    constexpr std::string_view reserved = " \t\n\"'\\><~|&;$*?#()`";
    const bool isQuoted = argument.empty() || argument.find_first_of(reserved) != argument.npos;
    std::string quoted;
    for (const char character : argument) {
        if (std::string_view("\"`$\\").find(character) != std::string_view::npos)
            quoted += '\\';
        quoted.append(character == '%' ? 2 : 1, character);
    }
    if (isQuoted)
        quoted.insert(0, 1, '"').push_back('"');
    return quoted;
}

std::string unescapedDesktopString(std::string_view value) {
    constexpr std::string_view letters = "sntr\\";
    std::string text;
    while (!value.empty()) {
        const auto letter = value.size() > 1 ? letters.find(value[1]) : letters.npos;
        const bool isEscape = value[0] == '\\' && letter != letters.npos;
        text += isEscape ? " \n\t\r\\"[letter] : value[0];
        value.remove_prefix(isEscape ? 2 : 1);
    }
    return text;
}

std::optional<std::vector<ExecArgument>> splitExec(std::string_view exec) {
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    std::vector<ExecArgument> arguments;
    bool inArgument = false;
    bool inQuotes = false;
    for (std::size_t i = 0; i < exec.size(); ++i) {
        const char next = exec[i];
        if (!inQuotes && blanks.find(next) != blanks.npos) {
            inArgument = false;
            continue;
        }
        if (!std::exchange(inArgument, true))
            arguments.emplace_back();
        auto& [text, fieldCodes] = arguments.back();
        const char after = i + 1 < exec.size() ? exec[i + 1] : '\0';
        if (next == '"') {
            inQuotes = !inQuotes;
        } else if (next == '\\' && i + 1 < exec.size()
            && (!inQuotes || std::string_view("\"`$\\").find(after) != std::string_view::npos)) {
            text += after;
            ++i;
        } else if (next == '%' && after == '%') {
            text += '%';
            ++i;
        } else {
            if (next == '%' && isLetter(after) && !inQuotes)
                fieldCodes.push_back(text.size());
            text += next;
        }
    }
    return inQuotes ? std::nullopt : std::optional(std::move(arguments));
}

} // namespace kw

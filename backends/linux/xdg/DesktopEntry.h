// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kw {

/// A file of the Desktop Entry Specification 1.5. Lines keep their order and their bytes, and lines
/// that make no sense are kept too, so a file can be written back as it was.
class KW_EXPORT DesktopEntry {
public:
    /// The group that every entry has.
    static constexpr std::string_view mainGroup = "Desktop Entry";

    explicit DesktopEntry(std::string_view text);
    /// What was read, byte for byte.
    std::string text() const;

    /// What the file has after "=", escapes and all. Of two lines with the key the later holds.
    std::optional<std::string> value(std::string_view group, std::string_view key) const;
    /// The value of a key whose type is a string.
    std::optional<std::string> string(std::string_view group, std::string_view key) const;
    /// The string for a locale such as "de_AT.UTF-8@euro"; where there is none, the one without a
    /// locale.
    std::optional<std::string> localizedString(
        std::string_view group, std::string_view key, std::string_view locale) const;

    /// Puts the value, which has its escapes already, in the place of the key's, or after what the
    /// group holds. Makes the group, too.
    void setValue(std::string_view group, std::string_view key, const std::string& value);
    /// Takes every line with the key out of the group.
    void removeKey(std::string_view group, std::string_view key);

    /// The parts of a value that is a list, in which ";" ends each part and "\\;" is a part's own.
    static std::vector<std::string> list(std::string_view value);
    static std::string listValue(const std::vector<std::string>& parts);

private:
    struct Line {
        std::string text; ///< with its end
        std::string key; ///< empty where the line holds no value
        std::string value;
    };
    struct Group {
        std::string name;
        std::vector<Line> lines; ///< the first is the header
    };
    /// The first has no name and holds what comes before any header.
    std::vector<Group> m_groups;
};

/// Puts characters in place of \s, \n, \t, \r and \\. Any other backslash stays.
KW_EXPORT std::string unescapedDesktopString(std::string_view value);

/// The text as the value of a key whose type is a string.
KW_EXPORT std::string escapedDesktopString(std::string_view text);

/// The text as an argument in a command line, quoted where it has to be. Not escaped as a string.
KW_EXPORT std::string quotedExecArgument(std::string_view argument);

/// One argument of a command line.
struct ExecArgument {
    std::string text; ///< "%%" has become "%"
    std::vector<std::size_t> fieldCodes; ///< where in the text a "%" and its letter stand for more
};

/// Splits the string of the key Exec at spaces and takes its quotes away. The first argument is the
/// program. Nothing where a quote does not end.
KW_EXPORT std::optional<std::vector<ExecArgument>> splitExec(std::string_view exec);

} // namespace kw

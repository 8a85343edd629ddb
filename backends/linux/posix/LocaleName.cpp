// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/LocaleName.h>

#include <algorithm>

namespace kw {

namespace {

bool isUntranslated(std::string_view locale) { return locale == "C" || locale == "POSIX"; }

/// Takes what is before the separator off the text.
std::string_view takeUntil(std::string_view& text, char separator) {
    const std::string_view taken = text.substr(0, text.find(separator));
    text.remove_prefix(std::min(taken.size() + 1, text.size()));
    return taken;
}

} // namespace

LocaleName localeName(std::string_view name) {
    LocaleName parts;
    if (const auto place = name.find('@'); place != name.npos) {
        parts.modifier = name.substr(place);
        name = name.substr(0, place);
    }
    name = name.substr(0, name.find('.'));
    const auto place = std::min(name.find('_'), name.size());
    parts.country = name.substr(place);
    parts.language = name.substr(0, place);
    return parts;
}

std::string localeOf(const char* category, const Environment& environment) {
    for (const char* const variable : {"LC_ALL", category, "LANG"}) {
        if (std::string locale = environment(variable); !locale.empty())
            return locale;
    }
    return "C";
}

std::string messagesLocale(const Environment& environment) {
    return localeOf("LC_MESSAGES", environment);
}

std::vector<std::string> preferredLanguages(const Environment& environment) {
    const std::string locale = messagesLocale(environment);
    const std::string chosen = isUntranslated(locale) ? "" : environment("LANGUAGE");
    std::string_view rest = chosen.empty() ? locale : chosen;

    std::vector<std::string> languages;
    const auto add = [&](const std::string& language) {
        // A language is part of file names.
        if (!language.empty() && language.find('/') == language.npos
            && std::ranges::find(languages, language) == languages.end())
            languages.push_back(language);
    };
    while (!rest.empty()) {
        const LocaleName name = localeName(takeUntil(rest, ':'));
        if (isUntranslated(name.language))
            break;
        add(name.language + name.country);
        add(name.language);
    }
    return languages;
}

} // namespace kw

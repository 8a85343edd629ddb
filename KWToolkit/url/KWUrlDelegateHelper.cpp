// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/url/KWUrlDelegateHelper.h>

#include <KWToolkit/platform/foundation/NSException.h>

#include <utility>

namespace kw {

namespace {

constexpr std::string_view separator = "&!p!&";
constexpr std::string_view escapedSeparator = "%26%21p%21%26";

std::vector<std::string> split(std::string_view text, std::string_view delimiter) {
    std::vector<std::string> pieces;
    for (;;) {
        const auto end = text.find(delimiter);
        pieces.emplace_back(text.substr(0, end));
        if (end == text.npos)
            return pieces;
        text.remove_prefix(end + delimiter.size());
    }
}

} // namespace

std::vector<std::string> KWUrlDelegateHelper::parametersFromString(std::string_view url) {
    constexpr std::string_view slashes = "//", brokenScheme = "http//", scheme = "http://";
    const auto place = url.find(slashes);
    if (place == url.npos)
        throw NSException(NSRangeException, "no // in the URL");
    auto result = split(url.substr(place + slashes.size()), separator);

    auto commandPieces = split(result[0], escapedSeparator);
    if (commandPieces.size() == 1)
        return result;
    std::string& parameter = commandPieces[1];
    if (parameter.starts_with(brokenScheme))
        parameter.replace(0, brokenScheme.size(), scheme);
    result[0] = std::move(commandPieces[0]);
    result.insert(result.begin() + 1, std::move(parameter));
    return result;
}

} // namespace kw

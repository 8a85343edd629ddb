// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// What the benchmarks of URLs work on.
#pragma once

#include <KWToolkit/url/NSString+GTMNSStringURLArgumentsAdditions.h>

#include <cstddef>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace kw::bench {

/// Characters at random, of so many bytes in all or a few more: half of them letters and digits, a
/// quarter other ASCII, a quarter of two, three and four bytes.
inline std::string mixedText(std::size_t size) {
    constexpr std::string_view plain =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    constexpr std::string_view punctuation = " !\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~";
    static const std::vector<std::string> others {"é", "ß", "ж", "λ", "€", "中", "あ", "한", "😀"};
    std::mt19937 random(1);
    std::string text;
    while (text.size() < size) {
        const auto kind = random() % 4;
        if (kind < 2)
            text += plain[random() % plain.size()];
        else if (kind == 2)
            text += punctuation[random() % punctuation.size()];
        else
            text += others[random() % others.size()];
    }
    return text;
}

inline std::string escapedText(std::size_t size) {
    return gtm_stringByEscapingForURLArgument(mixedText(size)).value();
}

/// Names and words as they are in forms.
inline std::map<std::string, std::string> fiftyPairs() {
    std::map<std::string, std::string> pairs;
    for (int i = 0; i < 50; ++i) {
        const std::string number = std::to_string(i);
        pairs["field " + number] = "Jürgen & Søren, 100% of " + number + " (à la carte)";
    }
    return pairs;
}

} // namespace kw::bench

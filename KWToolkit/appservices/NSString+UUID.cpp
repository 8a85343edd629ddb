// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/appservices/NSString+UUID.h>

#include <exception>
#include <random>

namespace kw {

std::optional<std::string> uuid() {
    // "4" is the version; "y" has the variant in its upper two bits.
    std::string text = "xxxxxxxx-xxxx-4xxx-yxxx-xxxxxxxxxxxx";
    try {
        std::random_device random;
        unsigned bits = 0;
        int digitsLeft = 0;
        for (char& character : text) {
            if (character != 'x' && character != 'y')
                continue;
            if (digitsLeft-- == 0) {
                bits = random();
                digitsLeft = 7;
            }
            const unsigned digit = bits % 16;
            bits /= 16;
            character = "0123456789ABCDEF"[character == 'y' ? 8 + digit % 4 : digit];
        }
    } catch (const std::exception&) {
        return std::nullopt;
    }
    return text;
}

} // namespace kw

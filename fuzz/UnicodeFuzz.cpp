// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
//
// Whatever bytes come in: only valid sequences are taken, and every unit goes out as valid UTF-8.
// And a path of them comes back out of its URL.
#include <KWToolkit/hotkeys/KWGlobalHotkeyManager.h>
#include <KWToolkit/platform/foundation/FileURL.h>
#include <KWToolkit/platform/foundation/Unicode.h>
#include <fuzz/Require.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using kw::fuzz::require;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::string_view rest = text;
    bool isRoman = true;
    while (const auto code = kw::takeCodePoint(rest)) {
        require(*code <= 0x10FFFF && !(*code >= 0xD800 && *code <= 0xDFFF));
        isRoman = isRoman && *code < 0x10000;
        if (*code < 0x10000) {
            std::string again;
            kw::appendUnit(again, static_cast<char16_t>(*code));
            require(text.substr(text.size() - rest.size() - again.size()).starts_with(again));
        }
    }
    const bool isValid = rest.empty();
    const auto roman = kw::macOSRoman(text);
    require(kw::isValidUTF8(text) == isValid);
    require(!roman || (isValid && isRoman));
    require(roman.has_value() || kw::fourCharCodeToOSType(text) == 0);

    const auto decoded = kw::textFromUTF16(text);
    require(decoded.has_value() == (size % 2 == 0));
    require(!decoded || kw::isValidUTF8(*decoded));

    for (std::size_t i = 0; i + 1 < size; i += 2) {
        std::string utf8;
        kw::appendUnit(utf8, static_cast<char16_t>(data[i] << 8 | data[i + 1]));
        std::string_view unit = utf8;
        require(kw::takeCodePoint(unit).has_value() && unit.empty());
    }

    const std::string path = '/' + std::string(text);
    require(kw::pathOfFileURL(kw::fileURLOfPath(path)) == path);
    kw::pathOfFileURL("file:" + std::string(text));
    return 0;
}

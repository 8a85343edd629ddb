// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/url/KWMailUtils.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSBundle.h>

#include <algorithm>

namespace kw {

namespace {

constexpr const char* nullText = "(null)"; // what the platform prints for no object

std::string escaped(std::string_view text) {
    constexpr std::string_view never = " <>#%\"{}|\\^[]`\x7F";
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte > 0x7F)
            return nullText;
        if (byte < 0x20 || never.find(character) != never.npos)
            (result += '%') += {digits[byte >> 4], digits[byte & 0xF]};
        else
            result += character;
    }
    return result;
}

std::string information(const char* key) {
    return NSBundle::mainBundle().objectForInfoDictionaryKey(key).value_or(nullText);
}

} // namespace

void KWMailUtils::openMailWithReceiver(
    std::string_view receiver, std::string_view subject, std::string_view body) {
    Platform::workspace().openURL(
        "mailto:" + escaped(receiver) + "?SUBJECT=" + escaped(subject) + "&BODY=" + escaped(body));
}

void KWMailUtils::sendFeedBackEmailTo(std::string_view receiver) {
    const std::string subject = information("CFBundleName") + " ("
        + information("CFBundleShortVersionString") + ") feedback";
    openMailWithReceiver(receiver, subject, "Your feedback here...");
}

} // namespace kw

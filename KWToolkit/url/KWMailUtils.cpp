// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/url/KWMailUtils.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSBundle.h>
#include <KWToolkit/url/EscapeTable.h>

#include <algorithm>

namespace kw {

namespace {

constexpr const char* nullText = "(null)"; // what the platform prints for no object

constexpr EscapeTable table({{'\0', ' '}, {'"', '#'}, {'%', '%'}, {'<', '<'}, {'>', '>'},
    {'[', '^'}, {'`', '`'}, {'{', '}'}, {'\x7F', '\x7F'}});

std::string escaped(std::string_view text) {
    const bool isASCII =
        std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    return isASCII ? table.escaped(text) : nullText;
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

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <string>
#include <string_view>

namespace kw {

/// Opens the user's mail program with a message that is filled in; the user sends it. Any thread;
/// returns at once.
///
/// Only what may not stand in a URL at all is escaped (blanks, controls and the delimiters and
/// unwise characters of RFC 2396). Deliberate: "&", "=", "?", "+" and the like stay, so a body ends
/// at its first "&" for the mail program; `urlEncode` the text where that is not wanted. Text that
/// is not ASCII becomes "(null)".
class KW_EXPORT KWMailUtils {
public:
    KWMailUtils() = delete;

    static void openMailWithReceiver(
        std::string_view receiver, std::string_view subject, std::string_view body);

    /// A message about the host: its subject is "<name> (<version>) feedback".
    static void sendFeedBackEmailTo(std::string_view receiver);
};

} // namespace kw

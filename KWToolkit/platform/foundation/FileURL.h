// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// URLs of files (RFC 8089).
#pragma once

#include <KWToolkit/platform/Export.h>

#include <optional>
#include <string>
#include <string_view>

namespace kw {

/// Whether the URL's scheme is "file", in whatever case.
KW_EXPORT bool isFileURL(std::string_view url);

/// The path in a URL, without its escapes; host, query and fragment do not belong to it. Nothing
/// where the URL names no file, or a percent sign is not followed by two hexadecimal digits. Bytes
/// that are no UTF-8 are kept.
KW_EXPORT std::optional<std::string> pathOfFileURL(std::string_view url);

/// The URL of an absolute path. A folder's ends in a slash, as its path must.
KW_EXPORT std::string fileURLOfPath(std::string_view path);

} // namespace kw

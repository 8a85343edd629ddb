// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <string>
#include <string_view>
#include <vector>

namespace kw {

/// The words of a URL of the host's own scheme.
class KW_EXPORT KWUrlDelegateHelper {
public:
    KWUrlDelegateHelper() = delete;

    /// Cuts "scheme://command&!p!&parameter&!p!&…" into the command and its parameters, none of
    /// them unescaped; at least one, which may be empty. Throws `NSRangeException` where there is
    /// no "//".
    ///
    /// The separator after the command may also have been escaped on its way, as "%26%21p%21%26".
    /// Then a parameter that begins with "http//" gets its colon back. Deliberate: what follows a
    /// second escaped separator within the command is dropped.
    static std::vector<std::string> parametersFromString(std::string_view url);
};

} // namespace kw

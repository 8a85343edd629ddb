// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/Locale.h>
#include <backends/linux/posix/Environment.h>

namespace kw {

/// The C library's locale for numbers: the first set of LC_ALL, LC_NUMERIC and LANG, whatever the
/// process's own locale is. One that is not installed is "C", which does not group digits.
///
/// All is found out once, when this is made.
class KW_EXPORT CLocale final : public Locale {
public:
    explicit CLocale(const Environment& environment = processEnvironment);

    NumberSeparators numberSeparators() const override { return m_separators; }

private:
    NumberSeparators m_separators;
};

} // namespace kw

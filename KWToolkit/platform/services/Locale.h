// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <string>
#include <vector>

namespace kw {

/// How the user's numbers are written.
struct NumberSeparators {
    std::string decimal = ".";
    std::string grouping = ","; ///< empty where digits are not grouped
    /// How many digits are in each group, from the decimal separator on; the last size repeats, and
    /// after a 0 all that is left is one group.
    std::vector<int> groupSizes = {3};
};

/// The user's conventions. Used on any thread.
class KW_EXPORT Locale {
public:
    virtual ~Locale();
    virtual NumberSeparators numberSeparators() const = 0;
};

/// A point for decimals and a comma after each three digits.
class KW_EXPORT StandardLocale final : public Locale {
public:
    NumberSeparators numberSeparators() const override { return {}; }
};

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/controls/KWSeparatorView.h>
#include <KWToolkit/platform/Export.h>

namespace kw {

/// A somewhat lighter separator, for every other strip. Main thread.
class KW_EXPORT KWEvenSeparatorView : public KWSeparatorView {
public:
    explicit KWEvenSeparatorView(NSRect frame = {});

    static Class& classObject();
    Class& isa() const override { return classObject(); }
};

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/controls/KWSeparatorView.h>
#include <KWToolkit/platform/Export.h>

namespace kw {

/// A separator as it is, under a name of its own. Main thread.
class KW_EXPORT KWOddSeparatorView : public KWSeparatorView {
public:
    using KWSeparatorView::KWSeparatorView;

    static Class& classObject();
    Class& isa() const override { return classObject(); }
};

} // namespace kw

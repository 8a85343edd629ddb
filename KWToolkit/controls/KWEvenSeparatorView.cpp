// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/controls/KWEvenSeparatorView.h>

namespace kw {

KWEvenSeparatorView::KWEvenSeparatorView(NSRect frame)
    : KWSeparatorView(frame) {
    m_firstLineColor = grey(0.81);
    m_secondLineColor = grey(0.937);
    m_bgColor = grey(0.91);
}

Class& KWEvenSeparatorView::classObject() {
    static auto& object = *new Class("KWEvenSeparatorView", KWSeparatorView::classObject());
    return object;
}

} // namespace kw

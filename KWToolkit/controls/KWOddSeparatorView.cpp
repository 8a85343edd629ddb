// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/controls/KWOddSeparatorView.h>

namespace kw {

Class& KWOddSeparatorView::classObject() {
    static auto& object = *new Class("KWOddSeparatorView", KWSeparatorView::classObject());
    return object;
}

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/graphics/NSImageRep.h>

namespace kw {

Class& NSImageRep::classObject() {
    static auto& object = *new Class("NSImageRep", NSObject::classObject());
    return object;
}

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/imaging/NSImage+AdjustGamma.h>

#include <KWToolkit/platform/foundation/Message.h>

namespace kw {

void adjustGammaWithValue(NSImage& image, float value) {
    image.enumerateRepresentations([value](const std::shared_ptr<NSImageRep>& representation) {
        send(*representation, SEL("adjustGammaWithValue:"), value);
    });
}

void adjustGammaWithArray(NSImage& image, const GammaTable* table) {
    image.enumerateRepresentations([table](const std::shared_ptr<NSImageRep>& representation) {
        send(*representation, SEL("adjustGammaWithArray:"), table);
    });
}

} // namespace kw

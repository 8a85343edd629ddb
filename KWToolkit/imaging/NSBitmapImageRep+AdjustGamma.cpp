// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/imaging/NSBitmapImageRep+AdjustGamma.h>

#include <KWToolkit/imaging/GammaTableWalk.h>
#include <KWToolkit/platform/foundation/Message.h>

#include <exception>

namespace kw {

namespace {

bool hasRedComponent(const NSBitmapImageRep& bitmap) {
    try {
        if (const auto color = bitmap.colorAt(0, 0))
            color->redComponent();
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace

void adjustGammaWithValue(NSBitmapImageRep& bitmap, float value, const GammaTable* table) {
    if (!hasRedComponent(bitmap) || (value == 0.0F && !table))
        return;
    const GammaAdjustment adjusted(value, table);
    if (walkByTables(bitmap, adjusted))
        return;
    // Deliberate: from 2^24 columns on, the last one's number may round to the width.
    auto columns = static_cast<std::int32_t>(bitmap.pixelsWide());
    while (
        columns > 0 && !(static_cast<float>(columns - 1) < static_cast<float>(bitmap.pixelsWide())))
        --columns;
    walkColumns(bitmap, adjusted, 0, columns);
}

void adjustGammaWithValue(NSBitmapImageRep& bitmap, float value) {
    adjustGammaWithValue(bitmap, value, nullptr);
}

void adjustGammaWithArray(NSBitmapImageRep& bitmap, const GammaTable* table) {
    adjustGammaWithValue(bitmap, 0, table);
}

namespace {

[[maybe_unused]] const bool isListed =
    (NSBitmapImageRep::classObject().addMethods({
         method("adjustGammaWithValue:",
             [](NSBitmapImageRep& bitmap, float value) { adjustGammaWithValue(bitmap, value); }),
         method("adjustGammaWithValue:andArray:",
             [](NSBitmapImageRep& bitmap, float value, const GammaTable* table) {
                 adjustGammaWithValue(bitmap, value, table);
             }),
         method("adjustGammaWithArray:",
             [](NSBitmapImageRep& bitmap, const GammaTable* table) {
                 adjustGammaWithArray(bitmap, table);
             }),
     }),
        true);

} // namespace

} // namespace kw

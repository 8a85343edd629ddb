// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/graphics/NSImage.h>

#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/graphics/NSBitmapImageRep.h>

#include <cstddef>
#include <utility>

namespace kw {

Class& NSImage::classObject() {
    static auto& object = *new Class("NSImage", NSObject::classObject());
    return object;
}

NSSize NSImage::size() const {
    if (m_size)
        return *m_size;
    return m_representations.empty() ? NSSize {} : m_representations.front()->size();
}

void NSImage::addRepresentation(std::shared_ptr<NSImageRep> representation) {
    if (!representation)
        return;
    m_representations.push_back(std::move(representation));
    ++m_changes;
}

void NSImage::removeRepresentation(const std::shared_ptr<NSImageRep>& representation) {
    if (std::erase(m_representations, representation) > 0)
        ++m_changes;
}

void NSImage::enumerateRepresentations(
    const std::function<void(const std::shared_ptr<NSImageRep>&)>& call) const {
    const std::uint64_t changes = m_changes;
    const std::size_t count = m_representations.size();
    for (std::size_t i = 0; i < count; ++i) {
        if (m_changes != changes)
            throw NSException(
                "NSGenericException", "*** Collection was mutated while being enumerated.");
        const std::shared_ptr<NSImageRep> representation = m_representations[i];
        call(representation);
    }
}

CGImageRef NSImage::CGImageForProposedRect(const NSRect& rect) const {
    NSBitmapImageRep* best = nullptr;
    const auto covers = [&rect](const NSBitmapImageRep& bitmap) {
        return static_cast<double>(bitmap.pixelsWide()) >= rect.size.width
            && static_cast<double>(bitmap.pixelsHigh()) >= rect.size.height;
    };
    const auto area = [](const NSBitmapImageRep& bitmap) {
        return static_cast<double>(bitmap.pixelsWide()) * static_cast<double>(bitmap.pixelsHigh());
    };
    for (const auto& representation : m_representations) {
        auto* const bitmap = dynamic_cast<NSBitmapImageRep*>(representation.get());
        if (!bitmap)
            continue;
        if (!best || (covers(*bitmap) && !covers(*best))
            || (covers(*bitmap) == covers(*best)
                && (covers(*bitmap) ? area(*bitmap) < area(*best) : area(*bitmap) > area(*best))))
            best = bitmap;
    }
    return best ? best->CGImage() : nullptr;
}

} // namespace kw

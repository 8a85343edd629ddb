// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSObject.h>
#include <KWToolkit/platform/graphics/CGImage.h>
#include <KWToolkit/platform/graphics/NSGeometry.h>
#include <KWToolkit/platform/graphics/NSImageRep.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace kw {

/// A picture in one or more forms: the same icon in several sizes, say. Used on one thread at a
/// time; different ones on any threads.
class KW_EXPORT NSImage : public NSObject {
public:
    NSImage() = default;
    explicit NSImage(NSSize size)
        : m_size(size) { }

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// In points. Where none was given, that of the first representation; zero without any.
    NSSize size() const;
    void setSize(NSSize size) { m_size = size; }

    /// Whether y grows downward in the image's own coordinates.
    bool isFlipped() const { return m_isFlipped; }
    void setFlipped(bool isFlipped) { m_isFlipped = isFlipped; }

    const std::vector<std::shared_ptr<NSImageRep>>& representations() const {
        return m_representations;
    }
    /// Adds one at the end; nothing where there is none.
    void addRepresentation(std::shared_ptr<NSImageRep> representation);
    /// Takes one out, each time that it is in the list.
    void removeRepresentation(const std::shared_ptr<NSImageRep>& representation);

    /// Calls for each representation, in order. Throws an `NSException` named "NSGenericException"
    /// before the next one where the call has changed the list.
    void enumerateRepresentations(
        const std::function<void(const std::shared_ptr<NSImageRep>&)>& call) const;

    /// The pixels that best fill a rectangle, one a point: of the bitmaps the smallest that covers
    /// it, else the largest. The bitmap keeps them alive until it is changed. Null without bitmaps.
    CGImageRef CGImageForProposedRect(const NSRect& rect) const;

private:
    std::optional<NSSize> m_size;
    bool m_isFlipped = false;
    std::vector<std::shared_ptr<NSImageRep>> m_representations;
    std::uint64_t m_changes = 0; // of the list
};

} // namespace kw

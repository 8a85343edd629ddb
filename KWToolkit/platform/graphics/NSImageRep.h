// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSObject.h>
#include <KWToolkit/platform/graphics/NSGeometry.h>

namespace kw {

/// One form of an image: pixels, or whatever else a host's subclass can show.
class KW_EXPORT NSImageRep : public NSObject {
public:
    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// In points.
    virtual NSSize size() const { return m_size; }
    void setSize(NSSize size) { m_size = size; }

protected:
    explicit NSImageRep(NSSize size)
        : m_size(size) { }

private:
    NSSize m_size;
};

} // namespace kw

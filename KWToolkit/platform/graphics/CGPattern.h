// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/NSGeometry.h>

namespace kw {

class NSGraphicsContext;

/// x' = ax + cy + tx, y' = bx + dy + ty.
struct CGAffineTransform {
    double a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;
    friend constexpr bool operator==(const CGAffineTransform&, const CGAffineTransform&) = default;
};

/// What may give way where a pattern's step is no whole number of pixels.
enum class CGPatternTiling { noDistortion, constantSpacingMinimalDistortion, constantSpacing };

struct CGPatternCallbacks {
    unsigned version = 0;
    /// Draws one cell, the pattern's bounds, in the pattern's own coordinates (y up).
    void (*drawPattern)(void* info, NSGraphicsContext& context) = nullptr;
    /// Called when the pattern goes; may be null.
    void (*releaseInfo)(void* info) = nullptr;
};

/// A cell that is drawn again and again, `xStep` and `yStep` apart.
class KW_EXPORT CGPattern {
public:
    CGPattern(void* info, const NSRect& bounds, const CGAffineTransform& matrix, double xStep,
        double yStep, CGPatternTiling tiling, bool isColored, const CGPatternCallbacks& callbacks);
    ~CGPattern();
    CGPattern(const CGPattern&) = delete;
    CGPattern& operator=(const CGPattern&) = delete;

    void* info() const { return m_info; }
    const NSRect& bounds() const { return m_bounds; }
    const CGAffineTransform& matrix() const { return m_matrix; }
    double xStep() const { return m_xStep; }
    double yStep() const { return m_yStep; }
    CGPatternTiling tiling() const { return m_tiling; }
    /// Whether the cell carries its own colors.
    bool isColored() const { return m_isColored; }
    const CGPatternCallbacks& callbacks() const { return m_callbacks; }

    /// Draws one cell.
    void draw(NSGraphicsContext& context) const;

private:
    void* m_info;
    NSRect m_bounds;
    CGAffineTransform m_matrix;
    double m_xStep;
    double m_yStep;
    CGPatternTiling m_tiling;
    bool m_isColored;
    CGPatternCallbacks m_callbacks;
};

} // namespace kw

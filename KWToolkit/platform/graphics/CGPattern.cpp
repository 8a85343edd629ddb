// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/graphics/CGPattern.h>

namespace kw {

CGPattern::CGPattern(void* info, const NSRect& bounds, const CGAffineTransform& matrix,
    double xStep, double yStep, CGPatternTiling tiling, bool isColored,
    const CGPatternCallbacks& callbacks)
    : m_info(info)
    , m_bounds(bounds)
    , m_matrix(matrix)
    , m_xStep(xStep)
    , m_yStep(yStep)
    , m_tiling(tiling)
    , m_isColored(isColored)
    , m_callbacks(callbacks) { }

CGPattern::~CGPattern() {
    if (m_callbacks.releaseInfo)
        m_callbacks.releaseInfo(m_info);
}

void CGPattern::draw(NSGraphicsContext& context) const {
    if (m_callbacks.drawPattern)
        m_callbacks.drawPattern(m_info, context);
}

} // namespace kw

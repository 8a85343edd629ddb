// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/graphics/CGColorSpace.h>
#include <KWToolkit/platform/graphics/CGPattern.h>

#include <memory>
#include <utility>
#include <vector>

namespace kw {

/// A color for layers and contexts: its space and its components, alpha last, from 0 to 1. In the
/// pattern space the one component is the alpha.
class CGColor {
public:
    CGColor(CGColorSpace space, std::vector<double> components)
        : m_space(space)
        , m_components(std::move(components)) { }
    CGColor(std::shared_ptr<const CGPattern> pattern, double alpha)
        : m_space(CGColorSpace::pattern)
        , m_components {alpha}
        , m_pattern(std::move(pattern)) { }

    CGColorSpace colorSpace() const { return m_space; }
    const std::vector<double>& components() const { return m_components; }
    double alpha() const { return m_components.empty() ? 1 : m_components.back(); }
    /// Null but in the pattern space.
    const std::shared_ptr<const CGPattern>& pattern() const { return m_pattern; }

    friend bool operator==(const CGColor&, const CGColor&) = default;

private:
    CGColorSpace m_space;
    std::vector<double> m_components;
    std::shared_ptr<const CGPattern> m_pattern;
};

} // namespace kw

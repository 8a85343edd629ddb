// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/CAConstraintLayoutManager.h>

#include <KWToolkit/platform/ui/CALayer.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <optional>
#include <ranges>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kw {

namespace {

struct Span {
    double origin = 0;
    double size = 0;
};

/// An attribute is a place on an axis, at a part of the size, or the size itself.
struct Attribute {
    std::size_t axis; // x, y
    std::optional<double> part;

    double of(const Span& span) const { return part ? span.origin + *part * span.size : span.size; }
};
constexpr std::array<Attribute, 8> attributes {{
    {0, 0.0},
    {0, 0.5},
    {0, 1.0},
    {0, std::nullopt},
    {1, 0.0},
    {1, 0.5},
    {1, 1.0},
    {1, std::nullopt},
}};

const Attribute* find(CAConstraintAttribute attribute) {
    const auto index = static_cast<std::size_t>(attribute);
    return index < attributes.size() ? &attributes[index] : nullptr;
}

using Spans = std::array<Span, 2>;

Spans spansOf(const NSRect& rect) {
    return {Span {rect.origin.x, rect.size.width}, Span {rect.origin.y, rect.size.height}};
}

struct Rule {
    const CAConstraint* constraint;
    std::size_t source; // a span
};

/// One axis of one layer. The superlayer's two come last.
struct Node {
    enum class State { untouched, entered, solved };
    State state = State::untouched;
    bool keepsSize = false;
    Span span; // before it is solved, where it was
    std::array<Rule, 2> rules {}; // the newest first
    std::size_t ruleCount = 0;
};

class Layout {
public:
    explicit Layout(CALayer& layer)
        : m_layers(layer.sublayers())
        , m_nodes((m_layers.size() + 1) * 2) {
        // The superlayer's name belongs to nobody else.
        m_places.reserve(m_layers.size() + 1);
        m_places.emplace("superlayer", m_layers.size());
        place(m_layers.size(), layer.bounds());
        for (std::size_t i = 0; i < m_layers.size(); ++i) {
            place(i, m_layers[i]->frame());
            // The frame of what is turned says nothing of the size of its bounds.
            const CGAffineTransform& transform = m_layers[i]->affineTransform();
            const bool isTurned = transform.b != 0 || transform.c != 0;
            m_nodes[2 * i].keepsSize = m_nodes[2 * i + 1].keepsSize = isTurned;
            m_places.emplace(m_layers[i]->name(), i);
        }
        for (std::size_t i = 0; i < m_layers.size(); ++i)
            chooseRules(i);
    }

    void run() {
        for (std::size_t i = 0; i < m_nodes.size(); ++i)
            solveFrom(i);
        for (std::size_t i = 0; i < m_layers.size(); ++i) {
            const Span& x = m_nodes[2 * i].span;
            const Span& y = m_nodes[2 * i + 1].span;
            if (m_nodes[2 * i].ruleCount > 0 || m_nodes[2 * i + 1].ruleCount > 0)
                m_layers[i]->setFrame(NSMakeRect(x.origin, y.origin, x.size, y.size));
        }
    }

private:
    void place(std::size_t index, const NSRect& rect) {
        const Spans spans = spansOf(rect);
        for (std::size_t axis = 0; axis < spans.size(); ++axis)
            m_nodes[2 * index + axis].span = spans[axis];
    }

    void chooseRules(std::size_t index) {
        for (const CAConstraint& constraint :
            m_layers[index]->constraints() | std::views::reverse) {
            const Attribute* const attribute = find(constraint.attribute);
            const Attribute* const sourceAttribute = find(constraint.sourceAttribute);
            if (!attribute || !sourceAttribute || constraint.sourceName.empty()
                || !std::isfinite(constraint.scale) || !std::isfinite(constraint.offset))
                continue;
            Node& node = m_nodes[2 * index + attribute->axis];
            const bool isFull = node.ruleCount == node.rules.size();
            const bool isReplaced =
                node.ruleCount > 0 && node.rules[0].constraint->attribute == constraint.attribute;
            const auto source = m_places.find(constraint.sourceName);
            if (isFull || isReplaced || source == m_places.end())
                continue;
            node.rules[node.ruleCount++] = {
                &constraint, 2 * source->second + sourceAttribute->axis};
        }
    }

    /// Solves a node after all that it leads to, on a stack of its own: chains can be long.
    void solveFrom(std::size_t first) {
        struct Visit {
            std::size_t node;
            std::size_t nextRule = 0;
        };
        std::vector<Visit> path {{first}};
        while (!path.empty()) {
            Visit& visit = path.back();
            Node& node = m_nodes[visit.node];
            if (node.state == Node::State::solved) {
                path.pop_back();
                continue;
            }
            node.state = Node::State::entered;
            if (visit.nextRule == node.ruleCount) {
                solve(node);
                path.pop_back();
                continue;
            }
            const std::size_t source = node.rules[visit.nextRule++].source;
            if (m_nodes[source].state == Node::State::untouched)
                path.push_back({source});
        }
    }

    void solve(Node& node) {
        std::optional<double> size;
        struct Anchor {
            double part;
            double value;
        };
        std::array<Anchor, 2> anchors {};
        std::size_t anchorCount = 0;
        for (std::size_t i = 0; i < node.ruleCount; ++i) {
            const auto& [constraint, source] = node.rules[i];
            // Not solved where this closes a circle.
            const Span& span = m_nodes[source].span;
            const double value = find(constraint->sourceAttribute)->of(span) * constraint->scale
                + constraint->offset;
            if (const auto part = find(constraint->attribute)->part)
                anchors[anchorCount++] = {*part, value};
            else
                size = value;
        }
        const auto& [newest, other] = anchors;
        if (anchorCount == 2)
            size = (newest.value - other.value) / (newest.part - other.part);
        if (size && !node.keepsSize)
            node.span.size = std::max(*size, 0.0);
        if (anchorCount > 0)
            node.span.origin = newest.value - newest.part * node.span.size;
        node.state = Node::State::solved;
    }

    const std::vector<std::shared_ptr<CALayer>> m_layers; // a copy: actions may change the tree
    std::vector<Node> m_nodes; // two for each layer
    std::unordered_map<std::string_view, std::size_t> m_places;
};

} // namespace

Class& CALayoutManager::classObject() {
    static auto& object = *new Class("CALayoutManager", NSObject::classObject());
    return object;
}

Class& CAConstraintLayoutManager::classObject() {
    static auto& object = *new Class("CAConstraintLayoutManager", CALayoutManager::classObject());
    return object;
}

void CAConstraintLayoutManager::layoutSublayersOfLayer(CALayer& layer) { Layout(layer).run(); }

} // namespace kw

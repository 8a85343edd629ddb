// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/graphics/NSGraphicsContext.h>
#include <KWToolkit/platform/services/TextMetrics.h>

#include <string>
#include <variant>
#include <vector>

namespace kw {

/// Keeps what is drawn as plain values, in order.
class RecordingGraphicsContext final : public NSGraphicsContext {
public:
    struct SaveState {
        friend bool operator==(const SaveState&, const SaveState&) = default;
    };
    struct RestoreState {
        friend bool operator==(const RestoreState&, const RestoreState&) = default;
    };
    struct Concat {
        CGAffineTransform transform;
        friend bool operator==(const Concat&, const Concat&) = default;
    };
    struct Clip {
        NSBezierPath path;
        friend bool operator==(const Clip&, const Clip&) = default;
    };
    struct BeginTransparencyLayer {
        double alpha;
        friend bool operator==(
            const BeginTransparencyLayer&, const BeginTransparencyLayer&) = default;
    };
    struct EndTransparencyLayer {
        friend bool operator==(const EndTransparencyLayer&, const EndTransparencyLayer&) = default;
    };
    struct SetFillColor {
        NSColor color;
        friend bool operator==(const SetFillColor&, const SetFillColor&) = default;
    };
    struct SetFillCGColor {
        CGColor color;
        friend bool operator==(const SetFillCGColor&, const SetFillCGColor&) = default;
    };
    struct SetStrokeColor {
        NSColor color;
        friend bool operator==(const SetStrokeColor&, const SetStrokeColor&) = default;
    };
    struct SetShadow {
        NSShadow shadow;
        friend bool operator==(const SetShadow&, const SetShadow&) = default;
    };
    struct SetShouldAntialias {
        bool antialias;
        friend bool operator==(const SetShouldAntialias&, const SetShouldAntialias&) = default;
    };
    struct SetShouldSmoothFonts {
        bool smooth;
        friend bool operator==(const SetShouldSmoothFonts&, const SetShouldSmoothFonts&) = default;
    };
    struct Fill {
        NSBezierPath path;
        friend bool operator==(const Fill&, const Fill&) = default;
    };
    struct Stroke {
        NSBezierPath path;
        friend bool operator==(const Stroke&, const Stroke&) = default;
    };
    struct DrawGradient {
        NSGradient gradient;
        NSBezierPath path;
        double angle;
        friend bool operator==(const DrawGradient&, const DrawGradient&) = default;
    };
    struct DrawImage {
        const CGImage* image;
        NSRect rect;
        friend bool operator==(const DrawImage&, const DrawImage&) = default;
    };
    struct DrawText {
        std::string text;
        NSPoint origin;
        TextAttributes attributes;
        friend bool operator==(const DrawText&, const DrawText&) = default;
    };
    struct DrawTextInRect {
        std::string text;
        NSRect rect;
        TextAttributes attributes;
        friend bool operator==(const DrawTextInRect&, const DrawTextInRect&) = default;
    };
    using Call = std::variant<SaveState, RestoreState, Concat, Clip, BeginTransparencyLayer,
        EndTransparencyLayer, SetFillColor, SetFillCGColor, SetStrokeColor, SetShadow, Fill, Stroke,
        DrawGradient, DrawImage, DrawText, DrawTextInRect, SetShouldAntialias,
        SetShouldSmoothFonts>;

    const std::vector<Call>& calls() const { return m_calls; }

    void saveGraphicsState() override { m_calls.emplace_back(SaveState {}); }
    void restoreGraphicsState() override { m_calls.emplace_back(RestoreState {}); }
    void concat(const CGAffineTransform& transform) override {
        m_calls.emplace_back(Concat {transform});
    }
    void clip(const NSBezierPath& path) override { m_calls.emplace_back(Clip {path}); }
    void beginTransparencyLayer(double alpha) override {
        m_calls.emplace_back(BeginTransparencyLayer {alpha});
    }
    void endTransparencyLayer() override { m_calls.emplace_back(EndTransparencyLayer {}); }
    void setFillColor(const NSColor& color) override { m_calls.emplace_back(SetFillColor {color}); }
    void setFillColor(const CGColor& color) override {
        m_calls.emplace_back(SetFillCGColor {color});
    }
    void setStrokeColor(const NSColor& color) override {
        m_calls.emplace_back(SetStrokeColor {color});
    }
    void setShadow(const NSShadow& shadow) override { m_calls.emplace_back(SetShadow {shadow}); }
    void setShouldAntialias(bool antialias) override {
        m_calls.emplace_back(SetShouldAntialias {antialias});
    }
    void setShouldSmoothFonts(bool smooth) override {
        m_calls.emplace_back(SetShouldSmoothFonts {smooth});
    }
    void fill(const NSBezierPath& path) override { m_calls.emplace_back(Fill {path}); }
    void stroke(const NSBezierPath& path) override { m_calls.emplace_back(Stroke {path}); }
    void drawGradient(const NSGradient& gradient, const NSBezierPath& path, double angle) override {
        m_calls.emplace_back(DrawGradient {gradient, path, angle});
    }
    void drawImage(const CGImage& image, const NSRect& rect) override {
        m_calls.emplace_back(DrawImage {&image, rect});
    }
    /// As `NominalTextMetrics` has it.
    NSSize sizeOfText(std::string_view text, const TextAttributes& attributes) override {
        return NominalTextMetrics().sizeOfText(text, attributes);
    }
    void drawText(
        std::string_view text, NSPoint origin, const TextAttributes& attributes) override {
        m_calls.emplace_back(DrawText {std::string(text), origin, attributes});
    }
    void drawTextInRect(
        std::string_view text, const NSRect& rect, const TextAttributes& attributes) override {
        m_calls.emplace_back(DrawTextInRect {std::string(text), rect, attributes});
    }

private:
    std::vector<Call> m_calls;
};

} // namespace kw

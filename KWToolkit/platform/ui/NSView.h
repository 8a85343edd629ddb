// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/NSGeometry.h>
#include <KWToolkit/platform/graphics/NSGraphicsContext.h>
#include <KWToolkit/platform/ui/NSResponder.h>

#include <memory>
#include <vector>

namespace kw {

class CALayer;
class NSView;

/// Whoever shows a tree of views: a widget of a GUI toolkit, or a test.
class KW_EXPORT ViewHost {
public:
    virtual ~ViewHost();
    /// Part of the root view, in its coordinates, is to be drawn anew soon.
    virtual void setNeedsDisplayInRect(NSRect rect) = 0;
    /// Gives a view of the tree the keyboard focus. Returns whether it has it.
    virtual bool makeFirstResponder(NSView& view) = 0;
    /// A view leaves the tree or dies: let go of every pointer to it.
    virtual void viewWillGo(NSView& view) = 0;
};

/// A rectangle that draws and takes events, with views in it. Main thread.
class KW_EXPORT NSView : public NSResponder {
public:
    explicit NSView(NSRect frame = {});
    ~NSView() override;

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// The place in the superview, in its coordinates.
    NSRect frame() const { return m_frame; }
    void setFrame(NSRect frame);
    /// The view's own coordinates: its origin is zero.
    NSRect bounds() const { return {{}, m_frame.size}; }
    /// Whether y grows downward in the view's own coordinates.
    virtual bool isFlipped() const { return false; }

    NSView* superview() const { return m_superview; }
    /// Back to front. The view owns them.
    const std::vector<std::shared_ptr<NSView>>& subviews() const { return m_subviews; }
    /// Adds a view in front, taking it out of its former superview. Null, the view itself or one
    /// that contains it is ignored.
    void addSubview(std::shared_ptr<NSView> view);
    void removeFromSuperview();

    bool isHidden() const { return m_isHidden; }
    void setHidden(bool hidden);

    /// Draws `rect`, a part of the bounds or all of them. The context's origin is the view's.
    virtual void drawRect(NSGraphicsContext& context, NSRect rect);
    void setNeedsDisplay() { setNeedsDisplayInRect(bounds()); }
    void setNeedsDisplayInRect(NSRect rect);

    /// A tree of layers over what the view draws itself and beneath its subviews. Its root fills
    /// the view, without animation; y grows upward in it, also where the view is flipped. A layer
    /// is taken from where it was; null shows none.
    const std::shared_ptr<CALayer>& layer() const { return m_layer; }
    void setLayer(std::shared_ptr<CALayer> layer);
    /// Draws the tree of layers as it looks now. Whoever shows the view calls it, with a context
    /// whose y grows upward from the view's lower edge.
    void drawLayer(NSGraphicsContext& context) const;

    /// Whether a click that only activates the window also reaches this view.
    virtual bool acceptsFirstMouse(const NSEvent&) { return false; }
    /// The front-most visible view at a point given in the superview's coordinates, or null.
    virtual NSView* hitTest(NSPoint point);
    /// Offers the key to the subviews, front to back, until one takes it.
    bool performKeyEquivalent(const NSEvent& event) override;

    /// Between the view's coordinates and its superview's.
    NSPoint convertToSuperview(NSPoint point) const;
    NSPoint convertFromSuperview(NSPoint point) const;
    /// Between the view's coordinates and the root view's frame (y up), as in events.
    NSPoint convertFromWindow(NSPoint point) const;

    NSResponder* nextResponder() const override;

    /// Whoever shows the tree that the view is in; null if nobody does.
    ViewHost* host() const;
    /// Set on a root view by its host. Not owned.
    void setHost(ViewHost* host) { m_host = host; }

private:
    NSRect m_frame;
    NSView* m_superview = nullptr;
    std::vector<std::shared_ptr<NSView>> m_subviews;
    ViewHost* m_host = nullptr;
    std::shared_ptr<CALayer> m_layer;
    bool m_isHidden = false;
};

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/NSGeometry.h>
#include <KWToolkit/platform/graphics/NSGraphicsContext.h>
#include <KWToolkit/platform/ui/NSAccessibility.h>
#include <KWToolkit/platform/ui/NSResponder.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kw {

class CALayer;
class NSTrackingArea;
class NSView;
class NSWindow;

/// Whoever shows a tree of views: a widget of a GUI toolkit, or a test.
class KW_EXPORT ViewHost {
public:
    virtual ~ViewHost();
    /// Part of the root view, in its coordinates, is to be drawn anew soon.
    virtual void setNeedsDisplayInRect(NSRect rect) = 0;
    /// The view with the keyboard focus, or that gets it together with the window; null for none.
    virtual NSView* firstResponder() const = 0;
    /// Gives a view of the tree the keyboard focus, null takes it away. Returns whether the view,
    /// or one in it that it was passed on to, has it now.
    virtual bool makeFirstResponder(NSView* view) = 0;
    /// A view leaves the tree or dies: let go of every pointer to it.
    virtual void viewWillGo(NSView& view) = 0;
    /// A view came, moved, changed its size or its tracking areas, or was shown or hidden; or what
    /// a native peer shows has changed. Soon after, peers and hovering are to be brought up to
    /// date.
    virtual void viewsChanged() = 0;
    /// Whether the keyboard is with the window that the views are in.
    virtual bool isKey() const = 0;
    virtual NSWindow& window() = 0;
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
    bool isDescendantOf(const NSView& view) const; ///< or the view itself
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

    /// Called when the size has changed, for a view that places its subviews. This one does
    /// nothing.
    virtual void resizeSubviewsWithOldSize(NSSize oldSize);

    /// A part of the view whose owner is told when the mouse comes and goes. Null is ignored. An
    /// area that is added twice counts once.
    void addTrackingArea(std::shared_ptr<NSTrackingArea> area);
    void removeTrackingArea(const std::shared_ptr<NSTrackingArea>& area);
    const std::vector<std::shared_ptr<NSTrackingArea>>& trackingAreas() const {
        return m_trackingAreas;
    }
    /// Called when the size has changed, for a view whose areas depend on it. This one does
    /// nothing.
    virtual void updateTrackingAreas();

    /// What the view is called in its layout file. Empty for none.
    const std::string& identifier() const { return m_identifier; }
    void setIdentifier(std::string identifier) { m_identifier = std::move(identifier); }
    /// The view of that identifier, this one or the first below it, depth first. Null for an empty
    /// one and where there is none.
    virtual NSView* viewWithIdentifier(const std::string& identifier);

    /// Called once the view has been loaded from a layout file. This one does nothing.
    virtual void awakeFromNib();

    /// What assistive technology is told.
    virtual NSAccessibilityRole accessibilityRole() const { return NSAccessibilityRole::unknown; }
    /// What it is called: the label that was set, else what the class knows.
    virtual std::string accessibilityLabel() const { return m_accessibilityLabel; }
    void setAccessibilityLabel(std::string label) { m_accessibilityLabel = std::move(label); }
    /// What it shows.
    virtual std::string accessibilityValue() const { return {}; }
    /// Writes it as the user could. Returns whether that can be.
    virtual bool setAccessibilityValue(const std::string& value);
    /// Whether the user can operate it now.
    virtual bool isAccessibilityEnabled() const { return true; }
    /// Whether it is shown as pressed in: it waits for what the press has begun.
    virtual bool isAccessibilityPressed() const { return false; }
    /// Does what a click would. Returns whether there is something to do.
    virtual bool accessibilityPerformPress();

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
    NSRect convertRectToSuperview(const NSRect& rect) const;
    NSRect convertRectFromSuperview(const NSRect& rect) const;
    /// What of the bounds no superview cuts off. Empty where the view or one around it is hidden.
    NSRect visibleRect() const;

    /// Whoever shows the tree that the view is in; null if nobody does.
    ViewHost* host() const;
    /// Set on a root view by its host, which takes itself away (null) before it dies. The former
    /// host is told that the view leaves.
    void setHost(ViewHost* host);
    /// The window that the view is in; null while nobody shows it.
    NSWindow* window() const;

protected:
    /// What is shown by a native peer has changed.
    void setNeedsPeerUpdate();

private:
    NSRect m_frame;
    NSView* m_superview = nullptr;
    std::vector<std::shared_ptr<NSView>> m_subviews;
    ViewHost* m_host = nullptr;
    std::shared_ptr<CALayer> m_layer;
    std::vector<std::shared_ptr<NSTrackingArea>> m_trackingAreas;
    std::string m_accessibilityLabel;
    std::string m_identifier;
    bool m_isHidden = false;
};

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSObject.h>
#include <KWToolkit/platform/ui/CAAnimation.h>
#include <KWToolkit/platform/ui/CAConstraint.h>
#include <KWToolkit/platform/ui/CALayerProperty.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kw {

class CALayoutManager;
class NSGraphicsContext;
class NSView;

/// A rectangle in a tree of such: with a color, a border, a picture, and its sublayers over them. A
/// view shows the tree (`NSView::setLayer`). y grows upward. Main thread.
///
/// A changed property runs the action that `actionForKey` finds for it, by default an animation
/// from the value on the screen to the new one. A layer that no transaction has committed yet has
/// nothing on the screen, so it takes its values at once. Numbers that are not finite are ignored.
class KW_EXPORT CALayer : public NSObject {
public:
    /// By key; the null object (`CAAction::null`) stands for no action.
    using Actions = std::map<std::string, std::shared_ptr<CAAction>, std::less<>>;

    CALayer();
    ~CALayer() override;

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// What constraints call the layer.
    const std::string& name() const { return m_name; }
    void setName(std::string name);

    CALayer* superlayer() const { return m_superlayer; }
    /// Back to front. The layer owns them.
    const std::vector<std::shared_ptr<CALayer>>& sublayers() const { return m_sublayers; }
    /// Adds a layer in front, taking it from where it was. Null, the layer itself or one that
    /// contains it is ignored.
    ///
    /// Runs the layer's action "onOrderIn" and then the superlayer's "sublayers"; removing it
    /// "onOrderOut" and "sublayers". None of them has a default.
    void addSublayer(std::shared_ptr<CALayer> layer) {
        insertSublayer(std::move(layer), m_sublayers.size());
    }
    /// The same at an index from the back; in front where there are fewer.
    void insertSublayer(std::shared_ptr<CALayer> layer, std::size_t index);
    void removeFromSuperlayer();

    // Each of these has the key of its name, but for `affineTransform` ("transform") and `isHidden`
    // ("hidden"), and can be observed under it, as can "frame" and "name". Animations change no
    // values, so nobody is told of them. First the value is set, then observers are told, then the
    // action runs; an exception leaves what comes after it undone.

    const NSRect& bounds() const { return m_values.bounds; }
    void setBounds(const NSRect& bounds);
    /// Where the anchor point is in the superlayer.
    const NSPoint& position() const { return m_values.position; }
    void setPosition(const NSPoint& position);
    /// In units of the bounds: (0, 0) is the lower left corner, (1, 1) the upper right one.
    const NSPoint& anchorPoint() const { return m_values.anchorPoint; }
    void setAnchorPoint(const NSPoint& point);
    /// Applied about the anchor point.
    const CGAffineTransform& affineTransform() const { return m_values.transform; }
    void setAffineTransform(const CGAffineTransform& transform);
    /// Of the layer together with its sublayers.
    float opacity() const { return static_cast<float>(m_values.opacity); }
    void setOpacity(float opacity);
    /// Showing and hiding also run the actions "onOrderIn" and "onOrderOut".
    bool isHidden() const { return m_values.hidden == 1; }
    void setHidden(bool hidden);
    const std::optional<CGColor>& backgroundColor() const { return m_values.backgroundColor; }
    void setBackgroundColor(const std::optional<CGColor>& color);
    /// Opaque black unless it is set.
    const std::optional<CGColor>& borderColor() const { return m_values.borderColor; }
    void setBorderColor(const std::optional<CGColor>& color);
    /// The border lies within the bounds, over the sublayers.
    double borderWidth() const { return m_values.borderWidth; }
    void setBorderWidth(double width);
    /// At most half the shorter side is drawn. The contents are rounded with `masksToBounds` only.
    double cornerRadius() const { return m_values.cornerRadius; }
    void setCornerRadius(double radius);
    /// A picture that fills the bounds.
    const CGImageRef& contents() const { return m_values.contents.image; }
    void setContents(const CGImageRef& contents);
    /// Of no effect, as contents fill the bounds. Its key has no default action.
    double contentsScale() const { return m_values.contentsScale; }
    void setContentsScale(double scale);

    /// What the bounds cover in the superlayer's coordinates. Setting it sets the size of the
    /// bounds and the position, and these are what actions are run for. With a transform that
    /// turns, the frame is around the same middle but not the same.
    NSRect frame() const { return m_values.frame(); }
    void setFrame(const NSRect& frame);

    /// Whether contents and sublayers are cut off at the bounds, with their rounded corners. Not
    /// animated.
    bool masksToBounds() const { return m_masksToBounds; }
    void setMasksToBounds(bool masks);

    const Actions& actions() const { return m_actions; }
    void setActions(Actions actions) { m_actions = std::move(actions); }
    /// What is done when the key changes: what the layer's own table says, else the default. Null
    /// for nothing.
    virtual std::shared_ptr<CAAction> actionForKey(std::string_view key) const;
    /// A `CABasicAnimation` of the properties that are animated by default, null for other keys.
    static std::shared_ptr<CAAction> defaultActionForKey(std::string_view key);

    /// Adds a copy, in place of any animation of the same key. It begins when the outermost
    /// transaction is committed, and is removed when it is over. Any number can have an empty key.
    void addAnimation(const CAAnimation& animation, const std::string& key);
    void removeAnimationForKey(std::string_view key);
    void removeAllAnimations();
    /// In the order in which they were added, without empty ones.
    std::vector<std::string> animationKeys() const;
    /// Null for none.
    std::shared_ptr<const CAAnimation> animationForKey(std::string_view key) const;

    /// A copy of the layer, without sublayers, that has the values on the screen now. Never null.
    std::shared_ptr<CALayer> presentationLayer() const;

    /// Has the view that shows the tree draw it anew.
    void setNeedsDisplay();

    // Sublayers are laid out when the transaction is committed, where the layer's size has changed,
    // or which sublayers it has, or their names, sizes or constraints. Not where just their places
    // have.

    void setNeedsLayout();
    /// Lays out now what needs it, from the farthest superlayer on that needs layout without a gap.
    void layoutIfNeeded();
    /// Has the layout manager do it.
    virtual void layoutSublayers();
    const std::shared_ptr<CALayoutManager>& layoutManager() const { return m_layoutManager; }
    void setLayoutManager(std::shared_ptr<CALayoutManager> manager);

    /// In the order in which they were added. They count where the superlayer has a
    /// `CAConstraintLayoutManager`.
    const std::vector<CAConstraint>& constraints() const { return m_constraints; }
    void setConstraints(std::vector<CAConstraint> constraints);
    void addConstraint(CAConstraint constraint);

private:
    friend class CATransaction;
    friend class NSView;

    struct Running {
        std::string key;
        std::shared_ptr<CAAnimation> animation;
        std::optional<double> beginTime;
        std::shared_ptr<void> completion;

        bool isOver(double time) const {
            return beginTime && time >= *beginTime + animation->duration();
        }
    };

    bool isWithin(const CALayer& tree) const;
    void change(std::string_view key, const CAValue& value);
    std::shared_ptr<CAAction> actionToRun(std::string_view key) const;
    void runAction(std::string_view key);
    void superlayerNeedsLayout();
    CALayerValues presentationValues() const;
    void draw(NSGraphicsContext& context) const;

    // For the transaction.
    void beginAnimations(double time);
    void endAnimations(double time);

    // For the view that shows the tree.
    NSView* hostView() const { return m_hostView; }
    void setHostView(NSView* view) { m_hostView = view; }
    void fillHostView();

    std::string m_name;
    CALayer* m_superlayer = nullptr;
    std::vector<std::shared_ptr<CALayer>> m_sublayers;
    NSView* m_hostView = nullptr;
    CALayerValues m_values;
    bool m_masksToBounds = false;
    Actions m_actions;
    std::vector<Running> m_animations;
    std::shared_ptr<CALayoutManager> m_layoutManager;
    std::vector<CAConstraint> m_constraints;
    bool m_isLayingOut = false;
    std::uint64_t m_madeBeforeCommit;
    // The places in the transaction's lists; 0 where the layer is not in them.
    std::uint64_t m_layoutTicket = 0;
    std::uint64_t m_animationTicket = 0;
};

} // namespace kw

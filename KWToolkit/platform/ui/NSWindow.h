// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/WeakReference.h>
#include <KWToolkit/platform/graphics/NSColor.h>
#include <KWToolkit/platform/graphics/NSGeometry.h>
#include <KWToolkit/platform/ui/NSResponder.h>

#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace kw {

class NativeWindow;
class NSTextView;
class NSView;
class NSViewAnimation;
class ViewHost;

/// What a window has besides its content; added up. None of them is a window without a frame.
enum NSWindowStyleMask : unsigned {
    NSWindowStyleMaskBorderless = 0,
    NSWindowStyleMaskTitled = 1,
    NSWindowStyleMaskClosable = 2,
    NSWindowStyleMaskMiniaturizable = 4,
    NSWindowStyleMaskResizable = 8,
};

/// Kept, and without effect: every window is drawn in a buffer.
enum class NSBackingStoreType { retained = 0, nonretained = 1, buffered = 2 };

/// How a window can be seen through: all of it, its content alone, or not at all.
enum class NSWindowOpacity { window, content, none };

/// Posted before a window is closed.
inline constexpr const char* NSWindowWillCloseNotification = "NSWindowWillCloseNotification";

/// A window of the desktop, which shows a tree of views. Main thread.
///
///     auto window = std::make_shared<kw::NSWindow>(kw::NSMakeRect(200, 200, 400, 300),
///         kw::NSWindowStyleMaskTitled | kw::NSWindowStyleMaskClosable,
///         kw::NSBackingStoreType::buffered, false);
///     window->setContentView(recorder);
///     window->makeKeyAndOrderFront();
///
/// It belongs to whoever made it: closing takes it from the screen, destroying it does too. Frames
/// are in points, in screen coordinates: the origin is the primary screen's lower left corner, and
/// y grows upward. The views in a window of the host's own have an `NSWindow` as well, of which
/// they are a part: it can be moved, shown, hidden and faded, but its style, title, content and
/// background are the host's.
class KW_EXPORT NSWindow : public NSResponder {
public:
    /// Is not shown yet. A `styleMask` without `NSWindowStyleMaskResizable` only keeps the user
    /// from resizing it. With or without `defer` the desktop makes the window when it is shown.
    NSWindow(NSRect contentRect, unsigned styleMask, NSBackingStoreType backing, bool defer);
    /// For whoever shows views in a window of its own; the host outlives this.
    NSWindow(ViewHost& host, std::unique_ptr<NativeWindow> native);
    /// In one that is never seen.
    explicit NSWindow(ViewHost& host);
    ~NSWindow() override;

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    unsigned styleMask() const { return m_styleMask; }
    NSBackingStoreType backingType() const { return m_backing; }

    const std::string& title() const { return m_title; }
    /// Empty, as it is from the start, shows the desktop's default title.
    void setTitle(std::string title);
    /// Fills the window. Null is an empty view; null in a window of the host's own.
    const std::shared_ptr<NSView>& contentView() const { return m_contentView; }
    void setContentView(std::shared_ptr<NSView> view);

    /// With its decoration. While it is on its way to another that is already the new one.
    NSRect frame() const;
    /// Neither the limits nor the screen confine it. One that is not finite is ignored. With
    /// `display` the content is drawn anew; with `animate` a window on the screen goes there
    /// within `animationResizeTime`.
    void setFrame(NSRect frame, bool display, bool animate = false);
    /// Seconds: 0.2 for each 150 points that an edge or a side changes at most.
    double animationResizeTime(NSRect frame) const;
    /// What of a frame is content, and the frame around a content. How large the decoration is, the
    /// desktop tells when it shows the window: before that it may count as none.
    NSRect contentRectForFrameRect(NSRect frame) const;
    NSRect frameRectForContentRect(NSRect content) const;
    /// The user cannot make the frame smaller or larger than that.
    NSSize minSize() const { return m_minSize; }
    void setMinSize(NSSize size);
    NSSize maxSize() const { return m_maxSize; }
    void setMaxSize(NSSize size);
    /// In the middle of the screen, a little above where there is room.
    void center();

    /// Empty, as it is from the start, is the desktop's own.
    const std::optional<NSColor>& backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(std::optional<NSColor> color);
    bool isOpaque() const { return m_isOpaque; }
    /// One that is not shows what is behind it where its background and its views do.
    void setOpaque(bool opaque);
    /// From 0 to 1; what is beyond counts as the nearer one.
    double alphaValue() const { return m_alphaValue; }
    void setAlphaValue(double alpha);
    /// What `alphaValue` and fades change.
    NSWindowOpacity opacity() const;
    /// Whether the mouse moves it wherever no view takes the click.
    bool isMovableByWindowBackground() const { return m_isMovableByWindowBackground; }
    void setMovableByWindowBackground(bool movable) { m_isMovableByWindowBackground = movable; }

    /// Shows it in front of the application's others.
    void orderFront();
    /// And gives it the keyboard, if it can have that.
    void makeKeyAndOrderFront();
    void orderOut();
    bool isVisible() const;
    /// As if the user had closed it: the delegate's `windowShouldClose:`, which takes the window
    /// (`NSWindow&`) and answers a `bool`, may refuse. Returns whether it is closed.
    bool performClose();
    /// Takes a window that is on the screen from it, for good.
    void close();
    /// Not owned.
    std::shared_ptr<NSObject> delegate() const { return m_delegate.lock(); }
    void setDelegate(WeakReference delegate) { m_delegate = std::move(delegate); }

    /// Whether it can have the keyboard. By default what has no title and cannot be resized cannot.
    virtual bool canBecomeKeyWindow() const;
    /// Whether the keyboard is with this window.
    bool isKeyWindow() const;
    /// The view with the keyboard, or that gets it together with the window; else the window.
    NSResponder& firstResponder();
    /// Null takes the keyboard from all of them. Returns whether it is so now.
    bool makeFirstResponder(NSView* view);

    /// The editor for the text of any control in the window; its delegate is the control that is
    /// being edited. Null where there is none yet and none is to be made.
    std::shared_ptr<NSTextView> fieldEditor(bool createFlag, const NSObject* object);

    void mouseDown(const NSEvent& event) override;
    void keyDown(const NSEvent& event) override;
    void keyUp(const NSEvent& event) override;
    void flagsChanged(const NSEvent& event) override;
    /// For whoever shows the views: whether a key has come to the end of the responder chain since
    /// this was asked last.
    bool takeIsKeyUntaken() { return std::exchange(m_isKeyUntaken, false); }

private:
    friend class NSApplication;
    friend class NSViewAnimation;
    class FrameAnimation;

    ViewHost* host() const;
    void setModal(bool modal);
    /// A factor to the alpha value, as it is shown: by the fade that was begun last.
    void beginFade(const NSViewAnimation& animation) { m_fading = &animation; }
    void setFade(double fade, const NSViewAnimation& animation);
    void showOpacity();

    unsigned m_styleMask = NSWindowStyleMaskBorderless;
    NSBackingStoreType m_backing = NSBackingStoreType::buffered;
    std::string m_title;
    NSSize m_minSize;
    NSSize m_maxSize {std::numeric_limits<float>::max(), std::numeric_limits<float>::max()};
    std::optional<NSColor> m_backgroundColor;
    bool m_isOpaque = true;
    bool m_isMovableByWindowBackground = false;
    double m_alphaValue = 1;
    double m_fade = 1;
    const NSViewAnimation* m_fading = nullptr; // compared, never used
    bool m_isKeyUntaken = false;
    WeakReference m_delegate;
    ViewHost* m_host = nullptr;
    std::shared_ptr<NSTextView> m_fieldEditor;
    std::shared_ptr<NSView> m_contentView;
    std::shared_ptr<FrameAnimation> m_movement;
    std::unique_ptr<NativeWindow> m_native; // goes first
};

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/NSColor.h>
#include <KWToolkit/platform/graphics/NSGeometry.h>

#include <memory>
#include <optional>
#include <string>

namespace kw {

class NSView;
class NSWindow;
enum class NSWindowOpacity;

/// A window on the desktop, which its `NSWindow` drives. Frames are in screen coordinates: the
/// origin is the primary screen's lower left corner, and y grows upward. Main thread.
///
/// It tells the `NSWindow` with `performClose` that it is to close, and asks it with
/// `canBecomeKeyWindow` whenever it is shown.
class KW_EXPORT NativeWindow {
public:
    virtual ~NativeWindow();

    /// How much larger than its content the window is, on each side.
    virtual NSEdgeInsets frameMargins() const = 0;
    /// With its decoration; where it is to be, while it is not shown.
    virtual NSRect frame() const = 0;
    /// Within the limits or not. Rounded to what the screen can show, each edge by itself.
    virtual void setFrame(NSRect frame) = 0;
    /// How small and how large the user can make the frame.
    virtual void setLimits(NSSize smallest, NSSize largest) = 0;
    /// The part of the window's screen that no panel takes.
    virtual NSRect visibleScreenFrame() const = 0;

    /// Empty is the desktop's own choice.
    virtual void setTitle(const std::string& title) = 0;
    /// Takes away what was shown, and keeps the view as large as the content.
    virtual void setContentView(std::shared_ptr<NSView> view) = 0;
    /// Without a color it is the desktop's own.
    virtual void setBackground(const std::optional<NSColor>& color, bool isOpaque) = 0;

    /// Shows it in front of the application's windows, with the keyboard if `isKey`.
    virtual void orderFront(bool isKey) = 0;
    virtual void orderOut() = 0;
    virtual bool isVisible() const = 0; ///< also while it is an icon
    /// Keeps the user from the application's other windows until it is set back.
    virtual void setModal(bool isModal) = 0;
    /// Moves it with the mouse, the button of which was pressed just now.
    virtual void beginMove() = 0;

    /// From 0 to 1; of all of the window, decoration included, where the platform can.
    virtual void setOpacity(double opacity) = 0;
    virtual NSWindowOpacity opacity() const = 0;
};

/// Makes the desktop's windows. Main thread.
class KW_EXPORT WindowService {
public:
    virtual ~WindowService();

    /// A window that is not shown yet, never null. It is destroyed before its `NSWindow`, which is
    /// just being made: but for its style mask there is nothing to ask it for.
    virtual std::unique_ptr<NativeWindow> makeWindow(NSWindow& window, NSRect contentRect) = 0;
};

/// Where there are no windows: they keep their frames, are never seen, and say so to the console
/// when they are to be shown.
class KW_EXPORT UnavailableWindowService final : public WindowService {
public:
    std::unique_ptr<NativeWindow> makeWindow(NSWindow& window, NSRect contentRect) override;
};

} // namespace kw

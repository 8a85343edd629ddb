// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/headless/HeadlessViewHost.h>
#include <KWToolkit/platform/services/WindowService.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kw {

class HeadlessWindowService;

/// A window that nobody sees, and what it was told.
class KW_EXPORT HeadlessWindow final : public NativeWindow {
public:
    HeadlessWindow(HeadlessWindowService& service, NSWindow& window, NSRect contentRect);
    ~HeadlessWindow() override;

    NSWindow& window() const { return m_window; }
    /// Shows the content view, and knows whether the window has the keyboard.
    HeadlessViewHost& host() { return m_host; }

    NSEdgeInsets frameMargins() const override;
    NSRect frame() const override { return frames.back(); }
    void setFrame(NSRect frame) override;
    void setLimits(NSSize smallest, NSSize largest) override { limits = {smallest, largest}; }
    NSRect visibleScreenFrame() const override;
    void setTitle(const std::string& text) override { title = text; }
    void setContentView(std::shared_ptr<NSView> view) override;
    void setBackground(const std::optional<NSColor>&, bool) override { }
    void orderFront(bool isKey) override;
    void orderOut() override;
    bool isVisible() const override { return isShown; }
    void setModal(bool modal) override { isModal = modal; }
    void beginMove() override { ++moves; }
    void setOpacity(double opacity) override { opacities.push_back(opacity); }
    NSWindowOpacity opacity() const override;

    std::vector<NSRect> frames; ///< the present one last
    std::pair<NSSize, NSSize> limits;
    std::string title;
    bool isShown = false;
    bool isModal = false;
    int moves = 0; ///< how often the mouse began to move it
    std::vector<double> opacities;

private:
    void fitContent();

    HeadlessWindowService& m_service;
    NSWindow& m_window;
    HeadlessViewHost m_host;
    std::shared_ptr<NSView> m_view;
};

/// Makes windows that nobody sees. It outlives them.
class KW_EXPORT HeadlessWindowService final : public WindowService {
public:
    std::unique_ptr<NativeWindow> makeWindow(NSWindow& window, NSRect contentRect) override;

    NSEdgeInsets margins {22, 0, 0, 0}; ///< of a window with a title
    NSRect screen = NSMakeRect(0, 0, 1280, 800);
    std::vector<HeadlessWindow*> windows; ///< those that there are, in the order they were made
};

} // namespace kw

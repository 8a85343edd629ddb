// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/ui/NSView.h>
#include <KWToolkit/platform/ui/NSWindow.h>

#include <optional>
#include <utility>
#include <vector>

namespace kw {

/// Shows a tree of views to nobody, and keeps what it is told.
///
///     kw::HeadlessViewHost host;
///     view.setHost(&host);
class HeadlessViewHost final : public ViewHost {
public:
    HeadlessViewHost()
        : m_own(std::in_place, *this)
        , m_window(*m_own) { }
    /// In a window that outlives it.
    explicit HeadlessViewHost(NSWindow& window)
        : m_window(window) { }

    bool isKeyWindow = true;
    std::vector<NSRect> dirty; ///< what was to be drawn anew
    std::vector<NSView*> gone;
    int changes = 0;

    void setNeedsDisplayInRect(NSRect rect) override { dirty.push_back(rect); }
    void viewWillGo(NSView& view) override {
        gone.push_back(&view);
        if (m_firstResponder && m_firstResponder->isDescendantOf(view)) {
            NSView* const former = std::exchange(m_firstResponder, nullptr);
            former->resignFirstResponder(); // asked, but it goes in any case
        }
    }
    void viewsChanged() override { ++changes; }
    bool isKey() const override { return isKeyWindow; }
    NSWindow& window() override { return m_window; }
    NSView* firstResponder() const override { return m_firstResponder; }
    bool makeFirstResponder(NSView* view) override {
        if (view == m_firstResponder)
            return true;
        const auto alive = view ? view->weak_from_this().lock() : nullptr;
        NSView* const former = std::exchange(m_firstResponder, nullptr);
        if (former && !former->resignFirstResponder()) {
            m_firstResponder = former;
            return false;
        }
        // Whoever was told may have given it to another, or taken the view away.
        if (m_firstResponder || !view)
            return m_firstResponder == view;
        if (view->host() != this || !view->acceptsFirstResponder())
            return false;
        m_firstResponder = view;
        return view->becomeFirstResponder();
    }

private:
    NSView* m_firstResponder = nullptr;
    std::optional<NSWindow> m_own;
    NSWindow& m_window;
};

} // namespace kw

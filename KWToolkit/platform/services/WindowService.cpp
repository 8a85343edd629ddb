// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/WindowService.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/ui/NSWindow.h>

namespace kw {

namespace {

class UnavailableWindow final : public NativeWindow {
public:
    explicit UnavailableWindow(NSRect frame)
        : m_frame(frame) { }
    NSEdgeInsets frameMargins() const override { return {}; }
    NSRect frame() const override { return m_frame; }
    void setFrame(NSRect frame) override { m_frame = frame; }
    void setLimits(NSSize, NSSize) override { }
    NSRect visibleScreenFrame() const override { return {}; }
    void setTitle(const std::string&) override { }
    void setContentView(std::shared_ptr<NSView>) override { }
    void setBackground(const std::optional<NSColor>&, bool) override { }
    void orderFront(bool) override { Platform::console().writeLine("No screen for a window"); }
    void orderOut() override { }
    bool isVisible() const override { return false; }
    void setModal(bool) override { }
    void beginMove() override { }
    void setOpacity(double) override { }
    NSWindowOpacity opacity() const override { return NSWindowOpacity::none; }

private:
    NSRect m_frame;
};

} // namespace

NativeWindow::~NativeWindow() = default;
WindowService::~WindowService() = default;

std::unique_ptr<NativeWindow> UnavailableWindowService::makeWindow(NSWindow&, NSRect contentRect) {
    return std::make_unique<UnavailableWindow>(contentRect);
}

} // namespace kw

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/headless/HeadlessWindowService.h>

#include <algorithm>

namespace kw {

HeadlessWindow::HeadlessWindow(HeadlessWindowService& service, NSWindow& window, NSRect contentRect)
    : m_service(service)
    , m_window(window)
    , m_host(window) {
    m_service.windows.push_back(this);
    m_host.isKeyWindow = false;
    const NSEdgeInsets margins = frameMargins();
    frames.push_back(
        NSMakeRect(contentRect.origin.x - margins.left, contentRect.origin.y - margins.bottom,
            contentRect.size.width + margins.left + margins.right,
            contentRect.size.height + margins.top + margins.bottom));
}

HeadlessWindow::~HeadlessWindow() {
    if (m_view)
        m_view->setHost(nullptr);
    std::erase(m_service.windows, this);
}

NSEdgeInsets HeadlessWindow::frameMargins() const {
    return m_window.styleMask() & NSWindowStyleMaskTitled ? m_service.margins : NSEdgeInsets {};
}

void HeadlessWindow::setFrame(NSRect frame) {
    frames.push_back(frame);
    fitContent();
}

NSRect HeadlessWindow::visibleScreenFrame() const { return m_service.screen; }

void HeadlessWindow::setContentView(std::shared_ptr<NSView> view) {
    if (m_view)
        m_view->setHost(nullptr);
    m_view = std::move(view);
    m_view->setHost(&m_host);
    fitContent();
}

void HeadlessWindow::fitContent() {
    const NSEdgeInsets margins = frameMargins();
    m_view->setFrame(NSMakeRect(0, 0, frame().size.width - margins.left - margins.right,
        frame().size.height - margins.top - margins.bottom));
}

void HeadlessWindow::orderFront(bool isKey) {
    isShown = true;
    m_host.isKeyWindow = m_host.isKeyWindow || isKey;
}

void HeadlessWindow::orderOut() {
    isShown = false;
    m_host.isKeyWindow = false;
}

NSWindowOpacity HeadlessWindow::opacity() const { return NSWindowOpacity::window; }

std::unique_ptr<NativeWindow> HeadlessWindowService::makeWindow(
    NSWindow& window, NSRect contentRect) {
    return std::make_unique<HeadlessWindow>(*this, window, contentRect);
}

} // namespace kw

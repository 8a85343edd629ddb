// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/NSWindow.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/foundation/NSNotificationCenter.h>
#include <KWToolkit/platform/ui/NSAnimation.h>
#include <KWToolkit/platform/ui/NSTextView.h>

#include <algorithm>
#include <cmath>

namespace kw {

namespace {

bool isFinite(const NSRect& rect) {
    return std::isfinite(rect.origin.x) && std::isfinite(rect.origin.y)
        && std::isfinite(rect.size.width) && std::isfinite(rect.size.height);
}

} // namespace

/// Leads a window's frame to another one.
class NSWindow::FrameAnimation final : public NSAnimation {
public:
    FrameAnimation(NSWindow& window, NSRect from, NSRect to)
        : NSAnimation(window.animationResizeTime(to), NSAnimationCurve::easeInOut)
        , m_window(window)
        , m_from(from)
        , m_to(to) { }

    const NSRect& end() const { return m_to; }

protected:
    void setCurrentProgress(double progress) override {
        NSAnimation::setCurrentProgress(progress);
        const auto window = std::static_pointer_cast<NSWindow>(m_window.lock());
        if (!window)
            return;
        const double done = currentValue();
        const auto between = [done](double from, double to) { return from + (to - from) * done; };
        window->m_native->setFrame(progress >= 1
                ? m_to
                : NSMakeRect(between(m_from.origin.x, m_to.origin.x),
                      between(m_from.origin.y, m_to.origin.y),
                      between(m_from.size.width, m_to.size.width),
                      between(m_from.size.height, m_to.size.height)));
    }

private:
    const WeakReference m_window;
    const NSRect m_from;
    const NSRect m_to;
};

NSWindow::NSWindow(
    NSRect contentRect, unsigned styleMask, NSBackingStoreType backing, bool /*defer*/)
    : m_styleMask(styleMask)
    , m_backing(backing)
    , m_native(Platform::windows().makeWindow(*this, contentRect)) {
    setContentView(nullptr);
}

NSWindow::NSWindow(ViewHost& host, std::unique_ptr<NativeWindow> native)
    : m_host(&host)
    , m_native(std::move(native)) { }

NSWindow::NSWindow(ViewHost& host)
    : m_host(&host)
    , m_native(UnavailableWindowService().makeWindow(*this, {})) { }

NSWindow::~NSWindow() = default;

Class& NSWindow::classObject() {
    static auto& object = *new Class("NSWindow", NSResponder::classObject(),
        {
            method("orderFront", &NSWindow::orderFront),
            method("makeKeyAndOrderFront", &NSWindow::makeKeyAndOrderFront),
            method("orderOut", &NSWindow::orderOut),
            method("performClose", &NSWindow::performClose),
            method("close", &NSWindow::close),
        });
    return object;
}

void NSWindow::setTitle(std::string title) {
    m_title = std::move(title);
    m_native->setTitle(m_title);
}

void NSWindow::setContentView(std::shared_ptr<NSView> view) {
    if (m_host)
        return;
    m_contentView = view ? std::move(view) : std::make_shared<NSView>();
    m_native->setContentView(m_contentView);
}

NSRect NSWindow::frame() const {
    return m_movement && m_movement->isAnimating() ? m_movement->end() : m_native->frame();
}

void NSWindow::setFrame(NSRect frame, bool display, bool animate) {
    if (!isFinite(frame))
        return;
    if (const auto former = std::exchange(m_movement, nullptr))
        former->stopAnimation();
    if (animate && isVisible()) {
        m_movement = std::make_shared<FrameAnimation>(*this, m_native->frame(), frame);
        m_movement->startAnimation();
    } else {
        m_native->setFrame(frame);
    }
    if (display && m_contentView)
        m_contentView->setNeedsDisplay();
}

double NSWindow::animationResizeTime(NSRect frame) const {
    constexpr double secondsPerPoint = 0.2 / 150;
    const NSRect now = m_native->frame();
    return secondsPerPoint
        * std::max({std::abs(NSMinX(frame) - NSMinX(now)), std::abs(NSMinY(frame) - NSMinY(now)),
            std::abs(frame.size.width - now.size.width),
            std::abs(frame.size.height - now.size.height)});
}

NSRect NSWindow::contentRectForFrameRect(NSRect frame) const {
    const NSEdgeInsets margins = m_native->frameMargins();
    return NSMakeRect(frame.origin.x + margins.left, frame.origin.y + margins.bottom,
        frame.size.width - margins.left - margins.right,
        frame.size.height - margins.top - margins.bottom);
}

NSRect NSWindow::frameRectForContentRect(NSRect content) const {
    const NSEdgeInsets margins = m_native->frameMargins();
    return NSMakeRect(content.origin.x - margins.left, content.origin.y - margins.bottom,
        content.size.width + margins.left + margins.right,
        content.size.height + margins.top + margins.bottom);
}

void NSWindow::setMinSize(NSSize size) {
    m_minSize = size;
    m_native->setLimits(m_minSize, m_maxSize);
}

void NSWindow::setMaxSize(NSSize size) {
    m_maxSize = size;
    m_native->setLimits(m_minSize, m_maxSize);
}

void NSWindow::center() {
    const NSRect screen = m_native->visibleScreenFrame();
    const NSRect now = frame();
    const double room = screen.size.height - now.size.height;
    setFrame(NSMakeRect(NSMidX(screen) - now.size.width / 2, NSMinY(screen) + room * 2 / 3,
                 now.size.width, now.size.height),
        false);
}

void NSWindow::setBackgroundColor(std::optional<NSColor> color) {
    m_backgroundColor = std::move(color);
    m_native->setBackground(m_backgroundColor, m_isOpaque);
}

void NSWindow::setOpaque(bool opaque) {
    m_isOpaque = opaque;
    m_native->setBackground(m_backgroundColor, m_isOpaque);
}

void NSWindow::setAlphaValue(double alpha) {
    m_alphaValue = alpha > 0 ? std::min(alpha, 1.0) : 0;
    showOpacity();
}

NSWindowOpacity NSWindow::opacity() const { return m_native->opacity(); }

void NSWindow::setFade(double fade, const NSViewAnimation& animation) {
    if (&animation != m_fading)
        return;
    m_fade = fade;
    showOpacity();
}

void NSWindow::showOpacity() { m_native->setOpacity(m_alphaValue * m_fade); }

void NSWindow::orderFront() { m_native->orderFront(false); }
void NSWindow::makeKeyAndOrderFront() { m_native->orderFront(canBecomeKeyWindow()); }
void NSWindow::orderOut() { m_native->orderOut(); }
bool NSWindow::isVisible() const { return m_native->isVisible(); }

bool NSWindow::performClose() {
    const auto alive = weak_from_this().lock();
    static const SEL shouldClose("windowShouldClose:");
    const auto delegate = m_delegate.lock();
    if (delegate && delegate->respondsToSelector(shouldClose)
        && !send<bool>(*delegate, shouldClose, *this))
        return false;
    close();
    return !isVisible();
}

void NSWindow::close() {
    if (!isVisible())
        return;
    // An observer may destroy it.
    const WeakReference self(*this);
    NSNotificationCenter::defaultCenter().postNotificationName(NSWindowWillCloseNotification, this);
    if (const auto window = self.lock())
        m_native->orderOut();
}

bool NSWindow::canBecomeKeyWindow() const {
    return m_host || (m_styleMask & (NSWindowStyleMaskTitled | NSWindowStyleMaskResizable));
}

ViewHost* NSWindow::host() const { return m_host ? m_host : m_contentView->host(); }

bool NSWindow::isKeyWindow() const {
    const ViewHost* const shownBy = host();
    return shownBy && shownBy->isKey();
}

NSResponder& NSWindow::firstResponder() {
    const ViewHost* const shownBy = host();
    NSView* const view = shownBy ? shownBy->firstResponder() : nullptr;
    return view ? static_cast<NSResponder&>(*view) : *this;
}

bool NSWindow::makeFirstResponder(NSView* view) {
    ViewHost* const shownBy = host();
    return shownBy ? shownBy->makeFirstResponder(view) : !view;
}

std::shared_ptr<NSTextView> NSWindow::fieldEditor(bool createFlag, const NSObject*) {
    if (!m_fieldEditor && createFlag)
        m_fieldEditor = std::make_shared<NSTextView>();
    return m_fieldEditor;
}

void NSWindow::mouseDown(const NSEvent& event) {
    if (m_isMovableByWindowBackground)
        m_native->beginMove();
    else
        NSResponder::mouseDown(event);
}

void NSWindow::keyDown(const NSEvent&) { m_isKeyUntaken = true; }
void NSWindow::keyUp(const NSEvent&) { m_isKeyUntaken = true; }
void NSWindow::flagsChanged(const NSEvent&) { m_isKeyUntaken = true; }

void NSWindow::setModal(bool modal) { m_native->setModal(modal); }

} // namespace kw

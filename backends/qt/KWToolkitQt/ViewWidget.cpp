// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/ViewWidget.h>

#include <KWToolkit/platform/Guarded.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/ui/CATransaction.h>
#include <KWToolkit/platform/ui/NSWindow.h>
#include <KWToolkitQt/KeyTranslation.h>
#include <KWToolkitQt/KeyboardGrabFilter.h>
#include <KWToolkitQt/QtGraphicsContext.h>
#include <KWToolkitQt/ViewAccessibility.h>

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleHints>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace kw::qt {

namespace {

bool isWithin(const NSView* view, const NSView& tree) { return view && view->isDescendantOf(tree); }

void appendFocusable(NSView& tree, std::vector<NSView*>& views) {
    if (tree.isHidden())
        return;
    if (tree.acceptsFirstResponder())
        views.push_back(&tree);
    for (const auto& view : tree.subviews())
        appendFocusable(*view, views);
}

/// Both the painter's origin and that of `dirty` are the view's upper left corner.
void paint(QPainter& painter, NSView& view, const QRectF& dirty) {
    const NSSize size = view.bounds().size;
    const QRectF area(0, 0, size.width, size.height);
    if (view.isHidden() || !area.intersects(dirty))
        return;
    painter.save();
    painter.setClipRect(area, Qt::IntersectClip);
    {
        QtGraphicsContext context(painter, size, view.isFlipped());
        // Never a part of them: there are views that center on what they are given.
        callGuarded([&] { view.drawRect(context, view.bounds()); });
    }
    if (view.layer()) {
        QtGraphicsContext context(painter, size, /*isFlipped*/ false);
        callGuarded([&] { view.drawLayer(context); });
    }
    for (const auto& subview : view.subviews()) {
        const NSRect frame = subview->frame();
        const QPointF corner(
            NSMinX(frame), view.isFlipped() ? NSMinY(frame) : size.height - NSMaxY(frame));
        painter.translate(corner);
        paint(painter, *subview, dirty.translated(-corner));
        painter.translate(-corner);
    }
    painter.restore();
}

/// As the end of the responder chain it notices what no view took.
class HostedWindow final : public NSWindow {
public:
    using NSWindow::NSWindow;
    void keyDown(const NSEvent&) override { m_isReached = true; }
    void keyUp(const NSEvent&) override { m_isReached = true; }
    void flagsChanged(const NSEvent&) override { m_isReached = true; }
    bool takeIsReached() { return std::exchange(m_isReached, false); }

private:
    bool m_isReached = false;
};

} // namespace

class ViewWidget::Private final : public ViewHost {
public:
    Private(ViewWidget& host, std::shared_ptr<NSView> view)
        : root(view ? std::move(view) : std::make_shared<NSView>())
        , sizeHint(root->frame().size)
        , m_widget(host) {
        root->setHost(this);
    }
    ~Private() override {
        viewWillGo(*root);
        root->setHost(nullptr);
    }

    void setNeedsDisplayInRect(NSRect rect) override;
    NSView* firstResponder() const override { return m_firstResponder; }
    bool makeFirstResponder(NSView* view) override;
    void viewWillGo(NSView& view) override;
    void viewsChanged() override { m_accessibility.update(); }
    bool isKey() const override { return m_widget.isActiveWindow(); }
    NSWindow& window() override { return m_window; }

    void focusIn(Qt::FocusReason reason);
    void focusOut();
    bool moveFocus(bool forward);
    bool offer(const QKeyEvent& event);
    bool takes(const QKeyEvent& event);
    void key(QKeyEvent& event);
    void press(QMouseEvent& event);
    void drag(QMouseEvent& event);
    void release(QMouseEvent& event);

    const std::shared_ptr<NSView> root;
    const NSSize sizeHint;

private:
    using Message = void (NSResponder::*)(const NSEvent&);

    /// A key press that was offered to the views as a possible shortcut.
    struct Offer {
        int key;
        quint32 scanCode;
        quint64 timestamp;
        bool isTaken;
    };

    void send(NSView& view, Message message, const NSEvent& event) const;
    void becomeFirstResponder();
    bool resignFirstResponder();
    std::vector<NSView*> focusable() const;
    NSEvent mouseEvent(NSEvent::Type type, const QMouseEvent& event) const;
    void countClick(const QMouseEvent& event);

    ViewWidget& m_widget;
    HostedWindow m_window {*this};
    ViewAccessibility m_accessibility {m_widget, *root};
    NSView* m_firstResponder = nullptr;
    bool m_isFirstResponderTold = false; // that it has the focus
    std::optional<Offer> m_offer;
    NSView* m_pressed = nullptr;
    int m_clickCount = 0;
    quint64 m_lastPressTime = 0;
    QPointF m_lastPressPlace;
};

void ViewWidget::Private::setNeedsDisplayInRect(NSRect rect) {
    const double top = root->isFlipped() ? NSMinY(rect) : root->bounds().size.height - NSMaxY(rect);
    m_widget.update(QRectF(NSMinX(rect), top, rect.size.width, rect.size.height).toAlignedRect());
    m_accessibility.update();
}

bool ViewWidget::Private::makeFirstResponder(NSView* view) {
    if (!view) {
        const bool leaves = resignFirstResponder();
        if (leaves)
            m_firstResponder = nullptr;
        return leaves;
    }
    if (view != m_firstResponder) {
        if (!view->acceptsFirstResponder() || !isWithin(view, *root) || !resignFirstResponder())
            return false;
        m_firstResponder = view;
    }
    if (m_widget.hasFocus())
        becomeFirstResponder();
    else
        m_widget.setFocus(Qt::OtherFocusReason);
    return isWithin(m_firstResponder, *view) && m_isFirstResponderTold;
}

void ViewWidget::Private::viewWillGo(NSView& view) {
    if (isWithin(m_pressed, view))
        m_pressed = nullptr;
    if (isWithin(m_firstResponder, view)) {
        resignFirstResponder();
        m_firstResponder = nullptr;
        m_isFirstResponderTold = false;
    }
    m_accessibility.viewWillGo(view);
}

void ViewWidget::Private::becomeFirstResponder() {
    m_accessibility.update();
    if (!m_firstResponder || std::exchange(m_isFirstResponderTold, true))
        return;
    callGuarded([this] {
        if (!m_firstResponder->becomeFirstResponder())
            m_isFirstResponderTold = false;
    });
}

bool ViewWidget::Private::resignFirstResponder() {
    if (!std::exchange(m_isFirstResponderTold, false))
        return true;
    bool leaves = true;
    callGuarded([&] { leaves = m_firstResponder->resignFirstResponder(); });
    m_isFirstResponderTold = !leaves;
    return leaves;
}

void ViewWidget::Private::focusIn(Qt::FocusReason reason) {
    const auto views = focusable();
    if (!views.empty()) {
        if (reason == Qt::BacktabFocusReason)
            m_firstResponder = views.back();
        else if (reason == Qt::TabFocusReason || !m_firstResponder)
            m_firstResponder = views.front();
    }
    becomeFirstResponder();
}

void ViewWidget::Private::focusOut() {
    resignFirstResponder();
    m_isFirstResponderTold = false; // Qt's focus cannot be held back.
    m_accessibility.update();
    m_offer.reset();
}

bool ViewWidget::Private::moveFocus(bool forward) {
    const auto views = focusable();
    const auto current = std::ranges::find(views, m_firstResponder);
    if (current == views.end() || (forward ? current + 1 == views.end() : current == views.begin()))
        return false;
    makeFirstResponder(*(forward ? current + 1 : current - 1));
    return true;
}

std::vector<NSView*> ViewWidget::Private::focusable() const {
    std::vector<NSView*> views;
    appendFocusable(*root, views);
    return views;
}

bool ViewWidget::Private::offer(const QKeyEvent& event) {
    bool isTaken = false;
    callGuarded([&] { isTaken = root->performKeyEquivalent(keyEvent(event)); });
    m_offer = {event.key(), event.nativeScanCode(), event.timestamp(), isTaken};
    return isTaken;
}

bool ViewWidget::Private::takes(const QKeyEvent& event) {
    // Offered, so that Alt opens no menu bar under a view that wants all keys, but never taken.
    if (isModifierKey(event))
        return false;
    // A press comes without an offer where Qt did not look for shortcuts.
    const bool isOffered = m_offer && m_offer->key == event.key()
        && m_offer->scanCode == event.nativeScanCode() && m_offer->timestamp == event.timestamp();
    const bool isTaken = isOffered ? m_offer->isTaken : offer(event);
    m_offer.reset();
    return isTaken;
}

void ViewWidget::Private::key(QKeyEvent& event) {
    const bool isRelease = event.type() == QEvent::KeyRelease;
    if (!m_firstResponder || (isRelease && event.isAutoRepeat())) {
        event.ignore();
        return;
    }
    const NSEvent translated = keyEvent(event);
    const Message message = translated.type == NSEvent::Type::flagsChanged
        ? &NSResponder::flagsChanged
        : (isRelease ? &NSResponder::keyUp : &NSResponder::keyDown);
    send(*m_firstResponder, message, translated);
    event.setAccepted(!m_window.takeIsReached());
}

void ViewWidget::Private::press(QMouseEvent& event) {
    if (event.button() != Qt::LeftButton) {
        event.ignore();
        return;
    }
    countClick(event);
    const NSEvent translated = mouseEvent(NSEvent::Type::leftMouseDown, event);
    NSView* const view = root->hitTest(translated.locationInWindow);
    // X11 delivers the click that activates the window, too.
    if (!view || (!m_widget.isActiveWindow() && !view->acceptsFirstMouse(translated)))
        return;
    m_pressed = view;
    if (view->acceptsFirstResponder())
        makeFirstResponder(view);
    if (m_pressed)
        send(*m_pressed, &NSResponder::mouseDown, translated);
}

void ViewWidget::Private::drag(QMouseEvent& event) {
    if (m_pressed)
        send(*m_pressed, &NSResponder::mouseDragged,
            mouseEvent(NSEvent::Type::leftMouseDragged, event));
}

void ViewWidget::Private::release(QMouseEvent& event) {
    if (event.button() != Qt::LeftButton)
        event.ignore();
    else if (NSView* const view = std::exchange(m_pressed, nullptr))
        send(*view, &NSResponder::mouseUp, mouseEvent(NSEvent::Type::leftMouseUp, event));
}

void ViewWidget::Private::send(NSView& view, Message message, const NSEvent& event) const {
    // Kept for the call, in which it may leave its tree.
    const std::shared_ptr<NSObject> alive = view.weak_from_this().lock();
    callGuarded([&] { (view.*message)(event); });
}

NSEvent ViewWidget::Private::mouseEvent(NSEvent::Type type, const QMouseEvent& event) const {
    // The middle of the pixel that the pointer is at: within the view also at its edges.
    const double half = 0.5 / m_widget.devicePixelRatioF();
    NSEvent result;
    result.type = type;
    result.modifierFlags = modifierFlags(event.modifiers());
    result.timestamp = Platform::clock().now();
    result.locationInWindow = {
        event.position().x() + half, m_widget.height() - event.position().y() - half};
    result.clickCount = m_clickCount;
    return result;
}

void ViewWidget::Private::countClick(const QMouseEvent& event) {
    // Qt tells the second click, and takes the third for a first.
    const QStyleHints& hints = *QGuiApplication::styleHints();
    const bool isSoon = event.timestamp() - m_lastPressTime
        < static_cast<quint64>(hints.mouseDoubleClickInterval());
    const bool isNear =
        (event.position() - m_lastPressPlace).manhattanLength() < hints.mouseDoubleClickDistance();
    const bool isAnother = event.type() == QEvent::MouseButtonDblClick || (isSoon && isNear);
    m_clickCount = isAnother ? m_clickCount + 1 : 1;
    m_lastPressTime = event.timestamp();
    m_lastPressPlace = event.position();
}

ViewWidget::ViewWidget(std::shared_ptr<NSView> rootView, QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<Private>(*this, std::move(rootView))) {
    // A click gives the focus to a view, if at all.
    setFocusPolicy(Qt::TabFocus);
    KeyboardGrabFilter::install();
}

ViewWidget::~ViewWidget() = default;

const std::shared_ptr<NSView>& ViewWidget::rootView() const { return d->root; }
NSView* ViewWidget::firstResponder() const { return d->firstResponder(); }

QSize ViewWidget::sizeHint() const {
    return QSizeF(d->sizeHint.width, d->sizeHint.height).toSize();
}

bool ViewWidget::event(QEvent* event) {
    const bool isOffer = event->type() == QEvent::ShortcutOverride;
    if (isOffer || event->type() == QEvent::KeyPress) {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        // The press, too, before Qt makes a change of focus of Tab.
        if (isOffer ? d->offer(key) : d->takes(key)) {
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

bool ViewWidget::focusNextPrevChild(bool next) {
    return d->moveFocus(next) || QWidget::focusNextPrevChild(next);
}

void ViewWidget::paintEvent(QPaintEvent* event) {
    // Layers are laid out before they are seen.
    callGuarded([] { CATransaction::flush(); });
    QPainter painter(this);
    paint(painter, *d->root, event->rect());
}

void ViewWidget::resizeEvent(QResizeEvent*) {
    d->root->setFrame(NSMakeRect(0, 0, width(), height()));
}

void ViewWidget::mousePressEvent(QMouseEvent* event) { d->press(*event); }
void ViewWidget::mouseDoubleClickEvent(QMouseEvent* event) { d->press(*event); }
void ViewWidget::mouseMoveEvent(QMouseEvent* event) { d->drag(*event); }
void ViewWidget::mouseReleaseEvent(QMouseEvent* event) { d->release(*event); }
void ViewWidget::keyPressEvent(QKeyEvent* event) { d->key(*event); }
void ViewWidget::keyReleaseEvent(QKeyEvent* event) { d->key(*event); }

void ViewWidget::focusInEvent(QFocusEvent* event) { d->focusIn(event->reason()); }

void ViewWidget::focusOutEvent(QFocusEvent* event) {
    // A menu borrows the keyboard; the window and the widget keep the focus.
    if (event->reason() != Qt::PopupFocusReason)
        d->focusOut();
}

} // namespace kw::qt

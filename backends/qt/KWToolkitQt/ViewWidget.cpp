// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/ViewWidget.h>

#include <KWToolkit/platform/Guarded.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/ui/CATransaction.h>
#include <KWToolkit/platform/ui/HoverTracker.h>
#include <KWToolkit/platform/ui/NSTextView.h>
#include <KWToolkit/platform/ui/NSWindow.h>
#include <KWToolkitQt/KeyTranslation.h>
#include <KWToolkitQt/KeyboardGrabFilter.h>
#include <KWToolkitQt/QtCursorService.h>
#include <KWToolkitQt/QtGraphicsContext.h>
#include <KWToolkitQt/ViewAccessibility.h>
#include <KWToolkitQt/ViewPeers.h>
#include <KWToolkitQt/WidgetWindow.h>

#include <QApplication>
#include <QHoverEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QStyleHints>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace kw::qt {

namespace {

bool isWithin(const NSView* view, const NSView& tree) { return view && view->isDescendantOf(tree); }

/// No where it throws.
bool acceptsFirstResponder(const NSView& view) {
    bool accepts = false;
    callGuarded([&] { accepts = view.acceptsFirstResponder(); });
    return accepts;
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
        const QPointF corner = upperLeftCorner(*subview);
        painter.translate(corner);
        paint(painter, *subview, dirty.translated(-corner));
        painter.translate(-corner);
    }
    painter.restore();
}

} // namespace

/// Whoever calls views from here keeps it for the call: they may delete the widget. After each such
/// call the widget and what holds it are used only unless `isGone()`.
class ViewWidget::Private final : public ViewHost, public std::enable_shared_from_this<Private> {
public:
    Private(ViewWidget& host, NSWindow* window, std::shared_ptr<NSView> view)
        : root(view ? std::move(view) : std::make_shared<NSView>())
        , sizeHint(root->frame().size)
        , m_widget(host)
        , m_hostsWindow(window
                  ? nullptr
                  : std::make_unique<NSWindow>(*this, std::make_unique<HostsWindow>(host)))
        , m_window(window ? *window : *m_hostsWindow) {
        root->setHost(this);
        QObject::connect(qApp, &QApplication::focusChanged, &m_context,
            [this](const QWidget*, QWidget* now) { focusMoved(now); });
        viewsChanged();
    }

    /// The widget goes.
    void close();
    bool isGone() const { return !m_accessibility; }

    void setNeedsDisplayInRect(NSRect rect) override;
    NSView* firstResponder() const override { return m_firstResponder; }
    bool makeFirstResponder(NSView* view) override;
    void viewWillGo(NSView& view) override;
    void viewsChanged() override;
    bool isKey() const override { return m_widget.isActiveWindow(); }
    NSWindow& window() override { return m_window; }

    void focusIn(Qt::FocusReason reason);
    void focusOut();
    bool moveFocus(bool forward);
    bool takeFocusFromPeer();
    bool wrapFocus(bool forward);
    bool offer(const QKeyEvent& event);
    bool takes(const QKeyEvent& event);
    bool keepsFromPeer(const QKeyEvent& event);
    void key(QKeyEvent& event);
    void press(QMouseEvent& event);
    void drag(const QMouseEvent& event);
    void release(QMouseEvent& event);
    void hoverAt(std::optional<QPointF> place);
    void activationChanged();
    void updatePeers();

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
        bool isOfKey(const QKeyEvent& event) const {
            return key == event.key() && scanCode == event.nativeScanCode();
        }
        bool isOf(const QKeyEvent& press) const {
            return isOfKey(press) && timestamp == press.timestamp();
        }
    };

    void send(NSResponder& receiver, Message message, const NSEvent& event) const;
    bool giveFocus(NSView* view, Qt::FocusReason reason);
    void becomeFirstResponder();
    bool resignFirstResponder();
    void resignAnyway();
    bool hasFocus(const NSView& view) const {
        return isWithin(m_firstResponder, view) && m_isFirstResponderTold;
    }
    void scrollTo(const NSView& view) const;
    void releaseFocus(const QWidget& peer);
    void focusMoved(QWidget* now);
    /// The view that the first responder works for: a text field, where that is its editor.
    NSView* focused();
    std::vector<NSView*> focusable();
    void appendFocusable(NSView& tree, std::vector<NSView*>& views);
    NSEvent eventAt(NSEvent::Type type, QPointF place) const;
    NSEvent mouseEvent(NSEvent::Type type, const QMouseEvent& event) const;
    void sendToEditor(const QMouseEvent& event) const;
    void countClick(const QMouseEvent& event);
    void mouseIsAt(std::optional<QPointF> place, NSEvent::Type type);
    void hover(NSEvent::Type type);

    ViewWidget& m_widget;
    const std::unique_ptr<NSWindow> m_hostsWindow; // null in a window of the toolkit's
    NSWindow& m_window; // not once this is gone
    ViewPeers m_peers {m_widget, [this](const QWidget& peer) { releaseFocus(peer); }};
    std::unique_ptr<ViewAccessibility> m_accessibility =
        std::make_unique<ViewAccessibility>(m_widget, *root, m_peers);
    bool m_arePeersDue = false;
    bool m_isUpdatePosted = false;
    NSView* m_firstResponder = nullptr;
    bool m_isFirstResponderTold = false; // that it has the focus
    bool m_isKeepingFocus = false; // the widget has taken it from a peer, for no view
    std::optional<Offer> m_offer;
    std::optional<Offer> m_keptFromPeer; // until the key is released
    NSView* m_pressed = nullptr;
    QPointer<QWidget> m_pressedEditor; // which the press has made
    int m_clickCount = 0;
    quint64 m_lastPressTime = 0;
    QPointF m_lastPressPlace;
    HoverTracker m_hover;
    std::optional<QPointF> m_mouse; // in the widget
    QObject m_context; // last: nothing is called any more once the rest goes
};

void ViewWidget::Private::close() {
    if (isGone())
        return;
    callGuarded([this] { viewWillGo(*root); });
    if (root->host() == this) // and not a widget that was made for it since
        root->setHost(nullptr);
    m_accessibility.reset();
}

void ViewWidget::Private::setNeedsDisplayInRect(NSRect rect) {
    const double top = root->isFlipped() ? NSMinY(rect) : root->bounds().size.height - NSMaxY(rect);
    m_widget.update(QRectF(NSMinX(rect), top, rect.size.width, rect.size.height).toAlignedRect());
    m_accessibility->update();
}

void ViewWidget::Private::viewsChanged() {
    m_arePeersDue = true;
    if (std::exchange(m_isUpdatePosted, true))
        return;
    const auto update = [this] {
        const auto alive = shared_from_this();
        m_isUpdatePosted = false;
        updatePeers();
        hover(NSEvent::Type::mouseEntered); // under a still mouse
    };
    QMetaObject::invokeMethod(&m_context, update, Qt::QueuedConnection);
}

void ViewWidget::Private::updatePeers() {
    if (isGone() || !std::exchange(m_arePeersDue, false))
        return;
    m_peers.update(*root);
    if (!isGone())
        m_accessibility->update();
}

bool ViewWidget::Private::makeFirstResponder(NSView* view) {
    const auto alive = shared_from_this();
    return giveFocus(view, Qt::OtherFocusReason);
}

bool ViewWidget::Private::giveFocus(NSView* view, Qt::FocusReason reason) {
    if (!view) {
        if (!resignFirstResponder() || isGone())
            return false;
        if (const QWidget* const peer = m_peers.widgetOf(std::exchange(m_firstResponder, nullptr)))
            releaseFocus(*peer);
        return true;
    }
    // Whoever loses the focus may take the view away.
    const std::shared_ptr<NSObject> alive = view->weak_from_this().lock();
    if (view != m_firstResponder) {
        const auto isFit = [&] {
            return !isGone() && isWithin(view, *root) && acceptsFirstResponder(*view);
        };
        if (!isFit())
            return false;
        if (!resignFirstResponder())
            return hasFocus(*view);
        if (!isFit()) {
            giveFocus(nullptr, reason);
            return false;
        }
        m_firstResponder = view;
    }
    updatePeers();
    if (isGone() || view != m_firstResponder)
        return hasFocus(*view);
    if (m_peers.widgetOf(view)) {
        // Known to be it from now on, whatever window is active.
        becomeFirstResponder();
        if (QWidget* const peer = m_peers.widgetOf(view); peer && view == m_firstResponder)
            peer->setFocus(reason);
    } else {
        if (!m_widget.hasFocus()) {
            const QScopedValueRollback keeping(m_isKeepingFocus, true);
            m_widget.setFocus(Qt::OtherFocusReason);
        }
        if (m_widget.hasFocus() && view == m_firstResponder)
            becomeFirstResponder();
    }
    if (!isGone() && isWithin(m_firstResponder, *view))
        scrollTo(*view);
    return hasFocus(*view);
}

void ViewWidget::Private::scrollTo(const NSView& view) const {
    QWidget* ancestor = m_widget.parentWidget();
    while (ancestor && !qobject_cast<QScrollArea*>(ancestor))
        ancestor = ancestor->parentWidget();
    auto* const area = static_cast<QScrollArea*>(ancestor);
    if (!area || !area->widget())
        return;
    QPointF corner;
    for (const NSView* each = &view; each->superview(); each = each->superview())
        corner += upperLeftCorner(*each);
    const QRect rect = QRectF(m_widget.mapTo(area->widget(), corner),
        QSizeF(view.frame().size.width, view.frame().size.height))
                           .toAlignedRect();
    // One that does not fit stays as it is, once some of it is seen.
    const QSize room = area->viewport()->size();
    const QRect seen(-area->widget()->pos(), room);
    const bool fits = rect.width() <= room.width() && rect.height() <= room.height();
    if (fits || !rect.intersects(seen))
        area->ensureVisible(rect.center().x(), rect.center().y(),
            std::min(rect.width(), room.width()) / 2 + 1,
            std::min(rect.height(), room.height()) / 2 + 1);
}

void ViewWidget::Private::viewWillGo(NSView& view) {
    const auto alive = shared_from_this();
    if (isWithin(m_pressed, view))
        m_pressed = nullptr;
    if (isWithin(m_firstResponder, view)) {
        resignFirstResponder();
        if (isWithin(m_firstResponder, view)) {
            m_firstResponder = nullptr;
            m_isFirstResponderTold = false;
        }
    }
    if (isGone())
        return;
    m_accessibility->viewWillGo(view);
    m_peers.remove(view);
}

/// Of a widget that is about to be hidden, or whose view is not first responder any more.
void ViewWidget::Private::releaseFocus(const QWidget& peer) {
    const QPointer<const QWidget> alive(&peer);
    if (m_firstResponder && m_peers.widgetOf(m_firstResponder) == &peer) {
        if (!resignFirstResponder() && m_peers.widgetOf(m_firstResponder) != &peer)
            return; // to a view that has it now
        m_firstResponder = nullptr;
        m_isFirstResponderTold = false;
    }
    if (isGone() || !alive)
        return;
    const QWidget* const owner = m_widget.window()->focusWidget();
    if (owner != &peer && !peer.isAncestorOf(owner))
        return;
    const QScopedValueRollback keeping(m_isKeepingFocus, true);
    m_widget.setFocus(Qt::OtherFocusReason);
}

void ViewWidget::Private::becomeFirstResponder() {
    m_accessibility->update();
    if (!m_firstResponder || std::exchange(m_isFirstResponderTold, true))
        return;
    NSView& view = *m_firstResponder;
    const std::shared_ptr<NSObject> alive = view.weak_from_this().lock();
    bool becomes = true;
    callGuarded([&] { becomes = view.becomeFirstResponder(); });
    if (!becomes && m_firstResponder == &view)
        m_isFirstResponderTold = false;
}

/// False where the view insists, and where another one, or the same anew, has got the focus since.
bool ViewWidget::Private::resignFirstResponder() {
    if (!std::exchange(m_isFirstResponderTold, false))
        return true;
    NSView& view = *m_firstResponder;
    const std::shared_ptr<NSObject> alive = view.weak_from_this().lock();
    bool leaves = true;
    callGuarded([&] { leaves = view.resignFirstResponder(); });
    if (!m_firstResponder)
        return true;
    if (m_firstResponder != &view || m_isFirstResponderTold)
        return false;
    m_isFirstResponderTold = !leaves;
    return leaves;
}

void ViewWidget::Private::resignAnyway() {
    const NSView* const view = m_firstResponder;
    resignFirstResponder();
    if (m_firstResponder == view)
        m_isFirstResponderTold = false;
}

void ViewWidget::Private::focusIn(Qt::FocusReason reason) {
    if (m_isKeepingFocus)
        return;
    const auto views = focusable();
    NSView* view = m_firstResponder;
    if (!views.empty()) {
        if (reason == Qt::BacktabFocusReason)
            view = views.back();
        else if (reason == Qt::TabFocusReason || !view)
            view = views.front();
    }
    if (view)
        giveFocus(view, reason);
}

void ViewWidget::Private::focusOut() {
    m_accessibility->update();
    m_offer.reset();
    if (!m_peers.widgetOf(m_firstResponder))
        resignAnyway(); // Qt's focus cannot be held back.
}

/// A menu and another window only borrow the keyboard from a peer.
void ViewWidget::Private::focusMoved(QWidget* now) {
    const auto alive = shared_from_this();
    if (isGone())
        return;
    if (now ? now->window() != m_widget.window() : !m_widget.isActiveWindow())
        return;
    NSView* const view = now ? m_peers.viewOf(now) : nullptr;
    if (!view) {
        if (now != &m_widget && m_peers.widgetOf(m_firstResponder))
            resignAnyway();
        return;
    }
    now->installEventFilter(&m_widget);
    // By a click in it, say. Its former owner may want it back.
    if (view != m_firstResponder && !resignFirstResponder()) {
        giveFocus(m_firstResponder, Qt::OtherFocusReason);
    } else if (m_peers.widgetOf(view)) {
        m_firstResponder = view;
        becomeFirstResponder();
    }
}

bool ViewWidget::Private::moveFocus(bool forward) {
    const auto views = focusable();
    const auto current = std::ranges::find(views, focused());
    if (current == views.end() || !m_widget.isVisible()
        || (forward ? current + 1 == views.end() : current == views.begin()))
        return false;
    giveFocus(*(forward ? current + 1 : current - 1),
        forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

/// So that Qt looks for the next one from this widget on. False where the view insists.
bool ViewWidget::Private::takeFocusFromPeer() {
    return !isGone()
        && (!m_peers.widgetOf(m_firstResponder) || giveFocus(nullptr, Qt::OtherFocusReason))
        && !isGone();
}

bool ViewWidget::Private::wrapFocus(bool forward) {
    const auto views = focusable();
    return !views.empty() && m_widget.isVisible()
        && giveFocus(forward ? views.front() : views.back(),
            forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
}

NSView* ViewWidget::Private::focused() {
    const bool isEditor =
        m_firstResponder && m_firstResponder == m_window.fieldEditor(false, nullptr).get();
    return isEditor ? m_firstResponder->superview() : m_firstResponder;
}

std::vector<NSView*> ViewWidget::Private::focusable() {
    std::vector<NSView*> views;
    appendFocusable(*root, views);
    return views;
}

void ViewWidget::Private::appendFocusable(NSView& tree, std::vector<NSView*>& views) {
    if (tree.isHidden() || &tree == m_window.fieldEditor(false, nullptr).get())
        return;
    // Also one that has just been disabled: the next one is sought from there.
    if (&tree == m_firstResponder || acceptsFirstResponder(tree))
        views.push_back(&tree);
    for (const auto& view : tree.subviews())
        appendFocusable(*view, views);
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
    const bool isTaken = m_offer && m_offer->isOf(event) ? m_offer->isTaken : offer(event);
    m_offer.reset();
    return isTaken;
}

/// A key that was taken as a shortcut does nothing else in the widget with the focus.
bool ViewWidget::Private::keepsFromPeer(const QKeyEvent& event) {
    if (event.type() == QEvent::KeyPress) {
        if (m_keptFromPeer && m_keptFromPeer->isOfKey(event))
            m_keptFromPeer.reset();
        if (!m_offer || !m_offer->isOf(event) || !m_offer->isTaken)
            return false;
        m_keptFromPeer = std::exchange(m_offer, std::nullopt);
        return true;
    }
    const bool isKept = m_keptFromPeer && m_keptFromPeer->isOfKey(event);
    if (isKept && !event.isAutoRepeat())
        m_keptFromPeer.reset();
    return isKept;
}

void ViewWidget::Private::key(QKeyEvent& event) {
    const bool isRelease = event.type() == QEvent::KeyRelease;
    if (isGone() || (isRelease && event.isAutoRepeat())) {
        event.ignore();
        return;
    }
    const NSEvent translated = keyEvent(event);
    const Message message = translated.type == NSEvent::Type::flagsChanged
        ? &NSResponder::flagsChanged
        : (isRelease ? &NSResponder::keyUp : &NSResponder::keyDown);
    NSResponder& receiver =
        m_firstResponder ? static_cast<NSResponder&>(*m_firstResponder) : m_window;
    send(receiver, message, translated);
    event.setAccepted(isGone() || !m_window.takeIsKeyUntaken());
}

void ViewWidget::Private::press(QMouseEvent& event) {
    if (event.button() != Qt::LeftButton) {
        event.ignore();
        return;
    }
    countClick(event);
    const NSEvent translated = mouseEvent(NSEvent::Type::leftMouseDown, event);
    NSView* view = nullptr;
    bool isForWindow = false;
    callGuarded([&] {
        view = root->hitTest(translated.locationInWindow);
        // X11 delivers the click that activates the window, too.
        isForWindow = view && !m_widget.isActiveWindow() && !view->acceptsFirstMouse(translated);
    });
    if (!view || isGone())
        return;
    if (isForWindow) {
        // That it begins to move it by its background, it takes even so.
        if (view == root.get() && m_window.isMovableByWindowBackground())
            send(m_window, &NSResponder::mouseDown, translated);
        return;
    }
    m_pressed = view;
    const bool isEdited = view == focused() && view != m_firstResponder;
    if (!isEdited && acceptsFirstResponder(*view))
        giveFocus(view, Qt::OtherFocusReason);
    if (!m_pressed)
        return;
    if (isWithin(m_firstResponder, *view) && m_firstResponder != view) {
        // The click that begins editing also says where, and may begin a selection.
        m_pressedEditor = m_peers.widgetOf(m_firstResponder);
        m_pressed = m_pressedEditor ? nullptr : view;
        sendToEditor(event);
    }
    if (m_pressed)
        send(*m_pressed, &NSResponder::mouseDown, translated);
}

void ViewWidget::Private::drag(const QMouseEvent& event) {
    sendToEditor(event);
    if (m_pressed)
        send(*m_pressed, &NSResponder::mouseDragged,
            mouseEvent(NSEvent::Type::leftMouseDragged, event));
}

void ViewWidget::Private::release(QMouseEvent& event) {
    if (event.button() != Qt::LeftButton) {
        event.ignore();
        return;
    }
    sendToEditor(event);
    m_pressedEditor = nullptr;
    if (NSView* const view = std::exchange(m_pressed, nullptr))
        send(*view, &NSResponder::mouseUp, mouseEvent(NSEvent::Type::leftMouseUp, event));
    if (isGone())
        return;
    // While a button was down Qt did not tell of hovering.
    const QPointF place = event.position();
    mouseIsAt(m_widget.rect().contains(place.toPoint()) ? std::optional(place) : std::nullopt,
        NSEvent::Type::mouseEntered);
}

void ViewWidget::Private::sendToEditor(const QMouseEvent& event) const {
    if (!m_pressedEditor)
        return;
    QMouseEvent moved(event.type(), m_pressedEditor->mapFrom(&m_widget, event.position()),
        event.scenePosition(), event.globalPosition(), event.button(), event.buttons(),
        event.modifiers(), event.pointingDevice());
    QCoreApplication::sendEvent(m_pressedEditor, &moved);
}

void ViewWidget::Private::hoverAt(std::optional<QPointF> place) {
    mouseIsAt(place, NSEvent::Type::mouseMoved);
}

void ViewWidget::Private::mouseIsAt(std::optional<QPointF> place, NSEvent::Type type) {
    if (place && !m_mouse)
        QtCursorService::mouseEntered(m_widget);
    m_mouse = place;
    hover(type);
    if (!place && !isGone())
        QtCursorService::mouseLeft(m_widget);
}

void ViewWidget::Private::hover(NSEvent::Type type) {
    if (isGone() || m_pressed || m_pressedEditor || QGuiApplication::mouseButtons() != Qt::NoButton)
        return;
    const NSEvent event = eventAt(type, m_mouse.value_or(QPointF()));
    callGuarded([&] {
        if (m_mouse)
            m_hover.mouseIsAt(*root, isKey(), event);
        else
            m_hover.mouseIsAway(*root, event);
    });
}

void ViewWidget::Private::activationChanged() {
    m_widget.update();
    hover(NSEvent::Type::mouseEntered);
}

void ViewWidget::Private::send(NSResponder& receiver, Message message, const NSEvent& event) const {
    // Kept for the call, in which it may leave its tree.
    const std::shared_ptr<NSObject> alive = receiver.weak_from_this().lock();
    callGuarded([&] { (receiver.*message)(event); });
}

NSEvent ViewWidget::Private::eventAt(NSEvent::Type type, QPointF place) const {
    // The middle of the pixel that the pointer is at: within the view also at its edges.
    const double half = 0.5 / m_widget.devicePixelRatioF();
    NSEvent result;
    result.type = type;
    result.modifierFlags = modifierFlags(QGuiApplication::keyboardModifiers());
    result.timestamp = Platform::clock().now();
    result.locationInWindow = {place.x() + half, m_widget.height() - place.y() - half};
    return result;
}

NSEvent ViewWidget::Private::mouseEvent(NSEvent::Type type, const QMouseEvent& event) const {
    NSEvent result = eventAt(type, event.position());
    result.modifierFlags = modifierFlags(event.modifiers());
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
    : ViewWidget(nullptr, std::move(rootView), parent) { }

ViewWidget::ViewWidget(NSWindow* window, std::shared_ptr<NSView> rootView, QWidget* parent)
    : QWidget(parent)
    , d(std::make_shared<Private>(*this, window, std::move(rootView))) {
    // A click gives the focus to a view, if at all.
    setFocusPolicy(Qt::TabFocus);
    // Over the peers, too.
    setAttribute(Qt::WA_Hover);
    KeyboardGrabFilter::install();
}

ViewWidget::~ViewWidget() { d->close(); }

void ViewWidget::retire() {
    hide();
    d->close();
    deleteLater();
}

const std::shared_ptr<NSView>& ViewWidget::rootView() const { return d->root; }
NSView* ViewWidget::firstResponder() const { return d->firstResponder(); }

QSize ViewWidget::sizeHint() const {
    return QSizeF(d->sizeHint.width, d->sizeHint.height).toSize();
}

bool ViewWidget::event(QEvent* event) {
    const auto alive = d;
    if (alive->isGone())
        return QObject::event(event);
    const bool isOffer = event->type() == QEvent::ShortcutOverride;
    if (isOffer || event->type() == QEvent::KeyPress) {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        // The press, too, before Qt makes a change of focus of Tab.
        if ((isOffer ? alive->offer(key) : alive->takes(key)) || alive->isGone()) {
            event->accept();
            return true;
        }
    }
    switch (event->type()) {
    case QEvent::HoverEnter:
    case QEvent::HoverMove:
        alive->hoverAt(static_cast<const QHoverEvent&>(*event).position());
        return true;
    case QEvent::HoverLeave:
        alive->hoverAt(std::nullopt);
        return true;
    case QEvent::Polish:
        alive->updatePeers();
        break;
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
        alive->activationChanged();
        break;
    default:
        break;
    }
    return alive->isGone() || QWidget::event(event);
}

void ViewWidget::updatePeers() {
    const auto alive = d;
    alive->updatePeers();
}

bool ViewWidget::eventFilter(QObject* peer, QEvent* event) {
    // Soon it is looked where the mouse is now.
    if (event->type() == QEvent::MouseButtonRelease)
        d->viewsChanged();
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    if (isKey && d->keepsFromPeer(static_cast<const QKeyEvent&>(*event))) {
        event->accept();
        return true;
    }
    return QWidget::eventFilter(peer, event);
}

bool ViewWidget::focusNextPrevChild(bool next) {
    const auto alive = d;
    return alive->moveFocus(next) || !alive->takeFocusFromPeer()
        || QWidget::focusNextPrevChild(next) || alive->wrapFocus(next);
}

void ViewWidget::paintEvent(QPaintEvent* event) {
    const auto alive = d;
    // Layers are laid out before they are seen.
    callGuarded([] { CATransaction::flush(); });
    d->updatePeers();
    {
        QPainter painter(this);
        paint(painter, *d->root, event->rect());
    }
    d->updatePeers(); // to what the drawing has set
}

void ViewWidget::resizeEvent(QResizeEvent*) {
    const auto alive = d;
    callGuarded([&] { alive->root->setFrame(NSMakeRect(0, 0, width(), height())); });
}

void ViewWidget::mousePressEvent(QMouseEvent* event) { std::shared_ptr(d)->press(*event); }
void ViewWidget::mouseDoubleClickEvent(QMouseEvent* event) { std::shared_ptr(d)->press(*event); }
void ViewWidget::mouseMoveEvent(QMouseEvent* event) { std::shared_ptr(d)->drag(*event); }
void ViewWidget::mouseReleaseEvent(QMouseEvent* event) { std::shared_ptr(d)->release(*event); }
void ViewWidget::keyPressEvent(QKeyEvent* event) { std::shared_ptr(d)->key(*event); }
void ViewWidget::keyReleaseEvent(QKeyEvent* event) { std::shared_ptr(d)->key(*event); }

void ViewWidget::focusInEvent(QFocusEvent* event) { std::shared_ptr(d)->focusIn(event->reason()); }

void ViewWidget::focusOutEvent(QFocusEvent* event) {
    // A menu borrows the keyboard; the window and the widget keep the focus.
    if (event->reason() != Qt::PopupFocusReason)
        std::shared_ptr(d)->focusOut();
}

} // namespace kw::qt

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/WidgetWindow.h>

#include <KWToolkitQt/WindowOpacity.h>

#include <QApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <cmath>

namespace kw::qt {

namespace {

constexpr int answerTime = 250; // milliseconds
constexpr int greatestLength = 32767; // that X knows

/// Of the place where both the primary screen's coordinates begin.
QPoint origin() { return QGuiApplication::primaryScreen()->geometry().bottomLeft() + QPoint(0, 1); }

int rounded(double value) {
    return static_cast<int>(
        std::floor(std::clamp<double>(value, -greatestLength, greatestLength) + 0.5));
}

NSRect fromPixels(const QRect& rect) {
    const QPoint corner = rect.bottomLeft() + QPoint(0, 1) - origin();
    return NSMakeRect(corner.x(), -corner.y(), rect.width(), rect.height());
}

/// Moves a window with the mouse until its button is released, where no window manager does.
class Move final : public QObject {
public:
    explicit Move(QWidget& window)
        : QObject(&window)
        , m_window(window)
        , m_grip(window.pos() - QCursor::pos()) {
        qApp->installEventFilter(this);
    }

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::MouseMove) {
            const auto& moved = static_cast<const QMouseEvent&>(*event);
            if (moved.buttons() & Qt::LeftButton)
                m_window.move(moved.globalPosition().toPoint() + m_grip);
            else
                deleteLater();
        } else if (event->type() == QEvent::MouseButtonRelease) {
            deleteLater();
        }
        return false;
    }

private:
    QWidget& m_window;
    const QPoint m_grip;
};

} // namespace

QRect WidgetWindow::toPixels(const NSRect& rect) {
    const int left = rounded(NSMinX(rect));
    const int top = rounded(-NSMaxY(rect));
    const auto length = [](int from, double to) {
        return std::clamp(rounded(to) - from, 1, greatestLength);
    };
    return QRect(left, top, length(left, NSMaxX(rect)), length(top, -NSMinY(rect)))
        .translated(origin());
}

QMargins WidgetWindow::margins() const {
    const QWidget* const widget = topLevel();
    const QWindow* const window = widget ? widget->windowHandle() : nullptr;
    return window ? window->frameMargins() : QMargins();
}

NSEdgeInsets WidgetWindow::frameMargins() const {
    const QMargins around = margins();
    return {static_cast<double>(around.top()), static_cast<double>(around.left()),
        static_cast<double>(around.bottom()), static_cast<double>(around.right())};
}

NSRect WidgetWindow::frame() const {
    return topLevel() ? fromPixels(contentRect() + margins()) : NSRect {};
}

QRect WidgetWindow::contentRect() const {
    return m_answer.hasExpired() ? topLevel()->geometry() : m_asked;
}

void WidgetWindow::setFrame(NSRect frame) {
    QWidget* const widget = topLevel();
    if (!widget)
        return;
    if (const auto state = widget->windowState();
        state & (Qt::WindowMaximized | Qt::WindowFullScreen))
        widget->setWindowState(state & ~(Qt::WindowMaximized | Qt::WindowFullScreen));
    const QRect content = toPixels(frame) - margins();
    setContentRect({content.topLeft(), content.size().expandedTo({1, 1})});
    if (!widget->isVisible() || QGuiApplication::platformName() != "xcb")
        return;
    // Answers to what was asked for before come late, and Qt believes each.
    m_asked = widget->geometry();
    m_answer.setRemainingTime(answerTime);
}

void WidgetWindow::setContentRect(const QRect& rect) { topLevel()->setGeometry(rect); }

NSRect WidgetWindow::visibleScreenFrame() const {
    const QWidget* const widget = topLevel();
    if (!widget)
        return {};
    const QScreen* const there = QGuiApplication::screenAt(widget->geometry().center());
    return fromPixels((there ? there : widget->screen())->availableGeometry());
}

void WidgetWindow::orderFront(bool isKey) {
    QWidget* const widget = topLevel();
    if (!widget)
        return;
    const bool former = widget->testAttribute(Qt::WA_ShowWithoutActivating);
    const QPointer<QWidget> alive(widget);
    widget->setAttribute(Qt::WA_ShowWithoutActivating, !isKey);
    widget->setWindowState(widget->windowState() & ~Qt::WindowMinimized);
    widget->setVisible(true);
    if (!alive)
        return;
    widget->setAttribute(Qt::WA_ShowWithoutActivating, former);
    widget->raise();
    if (isKey)
        widget->activateWindow();
}

void WidgetWindow::orderOut() {
    if (QWidget* const widget = topLevel())
        widget->setVisible(false);
}

bool WidgetWindow::isVisible() const {
    const QWidget* const widget = topLevel();
    return widget && widget->isVisible();
}

void WidgetWindow::setModal(bool isModal) {
    QWidget* const widget = topLevel();
    if (!widget || (isModal && widget->windowModality() == Qt::ApplicationModal))
        return;
    // Qt heeds it only while a window comes to be seen.
    const QPointer<QWidget> alive(widget);
    const bool wasVisible = widget->isVisible();
    const QWidget* const active = QApplication::activeWindow();
    if (wasVisible)
        widget->setVisible(false);
    if (!alive)
        return;
    if (isModal)
        m_formerModality = widget->windowModality();
    widget->setWindowModality(isModal ? Qt::ApplicationModal : m_formerModality);
    widget->winId(); // there is a window from here on
    if (isModal && active && active != widget)
        widget->windowHandle()->setTransientParent(active->windowHandle());
    else if (!widget->parentWidget())
        widget->windowHandle()->setTransientParent(nullptr);
    if (wasVisible)
        orderFront(false);
}

void WidgetWindow::beginMove() {
    QWidget* const widget = topLevel();
    QWindow* const window = widget ? widget->windowHandle() : nullptr;
    if (window && !window->startSystemMove())
        new Move(*widget);
}

void WidgetWindow::setOpacity(double opacity) {
    if (QWidget* const widget = topLevel())
        qt::setOpacity(*widget, opacity);
}

NSWindowOpacity WidgetWindow::opacity() const {
    const QWidget* const widget = topLevel();
    return widget ? opacityOf(*widget) : NSWindowOpacity::none;
}

} // namespace kw::qt

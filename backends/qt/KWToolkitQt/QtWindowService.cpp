// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/QtWindowService.h>

#include <KWToolkit/platform/Guarded.h>
#include <KWToolkit/platform/graphics/NSBezierPath.h>
#include <KWToolkit/platform/ui/NSWindow.h>
#include <KWToolkitQt/QtFonts.h>
#include <KWToolkitQt/QtGraphicsContext.h>
#include <KWToolkitQt/ViewWidget.h>
#include <KWToolkitQt/WidgetWindow.h>

#include <QApplication>
#include <QCloseEvent>
#include <QPainter>
#include <QWindow>

#include <algorithm>
#include <map>

namespace kw::qt {

namespace {

Qt::WindowFlags flagsOf(unsigned styleMask) {
    if (!(styleMask & NSWindowStyleMaskTitled))
        return Qt::FramelessWindowHint;
    Qt::WindowFlags flags = Qt::CustomizeWindowHint | Qt::WindowTitleHint;
    const struct {
        NSWindowStyleMask style;
        Qt::WindowFlags flags;
    } rows[] = {
        {NSWindowStyleMaskClosable, Qt::WindowCloseButtonHint | Qt::WindowSystemMenuHint},
        {NSWindowStyleMaskMiniaturizable, Qt::WindowMinimizeButtonHint | Qt::WindowSystemMenuHint},
        {NSWindowStyleMaskResizable, Qt::WindowMaximizeButtonHint | Qt::WindowSystemMenuHint},
    };
    for (const auto& row : rows) {
        if (styleMask & row.style)
            flags |= row.flags;
    }
    return flags;
}

/// The decoration that windows of a style had last: a guess at that of one not shown yet.
QMargins& lastMargins(unsigned styleMask) {
    static std::map<unsigned, QMargins> margins;
    return margins[styleMask];
}

/// The part of a frame that a limit leaves to the content.
int withoutMargins(double length, int margin) {
    return static_cast<int>(std::clamp<double>(length - margin, 0, QWIDGETSIZE_MAX));
}

/// The background of a window, and its views.
class Frame final : public QWidget {
public:
    explicit Frame(NSWindow& shown, Qt::WindowFlags flags)
        : QWidget(nullptr, flags)
        , owner(&shown) {
        setAttribute(Qt::WA_QuitOnClose, false);
    }

    void fitContent() {
        if (!content)
            return;
        content->setGeometry(rect());
        // Qt tells a hidden widget later.
        callGuarded([this] { content->rootView()->setFrame(NSMakeRect(0, 0, width(), height())); });
    }

    void setTranslucent(bool isTranslucent) {
        if (testAttribute(Qt::WA_TranslucentBackground) == isTranslucent)
            return;
        const bool wasVisible = isVisible();
        setVisible(false);
        // A window cannot get another kind of pixels.
        if (internalWinId())
            destroy();
        setAttribute(Qt::WA_TranslucentBackground, isTranslucent);
        setAttribute(Qt::WA_NoSystemBackground, isTranslucent);
        if (wasVisible)
            setVisible(true);
    }

    NSWindow* owner; // null once it goes
    QPointer<ViewWidget> content;
    std::optional<NSColor> background;

protected:
    void closeEvent(QCloseEvent* event) override {
        bool closes = !owner;
        callGuarded([&] { closes = closes || owner->performClose(); });
        event->setAccepted(closes);
    }
    void resizeEvent(QResizeEvent*) override { fitContent(); }
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        if (!background || !testAttribute(Qt::WA_TranslucentBackground))
            painter.fillRect(rect(), palette().window());
        if (!background)
            return;
        const NSRect area = NSMakeRect(0, 0, width(), height());
        QtGraphicsContext context(painter, area.size, /*isFlipped*/ false);
        context.setFillColor(*background);
        context.fill(NSBezierPath::bezierPathWithRect(area));
    }
};

} // namespace

class QtWindow final : public WidgetWindow {
public:
    QtWindow(NSWindow& window, NSRect contentRect)
        : m_window(window)
        , m_frame(new Frame(window, flagsOf(window.styleMask()))) {
        setContentRect(toPixels(contentRect));
    }
    ~QtWindow() override;

    void setLimits(NSSize smallest, NSSize largest) override;
    void setTitle(const std::string& title) override;
    void setContentView(std::shared_ptr<NSView> view) override;
    void setBackground(const std::optional<NSColor>& color, bool isOpaque) override;
    void orderFront(bool isKey) override;
    void setModal(bool isModal) override;

protected:
    QWidget* topLevel() const override { return m_frame; }
    QMargins margins() const override;
    void setContentRect(const QRect& rect) override;

private:
    void confine();
    void updateFlags();

    NSWindow& m_window;
    const QPointer<Frame> m_frame;
    NSSize m_smallest;
    NSSize m_largest {QWIDGETSIZE_MAX, QWIDGETSIZE_MAX};
    bool m_isModal = false;
};

QtWindow::~QtWindow() {
    if (!m_frame || !qApp)
        return;
    m_frame->owner = nullptr;
    m_frame->hide();
    if (!m_frame)
        return;
    if (m_frame->content)
        m_frame->content->retire();
    // Later: it may be a widget in it that ends it.
    m_frame->deleteLater();
}

QMargins QtWindow::margins() const {
    QMargins& last = lastMargins(m_window.styleMask());
    if (isVisible())
        last = WidgetWindow::margins();
    return last;
}

void QtWindow::setContentRect(const QRect& rect) {
    // The program may go where the user may not.
    m_frame->setMinimumSize(m_frame->minimumSize().boundedTo(rect.size()));
    m_frame->setMaximumSize(m_frame->maximumSize().expandedTo(rect.size()));
    m_frame->setGeometry(rect);
    confine();
    m_frame->fitContent();
}

void QtWindow::setLimits(NSSize smallest, NSSize largest) {
    m_smallest = smallest;
    m_largest = largest;
    if (m_frame)
        confine();
}

void QtWindow::confine() {
    const QSize now = m_frame->size();
    QSize smallest = now, largest = now;
    if (m_window.styleMask() & NSWindowStyleMaskResizable) {
        const QMargins around = margins();
        const int width = around.left() + around.right();
        const int height = around.top() + around.bottom();
        smallest = QSize(
            withoutMargins(m_smallest.width, width), withoutMargins(m_smallest.height, height))
                       .boundedTo(now);
        largest =
            QSize(withoutMargins(m_largest.width, width), withoutMargins(m_largest.height, height))
                .expandedTo(now);
    }
    m_frame->setMinimumSize(smallest);
    m_frame->setMaximumSize(largest);
}

void QtWindow::setTitle(const std::string& title) {
    if (m_frame) // Qt has a meaning of its own for "[*]".
        m_frame->setWindowTitle(toQString(title).replace("[*]", "[*][*]"));
}

void QtWindow::setContentView(std::shared_ptr<NSView> view) {
    if (!m_frame)
        return;
    const bool hadFocus =
        m_frame->content && m_frame->content->isAncestorOf(QApplication::focusWidget());
    if (m_frame->content)
        m_frame->content->retire();
    m_frame->content = new ViewWidget(&m_window, std::move(view), m_frame);
    m_frame->setFocusProxy(m_frame->content);
    m_frame->fitContent();
    m_frame->content->setVisible(true);
    if (hadFocus)
        m_frame->content->setFocus(Qt::OtherFocusReason);
}

void QtWindow::setBackground(const std::optional<NSColor>& color, bool isOpaque) {
    if (!m_frame)
        return;
    m_frame->background = color;
    m_frame->setTranslucent(!isOpaque);
    m_frame->update();
}

void QtWindow::orderFront(bool isKey) {
    if (!m_frame)
        return;
    if (m_frame->content)
        m_frame->content->updatePeers();
    if (!m_frame)
        return;
    updateFlags();
    WidgetWindow::orderFront(isKey);
}

void QtWindow::setModal(bool isModal) {
    if (!m_frame)
        return;
    m_isModal = isModal;
    updateFlags();
    WidgetWindow::setModal(isModal);
}

void QtWindow::updateFlags() {
    // A dialog is kept above its transient parent.
    Qt::WindowFlags flags = flagsOf(m_window.styleMask()) | (m_isModal ? Qt::Dialog : Qt::Window);
    flags.setFlag(Qt::WindowDoesNotAcceptFocus, !m_window.canBecomeKeyWindow());
    if (flags == m_frame->windowFlags())
        return;
    // Unlike setWindowFlags, this leaves the window on the screen.
    m_frame->overrideWindowFlags(flags);
    if (QWindow* const handle = m_frame->windowHandle())
        handle->setFlags(flags);
}

std::unique_ptr<NativeWindow> QtWindowService::makeWindow(NSWindow& window, NSRect contentRect) {
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        return UnavailableWindowService().makeWindow(window, contentRect);
    return std::make_unique<QtWindow>(window, contentRect);
}

} // namespace kw::qt

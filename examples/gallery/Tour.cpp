// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "Tour.h"

#include "Desktop.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QPointer>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include <cstdio>

namespace gallery {

namespace {

constexpr int patience = 10'000; // milliseconds
constexpr int lookInterval = 20;

std::unique_ptr<Hands> handsFor(const QString& platform) {
    auto hands = platform == "xcb" ? realHands() : nullptr;
    return hands ? std::move(hands) : postedHands();
}

class ReleaseFilter final : public QObject {
public:
    bool isReleased = false;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        isReleased |= event->type() == QEvent::MouseButtonRelease;
        return false;
    }
};

} // namespace

Tour::Tour(QWidget& window, const QString& folder)
    : m_window(window)
    , m_folder(folder)
    , m_log(m_folder.filePath("tour.log"))
    , m_hands(handsFor(QGuiApplication::platformName())) {
    if (!m_folder.mkpath(".") || !m_log.open(QIODevice::WriteOnly)) {
        ++m_failures;
        write("FAILED to write " + m_log.fileName());
    }
}

void Tour::click(QWidget& widget) {
    hands().pressMouse(widget, widget.rect().center());
    ReleaseFilter filter;
    widget.installEventFilter(&filter);
    hands().releaseMouse(widget, widget.rect().center());
    if (QTest::qWaitFor([&] { return filter.isReleased; }, patience))
        return;
    ++m_failures;
    write(QString("FAILED  to click at a %1").arg(widget.metaObject()->className()));
}

void Tour::clickToOpen(QWidget& widget, const std::function<void(QWidget& modal)>& use) {
    QTimer lookout;
    QPointer<QWidget> modal;
    bool isUsed = false;
    QObject::connect(&lookout, &QTimer::timeout, &lookout, [&] {
        if (isUsed) {
            ++m_failures;
            write("FAILED  to close the window");
            if (modal)
                modal->close(); // else the tour would never end
            return;
        }
        modal = QApplication::activeModalWidget();
        if (!modal || !modal->isVisible())
            return;
        lookout.stop();
        isUsed = true;
        expect("the window that opens", "active",
            [&] { return modal && modal->isActiveWindow() ? "active" : "not active"; });
        if (modal)
            use(*modal);
        lookout.start(patience);
    });
    lookout.start(lookInterval);
    click(widget);
    expect("a window", "opened", [&] { return isUsed ? "opened" : "not opened"; });
}

bool Tour::expect(
    const QString& what, const QString& expected, const std::function<QString()>& seen) {
    const bool isSeen = QTest::qWaitFor([&] { return seen() == expected; }, patience);
    if (isSeen)
        write("ok      " + what + ": " + expected);
    else
        write("FAILED  " + what + ": expected " + expected + ", seen " + seen());
    m_failures += !isSeen;
    return isSeen;
}

void Tour::takePicture(const QString& name) {
    QCoreApplication::processEvents(); // layouts
    takePicture(name, m_window.grab());
}

void Tour::takePicture(const QString& name, const QPixmap& picture) {
    const QString file = m_folder.filePath(name + ".png");
    const bool isSaved = picture.save(file);
    write((isSaved ? "picture " : "FAILED  to save ") + file);
    m_failures += !isSaved;
}

QPixmap Tour::screenAt(const QRect& place) {
    return QGuiApplication::primaryScreen()->grabWindow(
        0, place.x(), place.y(), place.width(), place.height());
}

QPixmap Tour::pictureOf(QWidget& widget) {
    if (!hands().areReal())
        return widget.grab();
    return screenAt(widget.isWindow() ? widget.frameGeometry()
                                      : QRect(widget.mapToGlobal(QPoint()), widget.size()));
}

QPixmap Tour::pictureOf(QWidget& front, QWidget& back) {
    const QRect all = front.frameGeometry() | back.frameGeometry();
    if (hands().areReal())
        return screenAt(all);
    QPixmap picture(all.size());
    picture.fill(QColor("#8a94a6"));
    QPainter painter(&picture);
    for (QWidget* const window : {&back, &front})
        painter.drawPixmap(window->geometry().topLeft() - all.topLeft(), window->grab());
    return picture;
}

void Tour::write(const QString& line) {
    const QByteArray bytes = line.toUtf8() + '\n';
    if (m_log.isOpen()) {
        m_log.write(bytes);
        m_log.flush();
    }
    std::fputs(bytes.constData(), stdout);
    std::fflush(stdout);
}

bool Tour::finish() {
    write(m_failures == 0 ? QString("all that was expected was seen")
                          : QString("%1 expectations FAILED").arg(m_failures));
    write("the pictures and tour.log are in " + m_folder.absolutePath());
    return m_failures == 0;
}

} // namespace gallery

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/QtApplicationService.h>

#include <KWToolkit/platform/Guarded.h>
#include <KWToolkit/platform/foundation/NSNotificationCenter.h>
#include <KWToolkit/platform/ui/NSApplication.h>
#include <KWToolkitQt/QtRunLoop.h>

#include <QGuiApplication>
#include <QPointer>
#include <QThread>
#include <QWindow>

#include <cstdlib>
#include <utility>

namespace kw::qt {

namespace {

/// Whether the application has been told that it ends, and its event loop has yet to return.
bool isToldToEnd = false;

void applicationQuits() {
    QtRunLoop::hasLeft();
    if (!std::exchange(isToldToEnd, true))
        callGuarded([] {
            NSNotificationCenter::defaultCenter().postNotificationName(
                NSApplicationWillTerminateNotification, &NSApplication::sharedApplication());
        });
    isToldToEnd = false;
}

} // namespace

void QtApplicationService::watchQuit() {
    // For each application object that is made, and the one that is there.
    qAddPreRoutine([] {
        QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit,
            QCoreApplication::instance(), &applicationQuits);
    });
}

bool QtApplicationService::isEnding() const { return isToldToEnd || QtRunLoop::isLeaving(); }

bool QtApplicationService::prepareToTerminate() {
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return true;
    // The modal ones first: Qt does not let the user close those below either.
    QList<QPointer<QWindow>> windows {QGuiApplication::modalWindow()};
    for (QWindow* const window : QGuiApplication::topLevelWindows())
        windows += window;
    for (const auto& window : windows) {
        if (window && window->isVisible() && !window->close())
            return false;
    }
    return true;
}

void QtApplicationService::exit() {
    if (QThread::currentThread()->loopLevel() == 0)
        std::exit(EXIT_SUCCESS);
    isToldToEnd = true;
    QCoreApplication::exit();
    // Where that was but a dialog's loop, the application's has yet to begin.
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [] {
            if (isToldToEnd)
                QCoreApplication::exit();
        },
        Qt::QueuedConnection);
}

} // namespace kw::qt

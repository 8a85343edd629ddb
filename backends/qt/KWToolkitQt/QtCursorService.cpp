// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/QtCursorService.h>

#include <QPointer>
#include <QWidget>

namespace kw::qt {

namespace {

QPointer<QWidget>& viewsUnderMouse() {
    static QPointer<QWidget> views;
    return views;
}

Qt::CursorShape toQt(NSCursor::Shape shape) {
    switch (shape) {
    case NSCursor::Shape::iBeam:
        return Qt::IBeamCursor;
    case NSCursor::Shape::pointingHand:
        return Qt::PointingHandCursor;
    case NSCursor::Shape::arrow:
        break;
    }
    return Qt::ArrowCursor;
}

} // namespace

void QtCursorService::set(NSCursor cursor) {
    if (QWidget* const views = viewsUnderMouse())
        views->setCursor(toQt(cursor.shape()));
}

void QtCursorService::mouseEntered(QWidget& views) { viewsUnderMouse() = &views; }

void QtCursorService::mouseLeft(QWidget& views) {
    views.unsetCursor();
    if (viewsUnderMouse() == &views)
        viewsUnderMouse() = nullptr;
}

} // namespace kw::qt

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/QtSystemColors.h>

#include <KWToolkitQt/QtFonts.h>

#include <QGuiApplication>
#include <QPalette>

namespace kw::qt {

namespace {

QPalette::ColorRole roleOf(SystemColor color) {
    switch (color) {
    case SystemColor::controlText:
        break;
    case SystemColor::textBackground:
        return QPalette::Base;
    }
    return QPalette::WindowText;
}

} // namespace

NSColor QtSystemColors::color(SystemColor color) {
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return PlainSystemColors().color(color);
    // Also while the window is not active: the colors must not depend on who asks.
    return toNSColor(QGuiApplication::palette().color(QPalette::Active, roleOf(color)));
}

} // namespace kw::qt

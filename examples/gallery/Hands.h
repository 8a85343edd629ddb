// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <Qt>

#include <memory>

class QWidget;

namespace gallery {

/// A visitor's hands on mouse and keyboard.
class Hands {
public:
    virtual ~Hands() = default;
    virtual void moveMouse(QWidget& widget, QPoint place) = 0;
    virtual void pressMouse(QWidget& widget, QPoint place) = 0;
    virtual void releaseMouse(QWidget& widget, QPoint place) = 0;
    /// Letters, by their capital, Qt::Key_Alt, Qt::Key_Return, Qt::Key_Tab and Qt::Key_Escape.
    virtual void pressKey(Qt::Key key) = 0;
    virtual void releaseKey(Qt::Key key) = 0;
    /// Whether other programs, too, see what the hands do.
    virtual bool areReal() const = 0;
};

/// Hands that reach no further than this program.
std::unique_ptr<Hands> postedHands();

} // namespace gallery

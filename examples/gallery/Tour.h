// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Hands.h"

#include <QDir>
#include <QFile>
#include <QPixmap>
#include <QString>

#include <functional>
#include <memory>

class QWidget;

namespace gallery {

/// A visit to the gallery by a script: it acts with its hands, looks whether what should happen
/// does, takes pictures, and writes all that down, in `tour.log` and on standard output.
class Tour {
public:
    /// The folder is made where there is none.
    Tour(QWidget& window, const QString& folder);

    Hands& hands() { return *m_hands; }
    /// Clicks, and waits until the widget has seen it: hands may be faster than the desktop.
    void click(QWidget& widget);
    /// Clicks what opens a modal window and waits until that is closed: `use` gets the window,
    /// and closes it.
    void clickToOpen(QWidget& widget, const std::function<void(QWidget& modal)>& use);

    /// Waits, at most ten seconds, until `seen` is what is expected.
    bool expect(const QString& what, const QString& expected, const std::function<QString()>& seen);
    /// Saves the window as a PNG of this name.
    void takePicture(const QString& name);
    void takePicture(const QString& name, const QPixmap& picture);
    /// As it looks on the screen where there is one, a window with its frame.
    QPixmap pictureOf(QWidget& widget);
    /// The one window in front of the other.
    QPixmap pictureOf(QWidget& front, QWidget& back);
    void write(const QString& line);

    /// Ends the log. Whether everything expected was seen.
    bool finish();

private:
    static QPixmap screenAt(const QRect& place);

    QWidget& m_window;
    QDir m_folder;
    QFile m_log;
    std::unique_ptr<Hands> m_hands;
    int m_failures = 0;
};

} // namespace gallery

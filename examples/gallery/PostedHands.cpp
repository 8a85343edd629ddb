// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "Hands.h"

#include <QApplication>
#include <QTest>

namespace gallery {

namespace {

class PostedHands final : public Hands {
public:
    void moveMouse(QWidget& widget, QPoint place) override { QTest::mouseMove(&widget, place); }
    void pressMouse(QWidget& widget, QPoint place) override {
        QTest::mousePress(&widget, Qt::LeftButton, m_modifiers, place);
    }
    void releaseMouse(QWidget& widget, QPoint place) override {
        QTest::mouseRelease(&widget, Qt::LeftButton, m_modifiers, place);
    }
    void pressKey(Qt::Key key) override { send(QEvent::KeyPress, key); }
    void releaseKey(Qt::Key key) override { send(QEvent::KeyRelease, key); }
    bool areReal() const override { return false; }

private:
    void send(QEvent::Type type, Qt::Key key) {
        if (QWidget* const widget = QApplication::focusWidget()) {
            const bool isLetter = key >= Qt::Key_A && key <= Qt::Key_Z;
            QKeyEvent event(
                type, key, m_modifiers, isLetter ? QString(QChar(key)).toLower() : QString());
            QApplication::sendEvent(widget, &event);
        }
        if (key == Qt::Key_Alt)
            m_modifiers.setFlag(Qt::AltModifier, type == QEvent::KeyPress);
    }

    Qt::KeyboardModifiers m_modifiers;
};

} // namespace

std::unique_ptr<Hands> postedHands() { return std::make_unique<PostedHands>(); }

} // namespace gallery

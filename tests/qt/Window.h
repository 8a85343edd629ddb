// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// A window with a widget of views in it, shown and active.
#pragma once

#include <KWToolkitQt/ViewWidget.h>

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QTest>
#include <QVBoxLayout>

#include <memory>
#include <string>
#include <vector>

namespace kw {

/// A view that keeps what happens to it.
class Probe : public NSView {
public:
    explicit Probe(NSRect frame, bool isFlipped = false)
        : NSView(frame)
        , m_isFlipped(isFlipped) { }

    bool isFlipped() const override { return m_isFlipped; }
    bool acceptsFirstResponder() const override { return true; }
    bool becomeFirstResponder() override { return note("become"); }
    bool resignFirstResponder() override { return note("resign"); }
    bool acceptsFirstMouse(const NSEvent&) override { return takesFirstMouse; }
    void keyDown(const NSEvent& event) override { take("keyDown", event); }
    void keyUp(const NSEvent& event) override { take("keyUp", event); }
    void flagsChanged(const NSEvent& event) override { take("flags", event); }
    void mouseDown(const NSEvent& event) override { take("down", event); }
    void mouseUp(const NSEvent& event) override { take("up", event); }
    void mouseDragged(const NSEvent& event) override { take("dragged", event); }
    void drawRect(NSGraphicsContext&, NSRect rect) override { drawn.push_back(rect); }

    std::vector<std::string> takeLog() { return std::exchange(log, {}); }

    bool takesFirstMouse = false;
    NSEvent last;
    std::vector<std::string> log;
    std::vector<NSRect> drawn;

private:
    bool note(const char* what) {
        log.emplace_back(what);
        return true;
    }
    void take(const char* what, const NSEvent& event) {
        note(what);
        last = event;
    }
    bool m_isFlipped;
};

/// The widget lies above a line edit.
struct Window {
    explicit Window(std::shared_ptr<NSView> root)
        : views(new qt::ViewWidget(std::move(root)))
        , other(new QLineEdit) {
        auto* const content = new QWidget;
        auto* const layout = new QVBoxLayout(content);
        layout->addWidget(views, 0, Qt::AlignLeft | Qt::AlignTop);
        layout->addWidget(other);
        window.setCentralWidget(content);
        other->setFocus();
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    void click(QPoint place) { QTest::mouseClick(views, Qt::LeftButton, {}, place); }

    /// QTest's own key functions press the modifiers that are given, too.
    void modifier(QEvent::Type type, Qt::Key key, Qt::KeyboardModifiers before = {}) {
        QKeyEvent event(type, key, before);
        QApplication::sendEvent(views, &event);
    }

    QMainWindow window;
    qt::ViewWidget* views;
    QLineEdit* other;
};

} // namespace kw

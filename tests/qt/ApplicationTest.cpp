// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Alerts as message boxes, and the application's end.
#include <KWToolkitQt/QtServices.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSNotificationCenter.h>
#include <KWToolkit/platform/ui/NSAlert.h>
#include <KWToolkit/platform/ui/NSApplication.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include <algorithm>
#include <functional>
#include <utility>

namespace {

using namespace kw;

/// Does something when the next event loop runs.
void soon(std::function<void()> task) {
    QMetaObject::invokeMethod(qApp, std::move(task), Qt::QueuedConnection);
}

class QtApplication : public testing::Test {
protected:
    QtApplication() { qt::useQtServices(); }
    /// Answers the alert with what the task does to its box.
    static int answer(NSAlert& alert, const std::function<void(QMessageBox&)>& task) {
        soon([&] { task(*dynamic_cast<QMessageBox*>(QApplication::activeModalWidget())); });
        return alert.runModal();
    }
    static QPushButton* button(QMessageBox& box, const QString& title) {
        for (QPushButton* const button : box.findChildren<QPushButton*>()) {
            if (button->text() == title && button->isVisible())
                return button;
        }
        ADD_FAILURE() << title.toStdString();
        return nullptr;
    }
};

TEST_F(QtApplication, AlertsAnswerWithTheButton) {
    NSAlert alert;
    alert.setMessageText("<b>Delete</b> & \"more\"?");
    alert.setInformativeText("<i>All</i>\nof it");
    for (const char* const title : {"Save & Quit", "Cancel", "Third"})
        alert.addButtonWithTitle(title);
    using Task = std::function<void(QMessageBox&)>;
    const std::pair<int, Task> rows[] = {
        {1000, [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); }},
        {1000, [](QMessageBox& box) { button(box, "Save && Quit")->click(); }},
        {1001, [](QMessageBox& box) { button(box, "Cancel")->click(); }},
        {1002, [](QMessageBox& box) { button(box, "Third")->click(); }},
        {0, [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); }},
        {0, [](QMessageBox& box) { box.close(); }},
    };
    for (const auto& [response, task] : rows)
        EXPECT_EQ(answer(alert, task), response);

    NSAlert plain;
    EXPECT_EQ(answer(plain, [](QMessageBox& box) { box.close(); }), 0);
    EXPECT_EQ(answer(plain, [](QMessageBox& box) { button(box, "OK")->click(); }), 1000);
    // The box goes with the window above which it is.
    auto* const window = new QWidget;
    window->show();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    EXPECT_EQ(answer(plain, [&](QMessageBox&) { delete window; }), 0);

    answer(alert, [](QMessageBox& box) {
        QStringList shown;
        for (const QLabel* const label : box.findChildren<QLabel*>()) {
            shown += label->text();
            EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->text().toStdString();
        }
        EXPECT_EQ(std::ranges::count_if(box.buttons(), &QAbstractButton::isVisible), 3);
        EXPECT_TRUE(shown.contains("<b>Delete</b> & \"more\"?"));
        EXPECT_TRUE(shown.contains("<i>All</i>\nof it"));
        box.close();
    });
}

TEST_F(QtApplication, AlertsCanBeSuppressed) {
    NSAlert alert;
    alert.setShowsSuppressionButton(true);
    std::vector<double> sizes;
    for (const double size : {NSFont::systemFontSize, NSFont::smallSystemFontSize}) {
        alert.suppressionButton().font.size = size;
        answer(alert, [&](QMessageBox& box) {
            sizes.push_back(box.checkBox()->font().pointSizeF());
            box.checkBox()->click();
            box.close();
        });
        EXPECT_EQ(alert.suppressionButton().isOn, sizes.size() == 1);
    }
    EXPECT_GT(sizes[0], sizes[1]);
}

/// Refuses to close until it is told otherwise; may do something when it is asked.
class Window final : public QWidget {
public:
    bool refuses = false;
    std::function<void()> asked = [] { };

protected:
    void closeEvent(QCloseEvent* event) override {
        asked();
        event->setAccepted(!refuses);
    }
};

TEST_F(QtApplication, TheEndIsToldOnceUnlessAWindowRefuses) {
    const auto terminate = [] { NSApplication::sharedApplication().terminate(); };
    int told = 0;
    auto& center = NSNotificationCenter::defaultCenter();
    const auto observer = center.addObserver(
        NSApplicationWillTerminateNotification, nullptr, [&](const auto&) { ++told; });
    Window first, second;
    const auto show = [&] {
        first.show();
        second.show();
    };

    show();
    second.refuses = true;
    soon([&] {
        terminate();
        EXPECT_EQ(told, 0);
        EXPECT_TRUE(second.isVisible());
        second.refuses = false;
        second.asked = terminate; // as a main window may
        terminate();
        terminate();
        EXPECT_FALSE(first.isVisible() || second.isVisible());
    });
    EXPECT_EQ(QApplication::exec(), 0);
    EXPECT_EQ(told, 1);

    second.asked = [] { };
    NSAlert alert;
    const std::function<void()> ends[] = {
        [] { QApplication::quit(); },
        [] { QApplication::exit(3); },
        [&] {
            first.close();
            second.close();
        },
        terminate,
        [&] { EXPECT_EQ(answer(alert, [&](QMessageBox&) { terminate(); }), 0); },
    };
    for (const auto& end : ends) {
        told = 0;
        show();
        soon(end);
        QApplication::exec();
        EXPECT_EQ(told, 1);
    }
    center.removeObserver(observer);
}

TEST_F(QtApplication, WithoutALoopTheProcessExits) {
    Window window;
    window.show();
    EXPECT_EXIT(NSApplication::sharedApplication().terminate(), testing::ExitedWithCode(0), "");
}

} // namespace

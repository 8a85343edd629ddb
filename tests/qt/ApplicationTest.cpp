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
    using Task = std::function<void(QMessageBox&)>;
    /// Answers the alert with what the task does to its box.
    static int answer(NSAlert& alert, const Task& task) {
        soon([&] { task(*dynamic_cast<QMessageBox*>(QApplication::activeModalWidget())); });
        return alert.runModal();
    }
    static Task click(const char* title) {
        return [title](QMessageBox& box) {
            for (QAbstractButton* const button : box.buttons()) {
                if (button->text() == title && button->isVisible())
                    return button->click();
            }
            ADD_FAILURE() << title;
        };
    }
    static Task press(Qt::Key key) {
        return [key](QMessageBox& box) { QTest::keyClick(&box, key); };
    }
};

TEST_F(QtApplication, AlertsAnswerWithTheButton) {
    NSAlert alert;
    alert.setMessageText("<b>Delete</b> & \"more\"?");
    alert.setInformativeText("<i>All</i>\nof it");
    NSAlert plain;
    QStringList shown;
    const auto read = [&](QMessageBox& box) {
        for (const QLabel* const label : box.findChildren<QLabel*>()) {
            shown += label->text();
            EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->text().toStdString();
        }
        EXPECT_EQ(std::ranges::count_if(box.buttons(), &QAbstractButton::isVisible), 3);
        box.close();
    };
    for (const char* const title : {"Save & Quit", "Cancel", "Third"})
        alert.addButtonWithTitle(title);
    const struct {
        NSAlert& alert;
        int response;
        Task task;
    } rows[] = {
        {alert, 1000, press(Qt::Key_Return)},
        {alert, 1000, click("Save && Quit")},
        {alert, 1001, click("Cancel")},
        {alert, 1002, click("Third")},
        {alert, 0, press(Qt::Key_Escape)},
        {alert, 0, read},
        {plain, 1000, click("OK")},
        {plain, 0, press(Qt::Key_Escape)},
    };
    for (const auto& row : rows)
        EXPECT_EQ(answer(row.alert, row.task), row.response);
    EXPECT_TRUE(shown.contains("<b>Delete</b> & \"more\"?"));
    EXPECT_TRUE(shown.contains("<i>All</i>\nof it"));

    // A box goes with the window above which it is.
    auto* const window = new QWidget;
    window->show();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    EXPECT_EQ(answer(plain, [&](QMessageBox&) { delete window; }), 0);
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
        [] { QApplication::closeAllWindows(); },
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

TEST_F(QtApplication, TheEndThatAnAlertsLoopWasToldIsThatOfTheApplication) {
    NSAlert alert;
    EXPECT_EQ(
        answer(alert, [](QMessageBox&) { NSApplication::sharedApplication().terminate(); }), 0);
    EXPECT_EQ(QApplication::exec(), 0);
}

TEST_F(QtApplication, WithoutALoopTheProcessExits) {
    Window window;
    window.show();
    EXPECT_EXIT(NSApplication::sharedApplication().terminate(), testing::ExitedWithCode(0), "");
}

} // namespace

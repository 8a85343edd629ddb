// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <tests/support/ChildProcess.h>
#include <tests/support/PrivateDisplay.h>

#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests))
        return RUN_ALL_TESTS();
    const kw::test::PrivateDisplay display;
    qputenv("DISPLAY", display.name().c_str());
    qputenv("QT_QPA_PLATFORM", "xcb");
    // It takes the focus when it starts.
    kw::test::ChildProcess manager({"openbox", "--sm-disable", "--startup", "echo started"});
    for (auto line = manager.readLine(); line && *line != "started";)
        line = manager.readLine();
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}

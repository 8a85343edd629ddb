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
    // Before Qt looks for one.
    const kw::test::ChildProcess manager({"openbox", "--sm-disable"});
    kw::test::ChildProcess watch({"xprop", "-spy", "-root", "_NET_SUPPORTING_WM_CHECK"});
    for (auto line = watch.readLine(); line && line->find("window id") == std::string::npos;)
        line = watch.readLine();
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}

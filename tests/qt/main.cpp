// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // The names of the tests are asked for where no display need be.
    if (GTEST_FLAG_GET(list_tests))
        return RUN_ALL_TESTS();
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}

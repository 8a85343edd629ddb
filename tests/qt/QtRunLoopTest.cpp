// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/QtServices.h>
#include <tests/support/WatchContract.h>

#include <QApplication>

namespace kw::test {

namespace {

RunLoop& qtLoop() {
    qt::useQtServices();
    return Platform::runLoop();
}

const auto ofQt = testing::Values(RunLoopMaker {
    "Qt", [] { return std::shared_ptr<RunLoop>(std::shared_ptr<void>(), &qtLoop()); }, false});
INSTANTIATE_TEST_SUITE_P(Qt, RunLoopContract, ofQt, nameOfLoop);
INSTANTIATE_TEST_SUITE_P(Qt, WaitingRunLoopContract, ofQt, nameOfLoop);
INSTANTIATE_TEST_SUITE_P(Qt, WatchContract, ofQt, nameOfLoop);

TEST(QtRunLoop, RunsInsideTheHostsLoop) {
    bool isCalled = false;
    qtLoop().callAfter(0, [&] { isCalled = true; });
    qtLoop().callAfter(0.01, [] { QApplication::exit(); });
    QApplication::exec();
    EXPECT_TRUE(isCalled);
}

TEST(QtRunLoop, ServesThreadsThatQtDidNotStart) {
    bool isCalled = false;
    std::thread([&, outer = &qtLoop()] {
        RunLoop& own = Platform::runLoop();
        EXPECT_NE(&own, outer);
        own.callAfter(0.001, [&] {
            isCalled = true;
            own.stop();
        });
        own.run();
    }).join();
    EXPECT_TRUE(isCalled);
}

} // namespace

} // namespace kw::test

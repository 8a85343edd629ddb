// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/QtServices.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkitQt/QtAlertService.h>
#include <KWToolkitQt/QtApplicationService.h>
#include <KWToolkitQt/QtCursorService.h>
#include <KWToolkitQt/QtImageDecoder.h>
#include <KWToolkitQt/QtRunLoop.h>
#include <KWToolkitQt/QtSystemColors.h>
#include <KWToolkitQt/QtTextMetrics.h>
#include <KWToolkitQt/QtViewLoader.h>
#include <KWToolkitQt/QtWindowService.h>

#include <QCoreApplication>

namespace kw::qt {

void useQtServices() {
    // Once: a factory that the host sets later is not replaced.
    [[maybe_unused]] static const bool isDone = [] {
        setServiceFactory<RunLoop>([] { return std::make_unique<QtRunLoop>(); });
        setServiceFactory<AlertService>([] { return std::make_unique<QtAlertService>(); });
        setServiceFactory<ApplicationService>(
            [] { return std::make_unique<QtApplicationService>(); });
        setServiceFactory<ImageDecoder>([] { return std::make_unique<QtImageDecoder>(); });
        setServiceFactory<CursorService>([] { return std::make_unique<QtCursorService>(); });
        setServiceFactory<TextMetrics>([] { return std::make_unique<QtTextMetrics>(); });
        setServiceFactory<SystemColors>([] { return std::make_unique<QtSystemColors>(); });
        setServiceFactory<ViewLoader>([] { return std::make_unique<QtViewLoader>(); });
        setServiceFactory<WindowService>([] { return std::make_unique<QtWindowService>(); });
        QtApplicationService::watchQuit();
        // So that other threads know the main thread's loop before anyone asks there.
        qAddPreRoutine([] { Platform::runLoop(); });
        return true;
    }();
}

namespace {

[[maybe_unused]] const bool isUsedOnceLoaded = (useQtServices(), true);

} // namespace

} // namespace kw::qt

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "Mover.h"

#include <KWToolkit/appservices/PFMoveApplication.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSBundle.h>
#include <KWToolkit/platform/foundation/NSPathUtilities.h>
#include <KWToolkit/platform/headless/HeadlessSearchPaths.h>
#include <KWToolkitQt/QtServices.h>

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWindow>

#include <utility>

namespace gallery {

bool isMover() {
    return kw::lastPathComponent(kw::NSBundle::mainBundle().bundlePath()) == "Mover.app";
}

int runMover(int argc, char** argv) {
    const QApplication application(argc, argv);
    kw::qt::useQtServices();
    // The machine's own folder is not for playing.
    const std::string home = kw::Platform::searchPaths().homeFolder().value_or("");
    kw::HeadlessSearchPaths paths;
    paths.localApplications = {home + "/machine/Applications"};
    paths.userApplications = {home + "/Applications"};
    paths.downloads = {home + "/Downloads"};
    const kw::ServiceScope pathsScope(paths);
    kw::PFMoveToApplicationsFolderIfNecessary();

    const std::string place = kw::NSBundle::mainBundle().bundlePath().substr(home.size());
    QDialog window;
    auto* const layout = new QVBoxLayout(&window);
    auto* const quit = new QPushButton("Quit");
    layout->setContentsMargins(32, 24, 32, 24);
    layout->setSpacing(16);
    layout->addWidget(new QLabel(QString::fromStdString("Mover runs from ~" + place)));
    layout->addWidget(quit);
    QObject::connect(quit, &QPushButton::clicked, &window, &QDialog::accept);
    QObject::connect(&application, &QGuiApplication::focusWindowChanged, &window,
        [&place, isTold = false](const QWindow* focused) mutable {
            if (focused && !std::exchange(isTold, true))
                kw::Platform::console().writeLine("Mover runs from ~" + place);
        });
    window.exec();
    return 0;
}

} // namespace gallery

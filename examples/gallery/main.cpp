// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The gallery: a page for each of the toolkit's facilities.
#include "Desktop.h"
#include "GalleryWindow.h"
#include "Tour.h"

#include <QApplication>
#include <QTest>

#include <cstdio>
#include <cstring>

namespace {

constexpr const char* usage =
    "usage: gallery [--tour DIR]\n"
    "Shows the toolkit's facilities. With --tour a script uses them, and leaves pictures and a\n"
    "log in DIR; it exits with 1 if anything did not happen as expected.\n";

int fail(const char* message) {
    std::fputs(message, stderr);
    return 2;
}

int runTour(gallery::GalleryWindow& window, const QString& folder) {
    gallery::Tour tour(window, folder);
    tour.expect("the window", "active",
        [&] { return QString(window.isActiveWindow() ? "active" : "not active"); });
    window.visitAll(tour);
    return tour.finish() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    const bool isTour = argc == 3 && std::strcmp(argv[1], "--tour") == 0;
    if (argc != 1 && !isTour)
        return fail(usage);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && !gallery::hasDisplay()) {
        if (!isTour)
            return fail("gallery: there is no display (is DISPLAY set?)\n"
                        "gallery --tour DIR needs none, and leaves pictures in DIR.\n");
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }

    const QApplication application(argc, argv);
    gallery::GalleryWindow window;
    window.resize(720, 520);
    window.show();
    window.activateWindow();
    return isTour ? runTour(window, argv[2]) : QApplication::exec();
}

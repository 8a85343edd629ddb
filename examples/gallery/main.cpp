// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The gallery: a page for each of the toolkit's facilities.
#include "Desktop.h"
#include "GalleryWindow.h"
#include "Mover.h"
#include "Tour.h"
#include "WebPages.h"

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSBundle.h>

#include <QApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

namespace {

constexpr const char* usage =
    "usage: gallery [URL...]\n"
    "       gallery --tour DIR [PAGE]\n"
    "Shows the toolkit's facilities. URLs go to the gallery that runs already, if there is one, "
    "and\n"
    "are shown on its page. With --tour a script uses them, or those of one page, and leaves\n"
    "pictures and a log in DIR; it exits with 1 if anything did not happen as expected.\n";

int fail(const char* message) {
    std::fputs(message, stderr);
    return 2;
}

// What the sanitizers would report is what it is for.
__attribute__((noinline, no_sanitize("undefined"))) int readNullPointer() {
    const int* volatile nothing = nullptr;
    return *nothing; // NOLINT(clang-analyzer-core.NullDereference): it is what it is for
}

/// Makes a folder the user's home, so that a tour neither sees nor changes the user's own files.
/// False where the folder could not be made.
bool moveTo(const QTemporaryDir& home) {
    if (!home.isValid())
        return false;
    // Displays look for their key in the home.
    if (qEnvironmentVariableIsEmpty("XAUTHORITY"))
        qputenv("XAUTHORITY", qgetenv("HOME") + "/.Xauthority");
    qputenv("HOME", home.path().toLocal8Bit());
    for (const char* const folder :
        {"XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
        qunsetenv(folder);
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:"); // a gallery may run there
    return QDir(home.path()).mkpath(".local/share");
}

int runTour(gallery::GalleryWindow& window, const QString& folder, const QString& page) {
    gallery::Tour tour(window, folder);
    tour.expect("the window", "active",
        [&] { return QString(window.isActiveWindow() ? "active" : "not active"); });
    if (!window.visit(tour, page))
        return fail("gallery: there is no such page\n");
    return tour.finish() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    if (gallery::isMover())
        return gallery::runMover(argc, argv);
    kw::NSBundle::mainBundle().declare({
        .name = "KWToolkitGallery", // names its folder
        .identifier = "org.kwtoolkit.Gallery",
        .version = "0.1.0",
    });
    // Not for users: the gallery crashes a child process.
    if (argc == 2 && std::strcmp(argv[1], "--crash") == 0) {
        gallery::writeCrashReports();
        return readNullPointer();
    }
    const bool isTour = argc >= 3 && argc <= 4 && std::strcmp(argv[1], "--tour") == 0;
    const std::vector<std::string> urls(argv + 1, isTour ? argv + 1 : argv + argc);
    if (std::ranges::any_of(urls, [](const std::string& url) { return url.starts_with('-'); }))
        return fail(usage);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && !gallery::hasDisplay()) {
        if (!isTour)
            return fail("gallery: there is no display (is DISPLAY set?)\n"
                        "gallery --tour DIR needs none, and leaves pictures in DIR.\n");
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }

    std::optional<QTemporaryDir> home;
    if (isTour && !moveTo(home.emplace()))
        return fail("gallery: there is no room for a temporary home\n");
    gallery::useWebPages();
    const QApplication application(argc, argv);
    if (!urls.empty() && kw::Platform::urlEvents().receive(urls) == kw::UrlReception::elsewhere)
        return 0;
    gallery::GalleryWindow window;
    window.resize(720, 520);
    window.show();
    window.activateWindow();
    return isTour ? runTour(window, argv[2], argv[3]) : QApplication::exec();
}

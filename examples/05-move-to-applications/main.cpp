// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// An application that offers to move itself: 05-move-to-applications --bundle ~/Downloads makes
// "Mover.app" there; start Mover in it.
#include <KWToolkit/KWToolkit.h>
#include <KWToolkitQt/QtServices.h>

#include <QApplication>
#include <QLabel>

#include <cstring>
#include <filesystem>
#include <iostream>
#include <system_error>

namespace {

namespace fs = std::filesystem;

constexpr const char* usage = "usage: 05-move-to-applications --bundle FOLDER\n"
                              "Makes an application \"Mover.app\" in the folder. Its program, "
                              "Mover.app/Mover, offers to move\n"
                              "the application into the Applications folder.\n";

int makeBundle(const fs::path& folder) {
    const fs::path bundle = folder / "Mover.app";
    std::error_code error;
    if (fs::create_directory(bundle, error) && !error)
        fs::copy_file(kw::NSBundle::mainBundle().info().executablePath, bundle / "Mover", error);
    else if (!error)
        error = std::make_error_code(std::errc::file_exists);
    if (error) {
        std::cerr << "05-move-to-applications: " << bundle.string() << ": " << error.message()
                  << "\n";
        return 1;
    }
    std::cout << "start " << (bundle / "Mover").string() << '\n';
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::strcmp(argv[1], "--bundle") == 0)
        return makeBundle(argv[2]);
    const std::string path = kw::NSBundle::mainBundle().bundlePath();
    if (argc != 1 || fs::path(path).extension() != ".app") {
        std::cerr << usage;
        return 2;
    }

    const QApplication application(argc, argv);
    kw::qt::useQtServices();
    kw::PFMoveToApplicationsFolderIfNecessary();
    std::cout << "running from " << path << '\n' << std::flush;
    QLabel window(QString("I run from\n%1").arg(QString::fromStdString(path)));
    window.setMargin(32);
    window.show();
    return QApplication::exec();
}

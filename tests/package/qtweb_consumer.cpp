// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
//
// A Qt host: asks with a web page, and answers itself.
#include <KWToolkit/KWToolkit.h>
#include <KWToolkit/platform/ui/NSApplication.h>
#include <KWToolkitQtWeb/QtWeb.h>

#include <QApplication>

#include <iostream>

int main(int argc, char** argv) {
    kw::qt::useQtWeb();
    const QApplication application(argc, argv);
    kw::RunAfterDelay([] { kw::NSApplication::sharedApplication().stopModalWithCode(5); }, 0.1);
    const int code = kw::KWHtmlModal::htmlWindowWithSize({300, 200}, std::nullopt);
    std::cout << "qtweb consumer: code " << code << "\n";
    return code == 5 ? 0 : 1;
}

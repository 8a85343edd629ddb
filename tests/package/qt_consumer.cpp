// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
//
// A Qt host: shows a hotkey recorder.
#include <KWToolkit/hotkeys/KWHotkeyView.h>
#include <KWToolkitQt/ViewWidget.h>

#include <QApplication>

#include <iostream>
#include <memory>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    kw::qt::ViewWidget widget(std::make_shared<kw::KWHotkeyView>(kw::NSMakeRect(0, 0, 240, 48)));
    widget.show();
    const bool drew = !widget.grab().isNull();
    std::cout << "qt consumer: " << (drew ? "drew a recorder" : "drew nothing") << "\n";
    return drew ? 0 : 1;
}

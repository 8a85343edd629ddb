// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/NSWindow.h>

#include <KWToolkit/platform/ui/NSTextView.h>

namespace kw {

NSWindow::NSWindow(ViewHost& host)
    : m_host(host) { }

NSWindow::~NSWindow() = default;

Class& NSWindow::classObject() {
    static auto& object = *new Class("NSWindow", NSResponder::classObject());
    return object;
}

bool NSWindow::isKeyWindow() const { return m_host.isKey(); }

NSResponder& NSWindow::firstResponder() {
    NSView* const view = m_host.firstResponder();
    return view ? static_cast<NSResponder&>(*view) : *this;
}

bool NSWindow::makeFirstResponder(NSView* view) { return m_host.makeFirstResponder(view); }

std::shared_ptr<NSTextView> NSWindow::fieldEditor(bool createFlag, const NSObject*) {
    if (!m_fieldEditor && createFlag)
        m_fieldEditor = std::make_shared<NSTextView>();
    return m_fieldEditor;
}

} // namespace kw

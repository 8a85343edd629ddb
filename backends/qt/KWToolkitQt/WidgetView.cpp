// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/WidgetView.h>

#include <KWToolkitQt/ViewWidget.h>

namespace kw::qt {

WidgetView::WidgetView(std::unique_ptr<QWidget> widget)
    : NSView(widget ? NSMakeRect(0, 0, widget->width(), widget->height()) : NSRect {})
    , m_widget(widget.release()) { }

WidgetView::~WidgetView() {
    if (!m_widget)
        return;
    m_widget->hide();
    m_widget->setParent(nullptr);
    m_widget->deleteLater();
}

Class& WidgetView::classObject() {
    static auto& object = *new Class("WidgetView", NSView::classObject());
    return object;
}

NSView* WidgetView::viewWithIdentifier(const std::string& identifier) {
    if (NSView* const found = NSView::viewWithIdentifier(identifier); found || !m_widget)
        return found;
    for (QWidget* const widget : m_widget->findChildren<QWidget*>()) {
        const auto* const views = dynamic_cast<ViewWidget*>(widget);
        if (NSView* const inside =
                views ? views->rootView()->viewWithIdentifier(identifier) : nullptr)
            return inside;
    }
    return nullptr;
}

} // namespace kw::qt

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/NSView.h>

#include <QPointer>
#include <QWidget>

#include <memory>
#include <string>

namespace kw::qt {

/// Shows a Qt widget in a tree of views. Main thread.
class KW_EXPORT WidgetView : public NSView {
public:
    /// Owns the widget, also while it is shown and has a parent. The view is as large as the
    /// widget.
    explicit WidgetView(std::unique_ptr<QWidget> widget);
    /// Deletes the widget from the event loop: it may be the widget that makes the view go.
    ~WidgetView() override;

    static Class& classObject();
    Class& isa() const override { return classObject(); }

    /// Null once somebody else has deleted it.
    QWidget* widget() const { return m_widget; }
    /// Looks among the views of the `ViewWidget`s in the widget, too.
    NSView* viewWithIdentifier(const std::string& identifier) override;

private:
    QPointer<QWidget> m_widget;
};

} // namespace kw::qt

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/NSView.h>

#include <QWidget>

#include <memory>

namespace kw::qt {

/// Shows a tree of views in any layout of Qt widgets.
///
///     auto recorder = std::make_shared<kw::KWHotkeyView>(kw::NSMakeRect(0, 0, 260, 56));
///     layout->addWidget(new kw::qt::ViewWidget(recorder));
///
/// The root view is as large as the widget; the size it comes with is the size hint. A view draws
/// whole whenever a part of it is to be drawn. The views take the left mouse button, and the
/// keyboard while the widget has the focus: first responder is the view that was clicked last or
/// that Tab led to. Every key is offered to the views before the host's shortcuts see it, except
/// what is typed into a text, and what they throw is written to `Platform::console()`. What they do
/// with a key or a button of the mouse may delete the widget. In a `QScrollArea` a view that gets
/// the focus is scrolled to.
///
/// Buttons and the text that is being edited are widgets over their views (see ViewPeer.h). They
/// lie above everything that views draw.
class KW_EXPORT ViewWidget : public QWidget {
public:
    /// Null shows an empty view.
    explicit ViewWidget(std::shared_ptr<NSView> rootView, QWidget* parent = nullptr);
    /// Takes the focus from the first responder; the views may live on.
    ~ViewWidget() override;

    const std::shared_ptr<NSView>& rootView() const;
    /// The view that has the keyboard focus, or gets it together with the widget. Null for none.
    NSView* firstResponder() const;

    QSize sizeHint() const override;

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* peer, QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    friend class QtWindow;
    class Private;
    /// Null for a window of the host's.
    ViewWidget(NSWindow* window, std::shared_ptr<NSView> rootView, QWidget* parent);
    /// Makes the widgets over the views now. Those that come once a modal window is shown may cost
    /// it that: for a web page Qt makes another window of it, and forgets that it is modal.
    void updatePeers();
    /// Lets go of the views, hides and deletes the widget soon.
    void retire();

    std::shared_ptr<Private> d;
};

} // namespace kw::qt

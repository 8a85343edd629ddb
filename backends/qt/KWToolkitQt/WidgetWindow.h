// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/WindowService.h>

#include <QDeadlineTimer>
#include <QMargins>
#include <QPointer>
#include <QRect>
#include <QWidget>

namespace kw::qt {

/// A top-level widget as a window: what holds for anybody's. Once the widget is gone it does
/// nothing, and answers as one that is hidden.
class WidgetWindow : public NativeWindow {
public:
    NSEdgeInsets frameMargins() const override;
    NSRect frame() const override;
    void setFrame(NSRect frame) override;
    NSRect visibleScreenFrame() const override;
    void orderFront(bool isKey) override;
    void orderOut() override;
    bool isVisible() const override;
    void setModal(bool isModal) override;
    void beginMove() override;
    void setOpacity(double opacity) override;
    NSWindowOpacity opacity() const override;

protected:
    /// Null once it is gone.
    virtual QWidget* topLevel() const = 0;
    /// Of the decoration.
    virtual QMargins margins() const;
    /// Without the decoration, in Qt's coordinates.
    virtual void setContentRect(const QRect& rect);

    static QRect toPixels(const NSRect& rect);

private:
    QRect contentRect() const;

    QRect m_asked; // for the content
    QDeadlineTimer m_answer; // until when the X server may still tell of what was before
    Qt::WindowModality m_formerModality = Qt::NonModal;
};

/// The host's window that a widget is in just now. What is in it, and what it is called, is the
/// host's.
class HostsWindow final : public WidgetWindow {
public:
    explicit HostsWindow(QWidget& part)
        : m_part(&part) { }

    void setLimits(NSSize, NSSize) override { }
    void setTitle(const std::string&) override { }
    void setContentView(std::shared_ptr<NSView>) override { }
    void setBackground(const std::optional<NSColor>&, bool) override { }

protected:
    QWidget* topLevel() const override { return m_part ? m_part->window() : nullptr; }

private:
    QPointer<QWidget> m_part;
};

} // namespace kw::qt

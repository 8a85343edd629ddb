// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/ButtonPeer.h>

#include <KWToolkit/platform/Guarded.h>
#include <KWToolkit/platform/ui/NSButton.h>
#include <KWToolkitQt/FollowingPeer.h>
#include <KWToolkitQt/QtFonts.h>

#include <QKeyEvent>
#include <QPushButton>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <QTextLayout>

#include <algorithm>

namespace kw::qt {

namespace {

constexpr double disabledOpacity = 0.5; // of a title with colors of its own

class Button final : public QPushButton {
public:
    Button(NSButton& view, QWidget& parent);
    void follow(const NSButton& view);
    void forgetView() { m_view = nullptr; }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void paintTitle(QStylePainter& painter, const QRectF& area) const;

    NSButton* m_view;
    NSAttributedString m_title; // as shown
    bool m_hasAttributes = false;
};

Button::Button(NSButton& view, QWidget& parent)
    : QPushButton(&parent)
    , m_view(&view) {
    setAutoDefault(false);
    setFocusPolicy(Qt::ClickFocus);
    connect(this, &QPushButton::clicked, this, [this] {
        if (!m_view)
            return;
        const auto alive = m_view->weak_from_this().lock();
        callGuarded([this] { m_view->performClick(); });
    });
}

void Button::follow(const NSButton& view) {
    if (view.attributedTitle() != m_title) {
        m_title = view.attributedTitle();
        m_hasAttributes = std::ranges::any_of(
            m_title.runs(), [](const auto& run) { return !run.attributes.isEmpty(); });
        // No letter of it is a shortcut.
        setText(toQString(m_title.string()).replace(u'&', QStringLiteral("&&")));
        update();
    }
    if (const bool isDefault = view.keyEquivalent() == "\r"; isDefault != this->isDefault())
        setDefault(isDefault);
    if (view.isEnabled() != isEnabled())
        setEnabled(view.isEnabled());
}

void Button::keyPressEvent(QKeyEvent* event) {
    // The Return key is for the default button, by its key equivalent.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        event->ignore();
    else
        QPushButton::keyPressEvent(event);
}

void Button::paintEvent(QPaintEvent* event) {
    if (!m_hasAttributes) {
        QPushButton::paintEvent(event);
        return;
    }
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    option.text.clear();
    painter.drawControl(QStyle::CE_PushButton, option);
    QRectF area = style()->subElementRect(QStyle::SE_PushButtonContents, &option, this);
    if (isDown())
        area.translate(style()->pixelMetric(QStyle::PM_ButtonShiftHorizontal, &option, this),
            style()->pixelMetric(QStyle::PM_ButtonShiftVertical, &option, this));
    paintTitle(painter, area);
}

void Button::paintTitle(QStylePainter& painter, const QRectF& area) const {
    QTextLayout layout(toQString(m_title.string()), font(), this);
    QList<QTextLayout::FormatRange> formats;
    int begin = 0;
    for (const auto& run : m_title.runs()) {
        const auto text =
            std::string_view(m_title.string()).substr(run.range.location, run.range.length);
        QTextLayout::FormatRange format {begin, static_cast<int>(toQString(text).size()), {}};
        begin += format.length;
        if (run.attributes.font)
            format.format.setFont(toQFont(*run.attributes.font, *this));
        if (run.attributes.foregroundColor)
            format.format.setForeground(toQColor(*run.attributes.foregroundColor));
        formats.push_back(format);
    }
    layout.setFormats(formats);
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    if (!line.isValid())
        return;
    painter.setPen(palette().color(QPalette::ButtonText));
    painter.setOpacity(isEnabled() ? 1 : disabledOpacity);
    const QSizeF room = area.size() - QSizeF(line.naturalTextWidth(), line.height());
    layout.draw(&painter, area.topLeft() + QPointF(std::max(room.width(), 0.0), room.height()) / 2);
}

} // namespace

std::unique_ptr<ViewPeer> makeButtonPeer(NSView& view, QWidget& parent) {
    return std::make_unique<FollowingPeer<NSButton, Button>>(view, parent);
}

} // namespace kw::qt

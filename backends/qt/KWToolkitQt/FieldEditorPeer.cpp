// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/FieldEditorPeer.h>

#include <KWToolkit/platform/Guarded.h>
#include <KWToolkit/platform/ui/NSControl.h>
#include <KWToolkit/platform/ui/NSTextView.h>
#include <KWToolkitQt/QtFonts.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPixmap>
#include <QProxyStyle>
#include <QTimer>

#include <algorithm>
#include <limits>
#include <string_view>

namespace kw::qt {

namespace {

// What QLineEdit keeps free around its text and behind it, and where its cursor is in `cursorRect`.
constexpr int sideMargin = 2;
constexpr int topMargin = 1;
constexpr int cursorRoom = 2;
constexpr int cursorInset = 5;

/// A place in the UTF-8 form as one in the UTF-16 form.
int toUtf16(std::string_view text, std::size_t place) {
    return static_cast<int>(toQString(text.substr(0, place)).size());
}

NSRange toUtf8(const QString& text, int location, int length) {
    const auto size = [](QStringView part) {
        return static_cast<std::size_t>(part.toUtf8().size());
    };
    const QStringView all(text);
    return {size(all.left(location)), size(all.mid(location, length))};
}

Qt::Alignment toQt(NSTextAlignment alignment) {
    switch (alignment) {
    case NSTextAlignmentLeft:
        return Qt::AlignLeft | Qt::AlignAbsolute;
    case NSTextAlignmentRight:
        return Qt::AlignRight | Qt::AlignAbsolute;
    case NSTextAlignmentCenter:
        return Qt::AlignHCenter;
    default:
        return Qt::AlignLeft; // by the text's direction
    }
}

bool isReturn(const QKeyEvent& event) {
    return (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter)
        && !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
}

/// No background, and no cursor: Qt's has no color, but inverts.
class BareStyle final : public QProxyStyle {
public:
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
        const QWidget* widget) const override {
        if (element != PE_PanelLineEdit)
            QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
    int pixelMetric(
        PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        return metric == PM_TextCursorWidth ? 0 : QProxyStyle::pixelMetric(metric, option, widget);
    }
};

class LineEdit final : public QLineEdit {
public:
    LineEdit(NSTextView& view, QWidget& parent);
    void follow(const NSTextView& view);
    void forgetView() { m_view = nullptr; }

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    template <class Task>
    void tell(const Task& task);
    NSRange selection() const;
    bool insertNewline();
    void fitMargins();
    void showCaret();

    NSTextView* m_view;
    bool m_isUpdating = false;
    QPalette m_colors;
    QColor m_caretColor;
    QTimer m_blinking;
    bool m_isCaretShown = false;
};

LineEdit::LineEdit(NSTextView& view, QWidget& parent)
    : QLineEdit(&parent)
    , m_view(&view) {
    auto* const style = new BareStyle;
    style->setParent(this);
    setStyle(style);
    setFrame(false);
    setFocusPolicy(Qt::ClickFocus);
    setMaxLength(std::numeric_limits<int>::max());
    connect(this, &QLineEdit::textChanged, this, [this](const QString& text) {
        fitMargins();
        showCaret();
        tell([&](NSTextView& told) { told.userDidChange(text.toStdString(), selection()); });
    });
    const auto selected = [this] {
        showCaret();
        tell([&](NSTextView& told) { told.userDidSelect(selection()); });
    };
    connect(this, &QLineEdit::selectionChanged, this, selected);
    connect(this, &QLineEdit::cursorPositionChanged, this, selected);
    connect(&m_blinking, &QTimer::timeout, this, [this] {
        m_isCaretShown = !m_isCaretShown;
        update();
    });
}

template <class Task>
void LineEdit::tell(const Task& task) {
    if (!m_view || m_isUpdating)
        return;
    const auto alive = m_view->weak_from_this().lock();
    callGuarded([&] { task(*m_view); });
}

NSRange LineEdit::selection() const {
    return hasSelectedText() ? toUtf8(text(), selectionStart(), selectionLength())
                             : toUtf8(text(), cursorPosition(), 0);
}

void LineEdit::follow(const NSTextView& view) {
    m_isUpdating = true;
    if (const QFont font = toQFont(view.font(), *this); font != this->font())
        setFont(font);
    if (const auto alignment = toQt(view.alignment()) | Qt::AlignTop;
        alignment != this->alignment())
        setAlignment(alignment);

    const QColor textColor = toQColor(view.textColor());
    const auto& selected = view.selectedTextAttributes();
    QPalette colors;
    colors.setColor(QPalette::Text, textColor);
    if (selected.backgroundColor)
        colors.setColor(QPalette::Highlight, toQColor(*selected.backgroundColor));
    if (selected.foregroundColor)
        colors.setColor(QPalette::HighlightedText, toQColor(*selected.foregroundColor));
    if (colors != m_colors || colors.resolveMask() != m_colors.resolveMask()) {
        m_colors = colors;
        setPalette(colors);
    }
    const auto& caretColor = view.insertionPointColor();
    if (const QColor color = caretColor ? toQColor(*caretColor) : textColor;
        color != m_caretColor) {
        m_caretColor = color;
        update();
    }

    const std::string& string = view.string();
    if (const QString text = toQString(string); text != this->text())
        setText(text); // forgets what could be undone
    const NSRange range = view.selectedRange();
    const int begin = toUtf16(string, range.location);
    const int length = toUtf16(string, range.location + range.length) - begin;
    const bool isShown = hasSelectedText()
        ? selectionStart() == begin && selectionLength() == length
        : cursorPosition() == begin && length == 0;
    if (!isShown && length > 0)
        setSelection(begin, length);
    else if (!isShown)
        setCursorPosition(begin);
    fitMargins();
    m_isUpdating = false;
}

// The text begins at the left edge and ends at the right one, though QLineEdit wants room beside
// it. It scrolls only where the text is wider.
void LineEdit::fitMargins() {
    const bool fits = fontMetrics().horizontalAdvance(text()) <= width();
    const QMargins margins(
        -sideMargin, -topMargin, -sideMargin - (fits ? cursorRoom : 0), -topMargin);
    if (margins != textMargins())
        setTextMargins(margins);
}

bool LineEdit::event(QEvent* event) {
    // Before somebody's shortcut.
    if (event->type() == QEvent::ShortcutOverride && isReturn(static_cast<QKeyEvent&>(*event))) {
        event->accept();
        return true;
    }
    return QLineEdit::event(event);
}

void LineEdit::keyPressEvent(QKeyEvent* event) {
    if (isReturn(*event))
        event->setAccepted(insertNewline());
    else
        QLineEdit::keyPressEvent(event);
}

/// Whether it has done all that there is to do; else it is for the window's default button.
bool LineEdit::insertNewline() {
    bool isTaken = false;
    tell([&](NSTextView& told) {
        const auto control = std::dynamic_pointer_cast<NSControl>(told.delegate());
        isTaken = control && control->action() && control->target();
        told.insertNewline();
    });
    return isTaken;
}

void LineEdit::mousePressEvent(QMouseEvent* event) {
    // It knows how far the text is scrolled once it has painted it.
    QPixmap nowhere(1, 1);
    render(&nowhere, {}, {}, {});
    QLineEdit::mousePressEvent(event);
}

void LineEdit::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    showCaret();
}

void LineEdit::resizeEvent(QResizeEvent* event) {
    QLineEdit::resizeEvent(event);
    fitMargins();
}

void LineEdit::showCaret() {
    m_isCaretShown = true;
    if (const int period = QApplication::cursorFlashTime(); period > 1 && hasFocus())
        m_blinking.start(period / 2);
    else
        m_blinking.stop();
    update();
}

void LineEdit::paintEvent(QPaintEvent* event) {
    QLineEdit::paintEvent(event);
    if (!hasFocus()) {
        m_blinking.stop();
        return;
    }
    if (!m_isCaretShown || hasSelectedText())
        return;
    // At the end of a text that fills the width it would be outside.
    const QRect cursor = cursorRect();
    const int x = std::clamp(cursor.x() + cursorInset, 0, std::max(width() - 1, 0));
    QPainter painter(this);
    painter.fillRect(x, cursor.y(), 1, fontMetrics().height(), m_caretColor);
}

class FieldEditorPeer final : public ViewPeer {
public:
    FieldEditorPeer(NSTextView& view, QWidget& parent)
        : m_view(view)
        , m_line(*new LineEdit(view, parent)) { }
    ~FieldEditorPeer() override { m_line.forgetView(); }

    QWidget& widget() override { return m_line; }
    void update() override { m_line.follow(m_view); }

private:
    NSTextView& m_view;
    LineEdit& m_line;
};

} // namespace

std::unique_ptr<ViewPeer> makeFieldEditorPeer(NSView& view, QWidget& parent) {
    return std::make_unique<FieldEditorPeer>(dynamic_cast<NSTextView&>(view), parent);
}

} // namespace kw::qt

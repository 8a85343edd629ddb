// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/FieldEditorPeer.h>

#include <KWToolkit/platform/Guarded.h>
#include <KWToolkit/platform/ui/NSControl.h>
#include <KWToolkit/platform/ui/NSTextView.h>
#include <KWToolkitQt/FollowingPeer.h>
#include <KWToolkitQt/QtFonts.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPixmap>
#include <QPointer>
#include <QRegularExpression>
#include <QTimer>

#include <algorithm>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

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

/// How many bytes of `string` are read as what its reading begins with. Each byte that is no UTF-8
/// is read as one replacement character.
std::size_t bytesOf(QStringView beginning, std::string_view string) {
    constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
    constexpr std::string_view replacement = "\xef\xbf\xbd";
    std::size_t place = string.starts_with(byteOrderMark) ? byteOrderMark.size() : 0; // not read
    for (qsizetype index = 0; index < beginning.size() && place < string.size(); ++index) {
        const QChar unit = beginning[index];
        const bool isPair = unit.isHighSurrogate() && index + 1 < beginning.size();
        if (isPair)
            ++index;
        if (unit == QChar::ReplacementCharacter && string.substr(place, 3) != replacement)
            place += 1;
        else
            place += isPair ? 4 : unit.unicode() < 0x80 ? 1 : unit.unicode() < 0x800 ? 2 : 3;
    }
    return std::min(place, string.size());
}

/// `text` with spaces for the line breaks in what is not from `before`.
QString withoutNewBreaks(const QString& before, QString text) {
    static const QRegularExpression lineBreak(QStringLiteral("\\R"));
    const auto shorter = std::min(before.size(), text.size());
    const auto begin = std::mismatch(text.cbegin(), text.cbegin() + shorter, before.cbegin()).first
        - text.cbegin();
    const auto end =
        std::mismatch(text.crbegin(), text.crbegin() + shorter - begin, before.crbegin()).first
        - text.crbegin();
    const auto length = text.size() - begin - end;
    return text.replace(
        begin, length, text.mid(begin, length).replace(lineBreak, QStringLiteral(" ")));
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

// It is nearer than all sheets of the host, whatever these say of line edits or of all widgets. Of
// line edits only, as the menu inherits it.
const QString sheetBegin = QStringLiteral(
    "QLineEdit { border: none; border-image: none; border-radius: 0; background: transparent;"
    " margin: 0; padding: 0; min-width: 0; min-height: 0; max-width: 16777215;"
    " max-height: 16777215; ");

// Sheets leave the font of a line edit alone that is named as the sample of Qt's font dialog.
const QString nameForOwnFont = QStringLiteral("qt_fontDialog_sampleEdit");

class LineEdit final : public QLineEdit {
public:
    LineEdit(NSTextView& view, QWidget& parent);
    void follow(const NSTextView& view);
    void forgetView() { m_view = nullptr; }

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* parent, QEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void followText(const NSTextView& view);
    void noteChange();
    void tellChange();
    NSRange selectionIn(const std::string& string) const;
    bool insertNewline();
    void hideOwnCursor();
    void fitMargins();
    void showCaret();

    NSTextView* m_view;
    bool m_isUpdating = false;
    bool m_isInEvent = false;
    bool m_isChanged = false; // by the user, and the view is not told yet
    std::string m_known; // what both had last
    QColor m_caretColor;
    QTimer m_blinking;
    bool m_isCaretShown = false;
};

LineEdit::LineEdit(NSTextView& view, QWidget& parent)
    : QLineEdit(&parent)
    , m_view(&view) {
    setObjectName(nameForOwnFont);
    setFrame(false);
    setFocusPolicy(Qt::ClickFocus);
    setMaxLength(std::numeric_limits<int>::max());
    hideOwnCursor();
    parent.installEventFilter(this);
    connect(this, &QLineEdit::textChanged, this, [this] {
        fitMargins();
        showCaret();
        noteChange();
    });
    const auto selected = [this] {
        showCaret();
        if (m_view && !m_isUpdating && !m_isChanged)
            m_view->userDidSelect(selectionIn(m_view->string()));
    };
    connect(this, &QLineEdit::selectionChanged, this, selected);
    connect(this, &QLineEdit::cursorPositionChanged, this, selected);
    connect(&m_blinking, &QTimer::timeout, this, [this] {
        m_isCaretShown = !m_isCaretShown;
        update();
    });
}

// QLineEdit goes on after it has told of a change, and whoever is told may have it deleted: so the
// view is told once QLineEdit is done.
void LineEdit::noteChange() {
    if (m_isUpdating)
        return;
    m_isChanged = true;
    if (!m_isInEvent) // but by the menu, say
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

/// May delete it.
void LineEdit::tellChange() {
    if (!m_view || !std::exchange(m_isChanged, false))
        return;
    const auto view = m_view->weak_from_this().lock();
    NSTextView& told = *m_view;
    const QString before = toQString(told.string());
    if (const QString line = withoutNewBreaks(before, text()); line != text()) {
        const auto behind = text().size() - cursorPosition();
        m_isUpdating = true;
        setText(line);
        setCursorPosition(static_cast<int>(line.size() - behind));
        m_isUpdating = false;
    }
    std::string string = text() == before ? told.string() : text().toStdString();
    const NSRange selection = selectionIn(string);
    m_known = string;
    callGuarded([&] { told.userDidChange(std::move(string), selection); });
}

/// In bytes of what the text is read from.
NSRange LineEdit::selectionIn(const std::string& string) const {
    const QString all = text();
    const int begin = hasSelectedText() ? selectionStart() : cursorPosition();
    const std::size_t location = bytesOf(QStringView(all).left(begin), string);
    const std::size_t end = bytesOf(QStringView(all).left(begin + selectionLength()), string);
    return {location, end - location};
}

void LineEdit::follow(const NSTextView& view) {
    m_isUpdating = true;
    QFont font = toQFont(view.font(), *this);
    font.setResolveMask(QFont::AllPropertiesResolved); // nothing is inherited
    if (font != this->font())
        setFont(font);
    if (const auto alignment = toQt(view.alignment()) | Qt::AlignTop;
        alignment != this->alignment())
        setAlignment(alignment);

    const QColor textColor = toQColor(view.textColor());
    const auto& selected = view.selectedTextAttributes();
    QString sheet = sheetBegin + "color: " + textColor.name(QColor::HexArgb);
    if (selected.backgroundColor)
        sheet += "; selection-background-color: "
            + toQColor(*selected.backgroundColor).name(QColor::HexArgb);
    if (selected.foregroundColor)
        sheet += "; selection-color: " + toQColor(*selected.foregroundColor).name(QColor::HexArgb);
    sheet += " }";
    if (sheet != styleSheet())
        setStyleSheet(sheet);
    const auto& caretColor = view.insertionPointColor();
    if (const QColor color = caretColor ? toQColor(*caretColor) : textColor;
        color != m_caretColor) {
        m_caretColor = color;
        update();
    }

    // What the user has changed meanwhile stays, if the view has not changed as well.
    if (!m_isChanged || view.string() != m_known)
        followText(view);
    fitMargins();
    m_isUpdating = false;
}

void LineEdit::followText(const NSTextView& view) {
    const std::string& string = view.string();
    m_known = string;
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
    const QPointer<LineEdit> self = this;
    if (event->type() == QEvent::KeyPress && isReturn(static_cast<QKeyEvent&>(*event))) {
        tellChange();
        event->setAccepted(self && insertNewline());
        return true;
    }
    const bool isInner = std::exchange(m_isInEvent, true);
    const bool isTaken = QLineEdit::event(event);
    if (self) {
        m_isInEvent = isInner;
        if (!isInner)
            tellChange();
    }
    return isTaken;
}

bool LineEdit::eventFilter(QObject* parent, QEvent* event) {
    // The application's font may have changed, of which a widget with a font hears only this way.
    if (event->type() == QEvent::FontChange && m_view)
        follow(*m_view);
    return QLineEdit::eventFilter(parent, event);
}

/// Whether it has done all that there is to do; else it is for the window's default button.
bool LineEdit::insertNewline() {
    if (!m_view)
        return false;
    const auto view = m_view->weak_from_this().lock();
    NSTextView& told = *m_view;
    const auto control = std::dynamic_pointer_cast<NSControl>(told.delegate());
    const bool isTaken = control && control->action() && control->target();
    callGuarded([&] { told.insertNewline(); });
    return isTaken;
}

// Qt's cursor has no color, but inverts, and has a flag in text of both directions. An input method
// may hide it, until it says something else.
void LineEdit::hideOwnCursor() {
    QInputMethodEvent nothing;
    inputMethodEvent(&nothing);
}

void LineEdit::inputMethodEvent(QInputMethodEvent* event) {
    using Attribute = QInputMethodEvent::Attribute;
    auto attributes = event->attributes();
    auto cursor = std::ranges::find_if(
        attributes, [](const Attribute& each) { return each.type == QInputMethodEvent::Cursor; });
    if (cursor == attributes.end())
        cursor = attributes.insert(cursor,
            Attribute(
                QInputMethodEvent::Cursor, static_cast<int>(event->preeditString().size()), 0));
    cursor->length = 0;
    QInputMethodEvent shown(event->preeditString(), attributes);
    shown.setCommitString(
        event->commitString(), event->replacementStart(), event->replacementLength());
    QLineEdit::inputMethodEvent(&shown);
    event->setAccepted(shown.isAccepted());
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

} // namespace

std::unique_ptr<ViewPeer> makeFieldEditorPeer(NSView& view, QWidget& parent) {
    return std::make_unique<FollowingPeer<NSTextView, LineEdit>>(view, parent);
}

} // namespace kw::qt

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/controls/KWTextFieldCell.h>

#include <KWToolkit/controls/NSBezierPath+RoundPath.h>
#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>
#include <KWToolkit/platform/ui/NSTextView.h>
#include <KWToolkit/platform/ui/NSWindow.h>

namespace kw {

KWTextFieldCell::KWTextFieldCell(std::string text)
    : NSTextFieldCell(std::move(text)) {
    setDrawsBackground(false);
}

Class& KWTextFieldCell::classObject() {
    using Cell = KWTextFieldCell;
    static auto& object = *new Class("KWTextFieldCell", NSTextFieldCell::classObject(), {},
        {
            property("selectionColor", &Cell::m_selectionColor),
            property("altBgColor", &Cell::m_altBgColor),
            property("borderColor", &Cell::m_borderColor),
            property("insertionPointColor", &Cell::m_insertionPointColor),
            property("inactiveInsertionPointColor", &Cell::m_inactiveInsertionPointColor),
            property("inactiveSelectionColor", &Cell::m_inactiveSelectionColor),
            property("cornerRadius", &Cell::m_cornerRadius),
            property("borderSize", &Cell::m_borderSize),
        });
    return object;
}

// Deliberate: the base class is not told.
void KWTextFieldCell::awakeFromNib() {
    const KWTextFieldCell fresh;
    m_selectionColor = fresh.m_selectionColor;
    m_altBgColor = fresh.m_altBgColor;
    m_borderColor = fresh.m_borderColor;
    m_insertionPointColor = fresh.m_insertionPointColor;
    m_inactiveInsertionPointColor = fresh.m_inactiveInsertionPointColor;
    m_inactiveSelectionColor = fresh.m_inactiveSelectionColor;
    m_cornerRadius = fresh.m_cornerRadius;
    m_borderSize = fresh.m_borderSize;
    setDrawsBackground(fresh.drawsBackground());
}

void KWTextFieldCell::drawWithFrame(NSGraphicsContext& context, NSRect frame, NSView& view) {
    const NSBezierPath background = roundBezierPath(
        frame, static_cast<float>(m_cornerRadius), static_cast<float>(m_borderSize));
    context.setFillColor(m_altBgColor);
    context.fill(background);
    if (m_borderColor && m_borderSize >= 1) {
        context.setStrokeColor(*m_borderColor);
        context.stroke(background);
    }

    // Deliberate: whoever the editor works for.
    NSWindow* const shownIn = view.window();
    if (const auto editor = shownIn ? shownIn->fieldEditor(false, &view) : nullptr) {
        const auto control = controlView();
        NSWindow* const controlWindow = control ? control->window() : nullptr;
        auto selected = editor->selectedTextAttributes();
        if (showsFirstResponder() && controlWindow && controlWindow->isKeyWindow()) {
            selected.backgroundColor = m_selectionColor;
            editor->setInsertionPointColor(NSColor::whiteColor());
        } else {
            if (m_inactiveInsertionPointColor)
                editor->setInsertionPointColor(m_inactiveInsertionPointColor);
            if (m_inactiveSelectionColor)
                selected.backgroundColor = m_inactiveSelectionColor;
        }
        editor->setSelectedTextAttributes(std::move(selected));
    }
    NSTextFieldCell::drawInteriorWithFrame(context, frame, view);
}

} // namespace kw

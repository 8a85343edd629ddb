// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Controls that draw themselves, beside a button and an editor that are the desktop's own.
#include <KWToolkit/KWToolkit.h>
#include <KWToolkit/controls/KWPillBadge.h>
#include <KWToolkit/controls/KWSeparatorView.h>
#include <KWToolkit/controls/KWShadowedTextField.h>
#include <KWToolkit/controls/KWTextFieldCell.h>
#include <KWToolkit/platform/ui/NSButton.h>
#include <KWToolkitQt/QtServices.h>
#include <KWToolkitQt/ViewWidget.h>

#include <QApplication>
#include <QFile>
#include <QPixmap>

#include <iostream>
#include <memory>
#include <utility>

namespace {

constexpr const char* usage =
    "usage: 11-controls [PICTURE.png]\n"
    "Shows a badge with a count that a button raises, and two fields to type into. With a file,\n"
    "shows no window: clicks the button once and writes what that looks like.\n";

/// The cell's colors are for those who derive from it.
class BorderedCell final : public kw::KWTextFieldCell {
public:
    BorderedCell() {
        m_altBgColor = kw::NSColor::colorWithCalibratedWhite(1, 0.12);
        m_borderColor = kw::NSColor::colorWithCalibratedWhite(1, 0.5);
        m_cornerRadius = 6;
    }
};

class ControlsView final : public kw::NSView {
public:
    ControlsView()
        : kw::NSView(kw::NSMakeRect(0, 0, 320, 180)) {
        m_badge->setShadowColor(kw::NSColor::colorWithCalibratedWhite(0, 0.6));
        m_badge->setShadowBlurRadius(3);
        m_badge->setTextFont(kw::NSFont::boldSystemFontOfSize(13));
        m_button->setTitle("One more");
        m_button->setTarget(*this);
        m_button->setAction(kw::SEL("raise"));
        raise();

        m_name->awakeFromNib(); // the defaults of one from a layout file
        m_name->setPadding({6, 4});
        m_name->setHighlightHoverWithColor(kw::NSColor::colorWithCalibratedWhite(1, 0.15));
        m_name->setTextColor(kw::NSColor::whiteColor());
        m_name->setShadowColor(kw::NSColor::colorWithCalibratedWhite(0, 0.8));
        m_name->setStringValue("Click to rename");
        m_name->sizeWidthToFit();

        m_search->setCell(std::make_shared<BorderedCell>());
        m_search->setTextColor(kw::NSColor::whiteColor());
        m_search->setAlignment(kw::NSTextAlignmentCenter);
        m_search->setPlaceholderString("Search");

        for (const auto& view : std::initializer_list<std::shared_ptr<kw::NSView>> {
                 m_badge, m_button, m_name, m_search, m_separator})
            addSubview(view);
    }

    static kw::Class& classObject() {
        static kw::Class object(
            "ControlsView", kw::NSView::classObject(), {kw::method("raise", &ControlsView::raise)});
        return object;
    }
    kw::Class& isa() const override { return classObject(); }

    void drawRect(kw::NSGraphicsContext& context, kw::NSRect rect) override {
        context.setFillColor(kw::NSColor::colorWithCalibratedRed(0.2, 0.25, 0.33, 1));
        context.fill(kw::NSBezierPath::bezierPathWithRect(rect));
    }

    kw::NSButton& button() { return *m_button; }

private:
    void raise() {
        m_badge->setCounterValue(++m_count);
        m_badge->setNeedsDisplay(); // its setters do not ask for it
    }

    int m_count = 0;
    std::shared_ptr<kw::KWPillBadge> m_badge =
        std::make_shared<kw::KWPillBadge>(kw::NSMakeRect(20, 132, 64, 30));
    std::shared_ptr<kw::NSButton> m_button =
        std::make_shared<kw::NSButton>(kw::NSMakeRect(100, 131, 110, 32));
    std::shared_ptr<kw::KWShadowedTextField> m_name =
        std::make_shared<kw::KWShadowedTextField>(kw::NSMakeRect(20, 92, 200, 26));
    std::shared_ptr<kw::NSTextField> m_search =
        std::make_shared<kw::NSTextField>(kw::NSMakeRect(20, 60, 280, 18));
    std::shared_ptr<kw::KWSeparatorView> m_separator =
        std::make_shared<kw::KWSeparatorView>(kw::NSMakeRect(0, 0, 320, 40));
};

} // namespace

int main(int argc, char** argv) {
    if (argc > 2 || (argc == 2 && argv[1][0] == '-')) {
        std::cerr << usage;
        return 2;
    }
    if (argc == 2)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    kw::qt::useQtServices();

    const auto view = std::make_shared<ControlsView>();
    kw::qt::ViewWidget widget(view);
    widget.setWindowTitle("Controls");
    widget.setFixedSize(widget.sizeHint());
    if (argc == 1) {
        widget.show();
        return QApplication::exec();
    }
    view->button().performClick();
    if (widget.grab().save(QFile::decodeName(argv[1]), "PNG"))
        return 0;
    std::cerr << "11-controls: " << argv[1] << ": cannot be written\n";
    return 1;
}

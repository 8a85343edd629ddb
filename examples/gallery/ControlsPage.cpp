// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "ControlsPage.h"

#include "Tour.h"
#include "Widgets.h"

#include <KWToolkit/controls/KWControlledView.h>
#include <KWToolkit/controls/KWEmbossedTextField.h>
#include <KWToolkit/controls/KWEvenSeparatorView.h>
#include <KWToolkit/controls/KWOddSeparatorView.h>
#include <KWToolkit/controls/KWPillBadge.h>
#include <KWToolkit/controls/KWSeparatorView.h>
#include <KWToolkit/controls/KWShadowedTextField.h>
#include <KWToolkit/controls/KWTextFieldCell.h>
#include <KWToolkit/controls/KWViewController.h>
#include <KWToolkit/controls/NSButton+TextColor.h>
#include <KWToolkit/platform/ui/NSNib.h>
#include <KWToolkit/platform/ui/NSTextView.h>
#include <KWToolkit/platform/ui/NSWindow.h>

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>

#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gallery {

namespace {

constexpr double width = 496;
constexpr double captionHeight = 14;
constexpr const char* longText = "1234567";

kw::NSColor rgb(double red, double green, double blue, double alpha = 1) {
    return kw::NSColor::colorWithCalibratedRed(red, green, blue, alpha);
}
kw::NSColor white(double level, double alpha = 1) {
    return kw::NSColor::colorWithCalibratedWhite(level, alpha);
}

/// The cell's colors are for those who derive from it.
class Cell final : public kw::KWTextFieldCell {
public:
    explicit Cell(bool hasBorder, int radius) {
        m_altBgColor = rgb(0.35, 0.5, 0.75, 0.3);
        m_selectionColor = rgb(0.85, 0.35, 0.2);
        m_cornerRadius = radius;
        if (hasBorder) {
            m_borderColor = rgb(0.35, 0.5, 0.75);
        } else {
            // Of one cell in a window: each that is drawn colors the editor that they share.
            m_inactiveSelectionColor = white(0.6);
            m_inactiveInsertionPointColor = white(0.6);
        }
    }
};

/// A ground for what is always dark.
class Strip final : public kw::NSView {
public:
    using NSView::NSView;
    void drawRect(kw::NSGraphicsContext& context, kw::NSRect) override {
        context.setFillColor(white(0.75));
        context.fill(kw::NSBezierPath::bezierPathWithRoundedRect(bounds(), 4, 4));
    }
};

/// Passes keys on, unlike most; so they reach its controller.
class KeyView final : public kw::KWControlledView {
public:
    using KWControlledView::KWControlledView;
    NSView* hitTest(kw::NSPoint point) override {
        return KWControlledView::hitTest(point) ? this : nullptr; // not the text in it
    }
    bool acceptsFirstResponder() const override { return true; }
    bool becomeFirstResponder() override { return redraw(true); }
    bool resignFirstResponder() override { return redraw(false); }
    void drawRect(kw::NSGraphicsContext& context, kw::NSRect) override {
        const kw::NSBezierPath outline =
            kw::NSBezierPath::bezierPathWithRoundedRect(kw::NSInsetRect(bounds(), 1, 1), 5, 5);
        context.setFillColor(rgb(0.35, 0.5, 0.75, m_hasKeyboard ? 0.35 : 0.12));
        context.fill(outline);
    }

private:
    bool redraw(bool hasKeyboard) {
        m_hasKeyboard = hasKeyboard;
        setNeedsDisplay();
        return true;
    }
    bool m_hasKeyboard = false;
};

constexpr const char* chainText = "Click here and type a key";

class KeyController final : public kw::KWViewController {
public:
    using KWViewController::KWViewController;
    static kw::Class& classObject() {
        static kw::Class object("KeyController", kw::KWViewController::classObject());
        return object;
    }
    kw::Class& isa() const override { return classObject(); }

    void viewDidLoad() override {
        m_label = std::make_shared<kw::NSTextField>(kw::NSMakeRect(10, 3, 460, 18));
        m_label->setEditable(false);
        m_label->setStringValue(chainText);
        view()->addSubview(m_label);
    }
    /// Who gets what the view does not take, by class.
    std::string chain() {
        std::string names;
        for (const kw::NSResponder* each = view().get(); each; each = each->nextResponder())
            names += (names.empty() ? "" : " → ") + each->isa().name();
        return names;
    }
    void keyDown(const kw::NSEvent& event) override {
        m_label->setStringValue(event.charactersIgnoringModifiers + ": " + chain());
    }
    std::string text() const { return m_label->stringValue(); }

private:
    std::shared_ptr<kw::NSTextField> m_label;
};

} // namespace

/// The controls, row by row, y down.
class ControlsPanel final : public kw::NSView {
public:
    ControlsPanel()
        : kw::NSView(kw::NSMakeRect(0, 0, width, 340)) {
        addBadges();
        addShadowedFields();
        addCells();
        addSeparators();
        addButtons();
        kw::registerViewDescription("KeyController",
            [] { return std::make_shared<KeyView>(kw::NSMakeRect(0, 0, width, 26)); });
        keys = kw::KWViewController::viewController<KeyController>();
        keys->view()->setFrame(kw::NSMakeRect(0, m_top, width, 26));
        addSubview(keys->view());
    }
    ~ControlsPanel() override { kw::registerViewDescription("KeyController", {}); }

    bool isFlipped() const override { return true; }

    void setCount(int count) {
        for (const auto& badge : m_badges) {
            if (badge == m_long)
                badge->setCounterStringValue(longText);
            else
                badge->setCounterValue(count);
            badge->setNeedsDisplay(); // its setters do not ask for it
        }
    }

    std::shared_ptr<kw::KWShadowedTextField> editing, hovered;
    std::shared_ptr<kw::NSTextField> selecting;
    std::shared_ptr<KeyController> keys;

private:
    /// A cell of a row of `count`, with its caption beneath. Returns the room for the control.
    kw::NSRect place(int index, int count, double height, const char* caption) {
        const double step = width / count;
        const double x = step * index;
        auto label = std::make_shared<kw::NSTextField>(
            kw::NSMakeRect(x, m_top + height + 1, step - 4, captionHeight));
        label->setEditable(false);
        label->setFont(kw::NSFont::systemFontOfSize(10));
        label->setStringValue(caption);
        addSubview(std::move(label));
        return kw::NSMakeRect(x, m_top, step - 10, height);
    }
    void endRow(double height) { m_top += height + captionHeight + 8; }

    void addBadges() {
        using Style = void (*)(kw::KWPillBadge&);
        const struct {
            const char* caption;
            Style style;
        } rows[] {
            {"plain", [](kw::KWPillBadge&) {}},
            {"gradient",
                [](kw::KWPillBadge& badge) {
                    badge.setBgGradient(
                        kw::NSGradient {{rgb(1, 0.62, 0.2), 0}, {rgb(0.85, 0.15, 0.3), 1}});
                    badge.setBgGradientAngle(-90);
                }},
            {"shadow",
                [](kw::KWPillBadge& badge) {
                    badge.setShadowColor(white(0, 0.8));
                    badge.setShadowBlurRadius(4);
                }},
            {"outline",
                [](kw::KWPillBadge& badge) {
                    badge.setStrokeColor(rgb(0.15, 0.25, 0.5));
                    badge.setStrokeSize(2);
                }},
            {"hairline",
                [](kw::KWPillBadge& badge) {
                    badge.setBgColor(rgb(0.95, 0.8, 0.25));
                    badge.setTextColor(white(0.1));
                    badge.setStrokeColor(white(0.1));
                }},
            {"long text", [](kw::KWPillBadge& badge) { badge.setBgColor(rgb(0.2, 0.5, 0.8)); }},
            {"offsets",
                [](kw::KWPillBadge& badge) {
                    badge.setBgColor(rgb(0.2, 0.6, 0.35));
                    badge.setTextXoffset(10, 4);
                }},
            {"small", [](kw::KWPillBadge& badge) { badge.setBgColor(rgb(0.5, 0.35, 0.7)); }},
        };
        for (int i = 0; const auto& [caption, style] : rows) {
            kw::NSRect room = place(i++, std::size(rows), 26, caption);
            if (i == std::ssize(rows))
                room = kw::NSMakeRect(room.origin.x, room.origin.y + 10, 28, 16);
            const auto badge = std::make_shared<kw::KWPillBadge>(room);
            style(*badge);
            badge->setTextFont(kw::NSFont::boldSystemFontOfSize(
                room.size.height < 20 || caption == std::string_view("long text") ? 10 : 13));
            m_badges.push_back(badge);
            if (caption == std::string_view("long text"))
                m_long = badge;
            addSubview(badge);
        }
        endRow(26);
    }

    void addShadowedFields() {
        const struct {
            const char* caption;
            const char* value;
        } rows[] {{"plain", "Shadowed"}, {"placeholder", ""}, {"under the mouse", "Hover here"},
            {"being edited", "Type"}, {"on the right", "Right"}, {"not editable", "Fixed"}};
        for (int i = 0; const auto& [caption, value] : rows) {
            if (i == 3)
                endRow(24);
            const auto field =
                std::make_shared<kw::KWShadowedTextField>(place(i % 3, 3, 24, caption));
            field->awakeFromNib();
            field->setPadding({4, 3});
            field->setHighlightHoverWithColor(rgb(0.35, 0.5, 0.75, 0.35));
            field->setShadowColor(rgb(0.9, 0.5, 0.1, 0.55));
            field->setStringValue(value);
            field->setPlaceholderString(i == 1 ? "Placeholder" : "");
            field->setAccessibilityLabel(caption);
            if (i == 4) {
                field->setAlignment(kw::NSTextAlignmentRight);
                field->setPadding({0, 3}); // which moves the text, and makes it no narrower
            }
            field->setEditable(i != 5);
            if (i == 2)
                hovered = field;
            if (i == 3)
                editing = field;
            addSubview(field);
            ++i;
        }
        endRow(24);
    }

    void addCells() {
        const struct {
            const char* caption;
            bool hasBorder;
            int radius;
        } rows[] {{"rounded", false, 4}, {"with a border", true, 4}, {"rounder", true, 11}};
        for (int i = 0; const auto& row : rows) {
            const auto field = std::make_shared<kw::NSTextField>(place(i++, 4, 18, row.caption));
            field->setCell(std::make_shared<Cell>(row.hasBorder, row.radius));
            field->setStringValue("Select me");
            field->setAlignment(kw::NSTextAlignmentCenter);
            field->setAccessibilityLabel(row.caption);
            if (!selecting)
                selecting = field;
            addSubview(field);
        }
        const auto embossed =
            std::make_shared<kw::KWEmbossedTextField>(place(3, 4, 18, "embossed"));
        addSubview(std::make_shared<Strip>(embossed->frame()));
        embossed->setStringValue("Embossed");
        embossed->setEditable(false);
        addSubview(embossed);
        endRow(18);
    }

    void addSeparators() {
        addSubview(std::make_shared<kw::KWSeparatorView>(place(0, 3, 20, "separator")));
        addSubview(std::make_shared<kw::KWEvenSeparatorView>(place(1, 3, 20, "even")));
        addSubview(std::make_shared<kw::KWOddSeparatorView>(place(2, 3, 20, "odd")));
        endRow(20);
    }

    void addButtons() {
        const struct {
            const char* title;
            std::optional<kw::NSColor> color;
        } rows[] {{"Plain", {}}, {"Red", rgb(0.9, 0.25, 0.25)}, {"Green", rgb(0.2, 0.65, 0.35)},
            {"Disabled", rgb(0.4, 0.6, 1)}};
        for (int i = 0; const auto& [title, color] : rows) {
            const auto button = std::make_shared<kw::NSButton>(
                kw::NSMakeRect(width / 4 * i++, m_top, width / 4 - 10, 28));
            button->setTitle(title);
            if (color)
                kw::setTextColor(*button, color);
            button->setEnabled(i < 4);
            addSubview(button);
        }
        m_top += 28 + 8;
    }

    double m_top = 0;
    std::vector<std::shared_ptr<kw::KWPillBadge>> m_badges;
    std::shared_ptr<kw::KWPillBadge> m_long;
};

namespace {

QPalette themed(bool isDark) {
    const QColor window(isDark ? "#23262b" : "#f2f2f2");
    QPalette palette(window);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::Base, isDark ? QColor("#1a1c20") : Qt::white);
    palette.setColor(QPalette::Button, isDark ? QColor("#363a41") : QColor("#e4e4e4"));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, isDark ? QColor("#e8e8e8") : QColor("#202020"));
        palette.setColor(QPalette::Disabled, role, QColor("#888888"));
    }
    palette.setColor(QPalette::PlaceholderText, QColor("#888888"));
    palette.setColor(QPalette::Highlight, QColor("#3a78c9"));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

} // namespace

QWidget* ControlsPage::make() { return new ControlsPage; }

ControlsPage::ControlsPage()
    : m_panel(std::make_shared<ControlsPanel>())
    , m_screen(new kw::qt::ViewWidget(m_panel))
    , m_count(new ValueSlider({0, 150, 7, 75}, [](int value) { return QString::number(value); }))
    , m_before(QApplication::palette()) {
    m_screen->setFixedSize(m_screen->sizeHint());
    auto* const themes = new QWidget;
    m_theme = choice(*themes, {"Light theme", "Dark theme"});

    auto* const settings = new QHBoxLayout;
    settings->addWidget(themes);
    settings->addSpacing(24);
    settings->addWidget(label("Count"));
    settings->addWidget(m_count, 1);
    auto* const layout = pageLayout(*this, "Controls");
    layout->addLayout(settings);
    layout->addWidget(m_screen);
    layout->addStretch();

    connect(m_theme, &QButtonGroup::idClicked, this,
        [](int id) { QApplication::setPalette(themed(id == 1)); });
    m_count->onChange([this] { m_panel->setCount(m_count->value()); });
    m_panel->setCount(m_count->value());
}

ControlsPage::~ControlsPage() = default;

void ControlsPage::visit(Tour& tour, QWidget& page) {
    static_cast<ControlsPage&>(page).steps(tour);
}

void ControlsPage::takePictures(Tour& tour, const QString& theme) {
    tour.takePicture("controls-" + theme);
    for (const int percent : {100, 150, 200}) {
        const double scale = percent / 100.0;
        QPixmap picture((QSizeF(size()) * scale).toSize());
        picture.setDevicePixelRatio(scale);
        picture.fill(themed(theme == "dark").color(QPalette::Window));
        render(&picture);
        tour.takePicture(QString("controls-%1-%2").arg(theme).arg(percent), picture);
    }
}

void ControlsPage::steps(Tour& tour) {
    const auto middle = [this](const kw::NSView& view) {
        const kw::NSRect frame = view.frame(); // in the panel, whose y is the widget's
        return QPointF(NSMidX(frame), NSMidY(frame)).toPoint();
    };
    const auto press = [&](const kw::NSView& view) {
        tour.hands().pressMouse(*m_screen, middle(view));
        tour.hands().releaseMouse(*m_screen, middle(view));
    };
    const auto type = [&](Qt::Key key) {
        tour.hands().pressKey(key);
        tour.hands().releaseKey(key);
    };
    const auto focus = [this](const kw::NSTextField& field) {
        return QString(field.currentEditor() ? "edited" : "at rest");
    };
    const auto choose = [&](int id) {
        QWidget& button = *m_theme->button(id);
        tour.hands().pressMouse(button, {button.height() / 2, button.height() / 2});
        tour.hands().releaseMouse(button, {button.height() / 2, button.height() / 2});
        tour.expect("window color", themed(id == 1).color(QPalette::Window).name(),
            [this] { return QWidget::palette().color(QPalette::Window).name(); });
    };

    choose(0);
    m_count->click(tour, ValueSlider::Side::right, "82");

    // Typing makes the field as wide as its text.
    press(*m_panel->editing);
    tour.expect("the field, clicked", "edited", [&] { return focus(*m_panel->editing); });
    for (const Qt::Key key : {Qt::Key_H, Qt::Key_I})
        type(key);
    tour.expect("what was typed", "found", [&] {
        return m_panel->editing->stringValue().find("hi") != std::string::npos ? "found"
                                                                               : "missing";
    });
    tour.expect("the field's width", "fits", [&] {
        const double fitting = m_panel->editing->drawnStringSize().width + 8;
        return m_panel->editing->frame().size.width == fitting ? "fits" : "does not";
    });

    tour.hands().moveMouse(*m_screen, middle(*m_panel->hovered));
    tour.expect("the cursor over a field", "text",
        [this] { return m_screen->cursor().shape() == Qt::IBeamCursor ? "text" : "another"; });
    takePictures(tour, "light");

    type(Qt::Key_Tab);
    tour.expect("the field, Tab typed", "at rest", [&] { return focus(*m_panel->editing); });
    choose(1);
    press(*m_panel->selecting);
    tour.expect("the cell, clicked", "edited", [&] { return focus(*m_panel->selecting); });
    m_panel->selecting->selectText();
    tour.hands().moveMouse(*m_screen, middle(*m_panel->hovered));
    takePictures(tour, "dark");

    QLineEdit other;
    other.show();
    other.activateWindow();
    tour.expect("the window", "not active",
        [this] { return window()->isActiveWindow() ? "active" : "not active"; });
    tour.expect("the cell while the window is not key", "edited",
        [&] { return focus(*m_panel->selecting); });
    tour.takePicture("controls-not-key");
    other.close();
    window()->activateWindow();
    tour.expect("the window", "active",
        [this] { return window()->isActiveWindow() ? "active" : "not active"; });

    choose(0);
    press(*m_panel->keys->view());
    tour.expect("the view, clicked", "KWControlledView", [this] {
        return QString::fromStdString(m_panel->window()->firstResponder().isa().name());
    });
    type(Qt::Key_K);
    tour.expect("where the key went", "k: KWControlledView → KeyController → NSView → NSWindow",
        [this] { return QString::fromStdString(m_panel->keys->text()); });
    tour.takePicture("controls-responders");
    QApplication::setPalette(m_before);
}

} // namespace gallery

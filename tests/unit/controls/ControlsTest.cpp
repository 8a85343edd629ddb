// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/controls/KWEmbossedTextField.h>
#include <KWToolkit/controls/KWEvenSeparatorView.h>
#include <KWToolkit/controls/KWOddSeparatorView.h>
#include <KWToolkit/controls/KWPillBadge.h>
#include <KWToolkit/controls/KWShadowedTextField.h>
#include <KWToolkit/controls/KWTextFieldCell.h>
#include <KWToolkit/controls/NSBezierPath+RoundPath.h>
#include <KWToolkit/controls/NSButton+TextColor.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>
#include <KWToolkit/platform/foundation/NSNotificationCenter.h>
#include <KWToolkit/platform/headless/HeadlessCursorService.h>
#include <KWToolkit/platform/headless/HeadlessViewHost.h>
#include <KWToolkit/platform/headless/RecordingGraphicsContext.h>
#include <KWToolkit/platform/ui/HoverTracker.h>
#include <KWToolkit/platform/ui/NSTextView.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <tuple>
#include <utility>

namespace {

using namespace kw;
using testing::ElementsAre;
using testing::IsEmpty;
using Recording = RecordingGraphicsContext;
using Calls = std::vector<Recording::Call>;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
const NSColor blue = NSColor::colorWithCalibratedRed(0, 0, 1, 1);
const NSColor green = NSColor::colorWithCalibratedRed(0, 1, 0, 1);

NSColor white(double level, double alpha = 1) {
    return NSColor::colorWithCalibratedWhite(level, alpha);
}

Calls drawn(NSView& view) {
    Recording context;
    view.drawRect(context, {});
    return context.calls();
}

struct Shown {
    explicit Shown(NSView& view)
        : root(view) {
        root.setHost(&host);
    }
    ~Shown() { root.setHost(nullptr); }
    NSView& root;
    HeadlessViewHost host;
};

TEST(PillBadge, DrawsAFreshOneAndOneWithEverything) {
    const NSRect frame = NSMakeRect(7, 7, 60, 30);
    KWPillBadge badge(frame);
    const TextAttributes text {.font = NSFont::fontWithName("Lucida Grande", 20),
        .color = white(1),
        .paragraphStyle = {NSTextAlignmentCenter, NSLineBreakByTruncatingTail}};
    EXPECT_EQ(drawn(badge),
        (Calls {Recording::SaveState {},
            Recording::SetFillColor {NSColor::colorWithCalibratedRed(1, 0, 0, 1)},
            Recording::Fill {roundBezierPath(NSMakeRect(0, 0, 60, 30), 15, 1)},
            Recording::RestoreState {}, Recording::DrawText {"", {30, 2.5}, text}}));

    const NSGradient gradient {{blue, 0}, {green, 1}};
    badge.setShadowColor(blue);
    badge.setShadowBlurRadius(3);
    badge.setStrokeColor(green);
    badge.setStrokeSize(2);
    badge.setBgGradient(gradient);
    badge.setBgGradientAngle(-90);
    badge.setCounterValue(12);
    badge.setTextXoffset(4, -1);
    NSBezierPath outline = roundBezierPath(NSMakeRect(5, 5, 50, 20), 10, 1);
    const NSBezierPath filled = outline;
    outline.setLineWidth(2);
    EXPECT_EQ(drawn(badge),
        (Calls {Recording::SaveState {},
            Recording::SetShadow {{.color = blue, .offset = {0, 0}, .blurRadius = 3}},
            Recording::DrawGradient {gradient, filled, -90}, Recording::RestoreState {},
            Recording::SetStrokeColor {green}, Recording::Stroke {outline},
            Recording::DrawText {"12", {24, 1.5}, text}}));
}

TEST(PillBadge, MakesRoomOnlyForWhatItDraws) {
    struct Row {
        const char* what;
        bool hasShadowColor;
        double radius;
        bool hasStrokeColor;
        double width;
        std::size_t calls;
        double inset;
    };
    for (const Row& row : {Row {"shadow of radius 0", true, 0, false, 0, 5, 0},
             {"radius without a color", false, 4, false, 0, 5, 0},
             {"hairline", false, 0, true, 0, 7, 0},
             {"width without a color", false, 0, false, 3, 5, 0},
             {"negative width", false, 0, true, -2, 7, -2},
             {"radius that is no number", true, notANumber, false, 0, 6, notANumber},
             {"width that is no number", false, 0, true, notANumber, 7, notANumber}}) {
        SCOPED_TRACE(row.what);
        KWPillBadge badge(NSMakeRect(0, 0, 60, 30));
        if (row.hasShadowColor)
            badge.setShadowColor(blue);
        badge.setShadowBlurRadius(row.radius);
        if (row.hasStrokeColor)
            badge.setStrokeColor(green);
        badge.setStrokeSize(row.width);
        const Calls calls = drawn(badge);
        ASSERT_EQ(calls.size(), row.calls);
        for (const auto& call : calls) {
            if (const auto* const fill = std::get_if<Recording::Fill>(&call)) {
                const NSRect pill = NSInsetRect(NSMakeRect(0, 0, 60, 30), row.inset, row.inset);
                EXPECT_EQ(fill->path.segments().size(),
                    roundBezierPath(pill, static_cast<float>(pill.size.height / 2), 1)
                        .segments()
                        .size());
                if (row.inset == row.inset) {
                    EXPECT_EQ(fill->path,
                        roundBezierPath(pill, static_cast<float>(pill.size.height / 2), 1));
                }
            }
        }
    }
}

TEST(PillBadge, ChoosesItsFontOnceAndForGood) {
    for (const auto& [height, size] : {std::pair(30.0, 20.0), {10, 0}, {4, -6}}) {
        KWPillBadge badge(NSMakeRect(0, 0, 60, height));
        drawn(badge);
        badge.setFrame(NSMakeRect(0, 0, 60, 90));
        const Calls calls = drawn(badge);
        EXPECT_EQ(std::get<Recording::DrawText>(calls.back()).attributes.font.size, size);
    }
}

TEST(PillBadge, WritesNumbersPlainly) {
    KWPillBadge badge;
    const auto written = [&badge](auto number) {
        badge.setCounterValue(number);
        return badge.accessibilityValue();
    };
    EXPECT_EQ(written(1000), "1000");
    EXPECT_EQ(written(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(written('A'), "65");
    EXPECT_EQ(written(0.1), "0.1");
    EXPECT_EQ(written(0.1F), "0.1");
    EXPECT_EQ(written(1.0 / 3), "0.3333333333333333");
    EXPECT_EQ(written(1e20), "1e+20");
}

TEST(PillBadge, OnlyTheGradientAsksForARedraw) {
    KWPillBadge badge(NSMakeRect(0, 0, 60, 30));
    const Shown shown(badge);
    badge.setCounterValue(7);
    badge.setBgColor(blue);
    badge.setTextFont(NSFont::systemFontOfSize(9));
    badge.setStrokeColor(blue);
    badge.setShadowColor(blue);
    badge.setBgGradientAngle(1);
    badge.setTextXoffset(1, 1);
    EXPECT_THAT(shown.host.dirty, IsEmpty());
    badge.setBgGradient({});
    EXPECT_THAT(shown.host.dirty, ElementsAre(badge.bounds()));
}

struct FieldTest : testing::Test {
    FieldTest() {
        field->setFont(NSFont::systemFontOfSize(20));
        root->addSubview(field);
        root->addSubview(other);
    }
    TextAttributes attributes(const NSColor& color) const {
        return {.font = NSFont::systemFontOfSize(20),
            .color = color,
            .paragraphStyle = {NSTextAlignmentNatural, NSLineBreakByTruncatingTail}};
    }
    Recording::Fill highlight(double width) const {
        return {NSBezierPath::bezierPathWithRoundedRect(NSMakeRect(0, 0, width, 30), 4, 4)};
    }
    std::shared_ptr<NSTextView> edit() {
        EXPECT_TRUE(shown.host.makeFirstResponder(field.get()));
        return field->currentEditor();
    }

    HeadlessCursorService cursors;
    ServiceScope<HeadlessCursorService> scope {cursors};
    std::shared_ptr<NSView> root = std::make_shared<NSView>(NSMakeRect(0, 0, 300, 100));
    std::shared_ptr<KWShadowedTextField> field =
        std::make_shared<KWShadowedTextField>(NSMakeRect(10, 20, 100, 30));
    std::shared_ptr<NSTextField> other = std::make_shared<NSTextField>(NSMakeRect(10, 60, 100, 30));
    Shown shown {*root};
};

TEST_F(FieldTest, DrawsTextOverShadowOverHighlight) {
    field->setStringValue("ab");
    EXPECT_EQ(drawn(*field),
        (Calls {Recording::SetShouldSmoothFonts {false},
            Recording::DrawTextInRect {"ab", field->bounds(), attributes(white(0))}}));

    field->setXOffset(9);
    field->setPadding({9, 9});
    field->setSubpixelAntiAliasing(true);
    field->awakeFromNib();
    EXPECT_EQ(std::tuple(field->xOffset(), field->padding(), field->subpixelAntiAliasing()),
        std::tuple(0.0F, NSSize {}, false));
    field->setPadding({3, 2});
    field->setXOffset(0.1F);
    field->setSubpixelAntiAliasing(true);
    field->setHoverColor(blue);
    field->mouseEntered({});
    // The offsets are floats.
    const NSRect shadow = NSMakeRect(3 + double {0.1F}, 3, 100, 30);
    EXPECT_EQ(drawn(*field),
        (Calls {Recording::SetFillColor {blue}, highlight(26),
            Recording::SetShouldSmoothFonts {true},
            Recording::DrawTextInRect {"ab", shadow, attributes(white(1, 0.4))},
            Recording::DrawTextInRect {"ab", NSMakeRect(3, 2, 100, 30), attributes(white(0))}}));

    // An empty value's shadow is drawn, the placeholder's is not.
    field->setEditable(false);
    field->setStringValue("");
    field->setPlaceholderString("name");
    field->setTextColor(green);
    EXPECT_EQ(drawn(*field),
        (Calls {Recording::SetShouldSmoothFonts {true},
            Recording::DrawTextInRect {"", shadow, attributes(white(1, 0.4))},
            Recording::DrawTextInRect {"name", NSMakeRect(3, 2, 100, 30),
                attributes(green.colorWithAlphaComponent(0.5))}}));
}

TEST_F(FieldTest, DrawsTheHighlightAloneWhileItIsEdited) {
    EXPECT_FALSE(field->isEditing());
    field->setStringValue("ab");
    const auto editor = edit();
    EXPECT_TRUE(field->isEditing());
    EXPECT_EQ(editor->selectedRange(), (NSRange {0, 2}));
    EXPECT_THAT(drawn(*field), IsEmpty());
    field->setHoverColor(blue);
    EXPECT_EQ(drawn(*field), (Calls {Recording::SetFillColor {blue}, highlight(20)}));

    EXPECT_TRUE(shown.host.makeFirstResponder(other.get()));
    EXPECT_FALSE(field->isEditing());
    EXPECT_EQ(field->currentEditor(), nullptr);
    EXPECT_EQ(other->currentEditor(), editor);
    EXPECT_EQ(editor->delegate(), other);
    // Gone with the field that it works for.
    other->removeFromSuperview();
    EXPECT_EQ(&shown.host.window().firstResponder(), &shown.host.window());
    EXPECT_EQ(editor->superview(), nullptr);
}

TEST_F(FieldTest, EndsEditingWhenItIsDisabledOrAnotherBegins) {
    int ended = 0;
    bool staysOnce = false;
    auto& center = NSNotificationCenter::defaultCenter();
    const auto observer = center.addObserver(
        NSControlTextDidEndEditingNotification, field.get(), [&](const NSNotification&) {
            ++ended;
            if (std::exchange(staysOnce, false))
                field->selectText();
        });
    edit();
    field->setEnabled(false);
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(field->currentEditor(), nullptr);
    field->setEnabled(true);
    const auto editor = edit();
    field->setStringValue("ab");
    staysOnce = true;
    other->selectText();
    EXPECT_NE(field->currentEditor(), nullptr);
    EXPECT_FALSE(other->cell()->showsFirstResponder());
    other->selectText();
    EXPECT_EQ(ended, 3);
    EXPECT_FALSE(field->cell()->showsFirstResponder());
    EXPECT_EQ(other->currentEditor(), editor);
    EXPECT_EQ(drawn(*field).size(), 2U); // its text, too
    other->setEditable(false);
    EXPECT_EQ(editor->delegate(), nullptr);
    center.removeObserver(observer);
}

TEST_F(FieldTest, IsNotEditedWithoutTheKeyboardOrOnceItIsGone) {
    struct Stubborn : NSView {
        bool acceptsFirstResponder() const override { return true; }
        bool resignFirstResponder() override { return false; }
    };
    const auto stubborn = std::make_shared<Stubborn>();
    root->addSubview(stubborn);
    shown.host.makeFirstResponder(stubborn.get());
    field->selectText();
    EXPECT_EQ(field->currentEditor(), nullptr);
    stubborn->removeFromSuperview();

    edit();
    auto& center = NSNotificationCenter::defaultCenter();
    const auto observer = center.addObserver(NSControlTextDidEndEditingNotification, field.get(),
        [this](const NSNotification&) { std::exchange(other, nullptr)->removeFromSuperview(); });
    EXPECT_FALSE(shown.host.makeFirstResponder(other.get()));
    EXPECT_EQ(shown.host.firstResponder(), nullptr);
    center.removeObserver(observer);
}

TEST_F(FieldTest, TellsOfEachEditingOnce) {
    std::string log;
    auto& center = NSNotificationCenter::defaultCenter();
    std::vector<NSNotificationCenter::Observer> observers;
    for (const auto& [name, note] : {std::pair(NSControlTextDidBeginEditingNotification, "begin "),
             {NSControlTextDidChangeNotification, "change "},
             {NSControlTextDidEndEditingNotification, "end "}})
        observers.push_back(center.addObserver(
            name, field.get(), [&log, text = note](const NSNotification&) { log += text; }));
    for (int pass = 0; pass < 2; ++pass) {
        const auto editor = edit();
        editor->userDidChange("a" + std::to_string(pass), {2, 0});
        editor->userDidChange("a" + std::to_string(pass), {1, 0}); // only the cursor
        editor->userDidChange("ab", {2, 0});
        shown.host.makeFirstResponder(nullptr);
        log += "| ";
    }
    EXPECT_EQ(log, "begin change change end | begin change change end | ");
    for (const auto observer : observers)
        center.removeObserver(observer);
}

TEST_F(FieldTest, IsAsWideAsTheTextThatIsTyped) {
    field->setPadding({3, 2});
    const auto editor = edit();
    EXPECT_EQ(editor->frame(), NSMakeRect(3, 2, 100, 30));
    editor->userDidChange("abcd", {4, 0});
    EXPECT_EQ(field->stringValue(), "abcd");
    EXPECT_EQ(field->frame(), NSMakeRect(10, 20, 46, 30));
    EXPECT_EQ(editor->frame(), NSMakeRect(3, 2, 46, 30));
    EXPECT_EQ(other->stringValue(), "");
}

TEST_F(FieldTest, AsksForARedrawOnlyUnderTheMouse) {
    shown.host.dirty.clear();
    field->setShadowColor(blue);
    field->setPadding({1, 1});
    field->setXOffset(2);
    field->setHighlightHoverWithColor(blue);
    EXPECT_THAT(shown.host.dirty, IsEmpty());
    field->mouseEntered({});
    EXPECT_EQ(drawn(*field).size(), 5U); // the highlight, too
    field->mouseExited({});
    EXPECT_EQ(drawn(*field).size(), 3U);
    field->setEditable(false);
    field->mouseEntered({});
    EXPECT_EQ(shown.host.dirty.size(), 4U); // one for `setEditable`
    EXPECT_THAT(cursors.cursors,
        ElementsAre(NSCursor::IBeamCursor(), NSCursor::arrowCursor(), NSCursor::arrowCursor()));
}

TEST_F(FieldTest, TrackingFollowsTheSizeOnceThereIsAnArea) {
    field->setFrame(NSMakeRect(10, 20, 50, 30));
    EXPECT_THAT(field->trackingAreas(), IsEmpty());
    field->setHighlightHoverWithColor(blue);
    field->setHighlightHoverWithColor(blue);
    const auto first = field->trackingAreas().front();
    EXPECT_EQ(first->options(), 0x23U);
    field->setFrame(NSMakeRect(10, 20, 80, 30));
    ASSERT_EQ(field->trackingAreas().size(), 2U);
    EXPECT_EQ(field->trackingAreas()[0], first); // forgotten, and left where it was
    EXPECT_EQ(field->trackingAreas()[1]->rect(), NSMakeRect(0, 0, 80, 30));
    EXPECT_EQ(field->trackingAreas()[1], field->hoverTrackingArea());
}

struct Owner : NSView {
    using NSView::NSView;
    void mouseEntered(const NSEvent&) override { log += "in "; }
    void mouseExited(const NSEvent&) override { log += "out "; }
    void mouseMoved(const NSEvent&) override { log += "moved "; }
    void track(NSRect rect) {
        area = std::make_shared<NSTrackingArea>(rect, 0x23, *this);
        addTrackingArea(area);
    }
    std::shared_ptr<NSTrackingArea> area;
    std::string log;
};

TEST(Hovering, FollowsMouseViewsAndReplacedAreas) {
    const auto root = std::make_shared<NSView>(NSMakeRect(0, 0, 100, 100));
    const auto clip = std::make_shared<NSView>(NSMakeRect(0, 0, 50, 50));
    const auto owner = std::make_shared<Owner>(NSMakeRect(40, 10, 40, 20));
    root->addSubview(clip);
    clip->addSubview(owner);
    owner->track(owner->bounds());
    HoverTracker tracker;
    NSEvent event;
    const auto at = [&](double x, double y, bool isKey = true, bool hasMoved = true) {
        event.locationInWindow = {x, y};
        event.type = hasMoved ? NSEvent::Type::mouseMoved : NSEvent::Type::mouseEntered;
        tracker.mouseIsAt(*root, isKey, event);
        return std::exchange(owner->log, {});
    };
    const auto replace = [&](NSRect rect) {
        owner->removeTrackingArea(owner->area);
        owner->track(rect);
    };
    EXPECT_EQ(at(60, 20), ""); // cut off
    EXPECT_EQ(at(45, 20), "in ");
    EXPECT_EQ(at(46, 20), "moved ");
    EXPECT_EQ(at(46, 20, false), "out ");
    EXPECT_EQ(at(46, 20), "in ");
    replace(NSMakeRect(0, 0, 30, 20));
    EXPECT_EQ(at(46, 20, true, false), "");
    EXPECT_EQ(at(47, 20), "moved ");
    replace(NSMakeRect(20, 0, 10, 20));
    EXPECT_EQ(at(46, 20, true, false), "out ");
    owner->setFrame(NSMakeRect(20, 10, 40, 20));
    EXPECT_EQ(at(46, 20, true, false), "in ");
    owner->removeTrackingArea(owner->area);
    EXPECT_EQ(at(46, 20, true, false), "");
    owner->track(owner->bounds());
    at(46, 20);
    clip->setHidden(true);
    EXPECT_EQ(at(46, 20, true, false), "out ");
    clip->setHidden(false);
    at(46, 20);
    owner->removeFromSuperview();
    EXPECT_EQ(at(46, 20, true, false), "out ");
}

TEST(EmbossedField, DrawsGreyOverWhite) {
    KWEmbossedTextField field(NSMakeRect(0, 0, 80, 20));
    field.setStringValue("x");
    field.setAlignment(NSTextAlignmentRight);
    field.setTextColor(blue);
    TextAttributes attributes {.font = field.font(),
        .color = white(1, 0.4),
        .paragraphStyle = {NSTextAlignmentRight, NSLineBreakByWordWrapping}};
    const Recording::DrawTextInRect copy {"x", NSMakeRect(2, 1, 80, 20), attributes};
    attributes.color = white(0.16);
    EXPECT_EQ(drawn(field),
        (Calls {copy, Recording::DrawTextInRect {"x", NSMakeRect(2, 0, 80, 20), attributes}}));
}

TEST(TextFieldCell, DrawsItsBackgroundAndColorsTheEditor) {
    const auto field = std::make_shared<NSTextField>(NSMakeRect(0, 0, 80, 20));
    const auto cell = std::make_shared<KWTextFieldCell>("x");
    field->setCell(cell);
    Shown shown(*field);
    const NSBezierPath background = roundBezierPath(field->bounds(), 4, 1);
    const Recording::DrawTextInRect text {"x", field->bounds(),
        {.font = field->font(), .paragraphStyle = {.lineBreakMode = NSLineBreakByTruncatingTail}}};
    const Recording::SetFillColor fill {white(1, 0.2)};
    EXPECT_EQ(drawn(*field), (Calls {fill, Recording::Fill {background}, text}));
    setValueForKey(*cell, blue, "borderColor");
    EXPECT_EQ(drawn(*field),
        (Calls {fill, Recording::Fill {background}, Recording::SetStrokeColor {blue},
            Recording::Stroke {background}, text}));
    setValueForKey(*cell, 0, "borderSize");
    EXPECT_EQ(drawn(*field).size(), 3U);
    for (const char* const key : {"altBgColor", "selectionColor", "insertionPointColor",
             "inactiveInsertionPointColor", "inactiveSelectionColor"})
        setValueForKey(*cell, green, key);
    setValueForKey(*cell, 9, "cornerRadius");
    cell->setDrawsBackground(true);
    cell->awakeFromNib();
    EXPECT_FALSE(cell->drawsBackground());
    EXPECT_EQ(drawn(*field), (Calls {fill, Recording::Fill {background}, text}));
    setValueForKey(*cell, blue, "insertionPointColor"); // not what is drawn

    shown.host.makeFirstResponder(field.get());
    const auto editor = field->currentEditor();
    EXPECT_EQ(drawn(*field).size(), 2U); // the editor shows the text
    EXPECT_EQ(editor->insertionPointColor(), white(1));
    EXPECT_EQ(editor->selectedTextAttributes().backgroundColor, white(1.0 / 3));
    editor->setSelectedTextAttributes({.backgroundColor = {}, .foregroundColor = green});
    shown.host.isKeyWindow = false;
    drawn(*field);
    EXPECT_EQ(editor->insertionPointColor(), white(1)); // kept
    setValueForKey(*cell, blue, "inactiveInsertionPointColor");
    setValueForKey(*cell, green, "inactiveSelectionColor");
    drawn(*field);
    EXPECT_EQ(editor->insertionPointColor(), blue);
    EXPECT_EQ(
        editor->selectedTextAttributes(), (NSTextView::SelectedTextAttributes {green, green}));
}

TEST(Separators, DrawTwoLinesAlongTheUpperEdge) {
    const auto expected = [](double background, double second) {
        const auto grey = [](double level) {
            return NSColor::colorWithDeviceRed(level, level, level, 1);
        };
        const auto line = [](double y) {
            NSBezierPath path;
            path.moveToPoint({0, y});
            path.lineToPoint({200, y});
            return Recording::Stroke {path};
        };
        return Calls {Recording::SetFillColor {grey(background)},
            Recording::Fill {NSBezierPath::bezierPathWithRect(NSMakeRect(0, 0, 200, 48))},
            Recording::SetShouldAntialias {false}, Recording::SetStrokeColor {grey(0.81)}, line(47),
            Recording::SetStrokeColor {grey(second)}, line(46)};
    };
    const NSRect frame = NSMakeRect(3, 3, 200, 48);
    KWSeparatorView plain(frame);
    KWEvenSeparatorView even(frame);
    KWOddSeparatorView odd(frame);
    EXPECT_EQ(drawn(plain), expected(0.875, 0.92));
    EXPECT_EQ(drawn(odd), expected(0.875, 0.92));
    EXPECT_EQ(drawn(even), expected(0.91, 0.937));
}

TEST(ButtonTextColor, IsTheFirstCharactersAndIsSetForAll) {
    NSButton button;
    EXPECT_EQ(textColor(button), NSColor::controlTextColor()); // no title
    setTextColor(button, blue);
    button.setTitle("pâté");
    EXPECT_EQ(textColor(button), NSColor::controlTextColor());
    NSAttributedString title("OK", {.font = NSFont::systemFontOfSize(9)});
    title.setForegroundColor(green, {1, 1});
    button.setAttributedTitle(title);
    EXPECT_EQ(textColor(button), std::nullopt);
    setTextColor(button, blue);
    EXPECT_EQ(button.attributedTitle(),
        NSAttributedString("OK", {.font = NSFont::systemFontOfSize(9), .foregroundColor = blue}));
}

TEST(AttributedString, CutsAtCharactersAndFixesParagraphs) {
    NSAttributedString text("aé\nb");
    text.setForegroundColor(blue, {0, 2}); // ends within the second character
    EXPECT_THAT(text.runs(),
        ElementsAre(NSAttributedString::Run {{0, 1}, {.foregroundColor = blue}},
            NSAttributedString::Run {{1, 4}, {}}));
    text.setForegroundColor(blue, {3, std::string::npos});
    text.setAttributes({.paragraphStyle = NSParagraphStyle {NSTextAlignmentRight}}, {0, 1});
    text.fixAttributesInRange({1, 1});
    EXPECT_TRUE(text.attributesAtIndex(3).paragraphStyle);
    EXPECT_FALSE(text.attributesAtIndex(4).paragraphStyle);
    EXPECT_EQ(text.attributesAtIndex(4).foregroundColor, blue);
    EXPECT_TRUE(text.attributesAtIndex(5).isEmpty());
    text.appendAttributedString(NSAttributedString("c", {.paragraphStyle = NSParagraphStyle {}}));
    text.fixAttributesInRange({6, 1}); // behind the text
    EXPECT_TRUE(text.attributesAtIndex(5).paragraphStyle);
}

} // namespace

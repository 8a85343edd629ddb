// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/controls/NSBezierPath+RoundPath.h>
#include <KWToolkit/hotkeys/KWHotkeyView.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/headless/HeadlessHotkeyService.h>
#include <KWToolkit/platform/headless/HeadlessKeyboardLayout.h>
#include <KWToolkit/platform/headless/RecordingGraphicsContext.h>

#include <gtest/gtest.h>

namespace {

using namespace kw;
using Recording = RecordingGraphicsContext;

constexpr std::uint32_t shift = NSEventModifierFlagShift, control = NSEventModifierFlagControl,
                        option = NSEventModifierFlagOption, command = NSEventModifierFlagCommand;
constexpr std::uint16_t keyK = 40;

class Delegate : public NSObject {
public:
    static Class& classObject() {
        static Class object("Delegate", NSObject::classObject(),
            {
                method("hotkeyViewWillChangeHotkey:",
                    [](Delegate& d, KWHotkeyView& view) { d.note("will", view); }),
                method("hotkeyViewChangedHotkey:",
                    [](Delegate& d, KWHotkeyView& view) {
                        d.note("changed:" + view.renderHotkeyDict(*view.registeredHotkey()), view);
                    }),
                method("hotkeyViewUndoLastChanges:",
                    [](Delegate& d, KWHotkeyView& view) { d.note("undo", view); }),
                method("hotkeyViewRemovedHotkey:",
                    [](Delegate& d, KWHotkeyView& view) {
                        d.note(view.registeredHotkey() ? "removed" : "removed(none)", view);
                    }),
            });
        return object;
    }
    Class& isa() const override { return classObject(); }
    /// A message that comes while the view still looks armed is marked.
    void note(const std::string& message, const KWHotkeyView& view) {
        EXPECT_FALSE(view.acceptHotkey());
        const auto& color = view.currentButtomGradient().stops()[1].color;
        const bool looksArmed = color == NSColor::colorWithCalibratedRed(0.63, 0.77, 0.08, 1);
        log += message + (looksArmed ? "! " : " ");
    }
    std::string log;
};

struct CountingHost : ViewHost {
    void setNeedsDisplayInRect(NSRect) override { ++redraws; }
    bool makeFirstResponder(NSView&) override { return true; }
    void viewWillGo(NSView&) override { }
    int redraws = 0;
};

struct KWHotkeyViewTest : testing::Test {
    KWHotkeyViewTest() {
        view.setHost(&host);
        view.setDelegate(delegate);
    }

    HeadlessKeyboardLayout layout {{{keyK, {u'k', u'K'}}}};
    ServiceScope<HeadlessKeyboardLayout> layoutScope {layout};
    HeadlessHotkeyService service;
    ServiceScope<HeadlessHotkeyService> serviceScope {service};
    Delegate delegate;
    CountingHost host;
    KWHotkeyView view {NSMakeRect(0, 0, 200, 40)};

    static NSEvent key(std::string characters, std::uint32_t flags, std::uint16_t code = keyK) {
        return {.modifierFlags = flags,
            .keyCode = code,
            .charactersIgnoringModifiers = std::move(characters)};
    }
    void arm() {
        view.mouseDown({});
        view.mouseUp({});
        delegate.log.clear();
        host.redraws = 0;
    }
    std::string shown() {
        Recording context;
        view.drawRect(context, view.bounds());
        return std::get<Recording::DrawText>(context.calls().back()).text;
    }
    const NSColor& topColor() { return view.currentButtomGradient().stops()[1].color; }
};

constexpr NSColor rgb(double r, double g, double b, double a = 1) {
    return NSColor::colorWithCalibratedRed(r, g, b, a);
}

TEST_F(KWHotkeyViewTest, GoesThroughItsStates) {
    EXPECT_EQ(shown(), "Click to set a hotkey");
    EXPECT_EQ(view.currentFontSize(), 14.0f);
    EXPECT_EQ(topColor(), rgb(0.5, 0.54, 0.6));

    view.mouseDown({});
    EXPECT_EQ(shown(), "Click to set a hotkey");
    EXPECT_EQ(topColor(), rgb(0.42, 0.47, 0.53));
    EXPECT_EQ(delegate.log, "will ");
    EXPECT_FALSE(view.acceptHotkey());

    view.mouseUp({});
    EXPECT_EQ(shown(), "Type a hotkey");
    EXPECT_EQ(topColor(), rgb(0.63, 0.77, 0.08));
    EXPECT_TRUE(view.acceptHotkey());

    view.flagsChanged(key("", option));
    EXPECT_EQ(shown(), "⌥ ");
    EXPECT_EQ(view.currentFontSize(), 20.0f);
    view.flagsChanged(key("", 0));
    EXPECT_EQ(shown(), "Type a hotkey");
    EXPECT_EQ(view.currentFontSize(), 14.0f);

    host.redraws = 0;
    view.keyDown(key("k", option | command));
    EXPECT_EQ(delegate.log, "will changed:⌥ ⌘ K ");
    EXPECT_EQ(shown(), "⌥ ⌘ K");
    EXPECT_EQ(view.currentFontSize(), 20.0f);
    EXPECT_EQ(topColor(), rgb(0.5, 0.54, 0.6));
    EXPECT_EQ(host.redraws, 1);
    EXPECT_EQ(*view.registeredHotkey(),
        (HotkeyRecord {{"KWHotkeyValue", u'k'}, {"KWKeycodeValue", keyK}, {"KWCmdModifier", true},
            {"KWAltModifier", true}, {"KWControlModifier", false}, {"KWShiftModifier", false}}));
}

TEST_F(KWHotkeyViewTest, KeysWhileArmed) {
    const std::string before = "⌘ K", none = "(none)";
    const struct {
        const char* name;
        std::string characters;
        std::uint32_t flags;
        std::string log, hotkey;
        bool staysArmed;
    } rows[] = {
        {"shift alone is ignored", "K", shift, "", before, true},
        {"no modifier is ignored", "k", 0, "", before, true},
        {"other flags do not qualify", "k",
            NSEventModifierFlagCapsLock | NSEventModifierFlagFunction, "", before, true},
        {"a dead key is ignored", "", command, "", before, true},
        {"bad bytes are ignored", "\xFF", command, "", before, true},
        {"control and shift", "K", control | shift, "changed:⇧ ⌃ K ", "⇧ ⌃ K", false},
        {"return", "\r", command, "changed:⌘ K ", before, false},
        {"escape", "\x1B", 0, "undo ", before, false},
        {"escape with command", "\x1B", command, "undo ", before, false},
        {"delete", "\x7F", 0, "removed! ", none, false},
        {"delete with command", "\x7F", command, "removed! ", none, false},
        {"forward delete", "\uF728", 0, "removed! ", none, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto hotkey = std::make_shared<HotkeyRecord>();
        fillHotkeyRecord(*hotkey, true, false, false, false, keyK, u'k');
        view.setRegisteredHotkey(hotkey);
        arm();
        EXPECT_TRUE(view.performKeyEquivalent(key(row.characters, row.flags)));
        EXPECT_EQ(delegate.log, row.log);
        EXPECT_EQ(view.acceptHotkey(), row.staysArmed);
        EXPECT_EQ(host.redraws, row.staysArmed ? 0 : 1);
        const auto& registered = view.registeredHotkey();
        EXPECT_EQ(registered ? renderHotkeyRecord(*registered) : none, row.hotkey);
        if (row.staysArmed)
            view.keyDown(key("\x1B", 0));
    }
}

TEST_F(KWHotkeyViewTest, AtRestItTakesNoKeys) {
    view.keyDown(key("k", command));
    EXPECT_FALSE(view.performKeyEquivalent(key("k", command)));
    EXPECT_EQ(host.redraws, 0);
    view.flagsChanged(key("", option));
    EXPECT_EQ(host.redraws, 1); // redrawn, though nothing is kept
    EXPECT_EQ(view.modifiersHotkey(), nullptr);
    EXPECT_EQ(delegate.log, "");
}

TEST_F(KWHotkeyViewTest, FocusLossCancelsArmedOrNot) {
    view.resignFirstResponder();
    EXPECT_EQ(delegate.log, "undo ");
    arm();
    EXPECT_TRUE(view.resignFirstResponder());
    EXPECT_FALSE(view.acceptHotkey());
    EXPECT_EQ(delegate.log, "undo ");
    EXPECT_EQ(topColor(), rgb(0.5, 0.54, 0.6));
}

TEST_F(KWHotkeyViewTest, MousePressesOnAnArmedViewDoNothing) {
    arm();
    view.flagsChanged(key("", control));
    view.mouseDown({});
    EXPECT_EQ(delegate.log, "");
    EXPECT_EQ(shown(), "⌃ "); // the held modifiers are not cleared
    view.mouseUp({});
    EXPECT_TRUE(view.acceptHotkey());
}

TEST_F(KWHotkeyViewTest, ALoneMouseReleaseArms) {
    view.mouseUp({});
    EXPECT_TRUE(view.acceptHotkey());
    EXPECT_EQ(delegate.log, "");
}

TEST_F(KWHotkeyViewTest, ASetRecordIsShownWithoutFurtherAdo) {
    view.setRegisteredHotkey(std::make_shared<HotkeyRecord>());
    EXPECT_EQ(host.redraws, 0);
    EXPECT_EQ(delegate.log, "");
    EXPECT_EQ(shown(), "");
    EXPECT_EQ(view.currentFontSize(), 20.0f); // a record that names no key is big all the same
}

TEST_F(KWHotkeyViewTest, TheDelegateMayBeGoneOrDeaf) {
    {
        Delegate brief;
        view.setDelegate(brief);
    }
    view.mouseDown({});
    NSObject deaf;
    view.setDelegate(deaf);
    view.mouseUp({});
    view.keyDown(key("k", command));
    EXPECT_EQ(shown(), "⌘ K");
}

TEST_F(KWHotkeyViewTest, OwnHotkeysAreSuspendedWhileArmed) {
    arm();
    EXPECT_TRUE(service.isSuspended());
    view.mouseUp({});
    view.keyDown(key("k", command));
    EXPECT_FALSE(service.isSuspended());
    arm();
    view.resignFirstResponder();
    EXPECT_FALSE(service.isSuspended());
    {
        KWHotkeyView brief;
        brief.mouseUp({});
        EXPECT_TRUE(service.isSuspended());
    }
    EXPECT_FALSE(service.isSuspended());
}

TEST_F(KWHotkeyViewTest, DrawsInOrderCenteredOnTheGivenRectangle) {
    Recording context;
    const NSRect rect = NSMakeRect(10, 20, 100, 40);
    view.drawRect(context, rect);

    const NSBezierPath outline = roundBezierPath(rect, 10, 4);
    const NSFont font = NSFont::boldSystemFontOfSize(14);
    const TextAttributes face {
        font, NSColor::whiteColor(), NSShadow {rgb(0.3, 0.3, 0.3), {0, 0}, 3}};
    const TextAttributes engraving {font, rgb(0.11, 0.16, 0.23, 0.5), std::nullopt};
    const std::string text = "Click to set a hotkey"; // 21 characters of 7, 17.5 high
    const NSPoint origin {10 + 50 - 73.5, 20 + 20 - 8.75};
    const NSGradient gradient {
        {rgb(0.72, 0.78, 0.87), 0}, {rgb(0.5, 0.54, 0.6), 0.04}, {rgb(0.42, 0.47, 0.53), 0.8}};
    const std::vector<Recording::Call> expected {
        Recording::DrawGradient {gradient, outline, -90},
        Recording::SetStrokeColor {rgb(0.13, 0.16, 0.2, 0.7)},
        Recording::Stroke {outline},
        Recording::DrawText {text, {origin.x, origin.y - 2}, engraving},
        Recording::DrawText {text, origin, face},
    };
    EXPECT_EQ(context.calls(), expected);
}

} // namespace

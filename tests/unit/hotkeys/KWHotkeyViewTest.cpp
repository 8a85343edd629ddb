// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/controls/NSBezierPath+RoundPath.h>
#include <KWToolkit/hotkeys/KWHotkeyView.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/headless/HeadlessHotkeyService.h>
#include <KWToolkit/platform/headless/HeadlessKeyboardLayout.h>
#include <KWToolkit/platform/headless/HeadlessViewHost.h>
#include <KWToolkit/platform/headless/RecordingGraphicsContext.h>

#include <gtest/gtest.h>

namespace {

using namespace kw;
using Recording = RecordingGraphicsContext;

constexpr std::uint32_t shift = NSEventModifierFlagShift, control = NSEventModifierFlagControl,
                        option = NSEventModifierFlagOption, command = NSEventModifierFlagCommand;
constexpr std::uint16_t keyK = 40;

NSColor rgb(double r, double g, double b, double a = 1) {
    return NSColor::colorWithCalibratedRed(r, g, b, a);
}
// What tells the three gradients apart is their second color.
const NSColor atRest = rgb(0.5, 0.54, 0.6);
const NSColor clicked = rgb(0.42, 0.47, 0.53);
const NSColor armed = rgb(0.63, 0.77, 0.08);

const NSColor& colorOf(const KWHotkeyView& view) {
    return view.currentButtomGradient().stops()[1].color;
}

class Delegate : public NSObject {
    /// With the hotkey that the view has by then, and a mark if it still looks armed.
    static auto note(const char* what) {
        return [what](Delegate& delegate, KWHotkeyView& view) {
            EXPECT_FALSE(view.acceptHotkey());
            const auto& hotkey = view.registeredHotkey();
            delegate.log += std::string(what) + (hotkey ? ":" + renderHotkeyRecord(*hotkey) : "")
                + (colorOf(view) == armed ? "! " : " ");
        };
    }

public:
    static Class& classObject() {
        static Class object("Delegate", NSObject::classObject(),
            {
                method("hotkeyViewWillChangeHotkey:", note("will")),
                method("hotkeyViewChangedHotkey:", note("changed")),
                method("hotkeyViewUndoLastChanges:", note("undo")),
                method("hotkeyViewRemovedHotkey:", note("removed")),
            });
        return object;
    }
    Class& isa() const override { return classObject(); }
    std::string log;
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
    HeadlessViewHost host;
    KWHotkeyView view {NSMakeRect(0, 0, 200, 40)};

    static NSEvent key(std::string characters, std::uint32_t flags) {
        return {.modifierFlags = flags,
            .keyCode = keyK,
            .charactersIgnoringModifiers = std::move(characters)};
    }
    void arm() {
        view.mouseDown({});
        view.mouseUp({});
        delegate.log.clear();
        host.dirty.clear();
    }
    void expectLooks(const char* text, NSColor color, float fontSize) {
        Recording context;
        view.drawRect(context, view.bounds());
        EXPECT_EQ(std::get<Recording::DrawText>(context.calls().back()).text, text);
        EXPECT_EQ(colorOf(view), color) << text;
        EXPECT_EQ(view.currentFontSize(), fontSize) << text;
        EXPECT_EQ(view.accessibilityValue(), text);
    }
};

TEST_F(KWHotkeyViewTest, GoesThroughItsStates) {
    expectLooks("Click to set a hotkey", atRest, 14);
    view.mouseDown({});
    expectLooks("Click to set a hotkey", clicked, 14);
    EXPECT_EQ(delegate.log, "will ");
    EXPECT_FALSE(view.acceptHotkey());
    view.mouseUp({});
    expectLooks("Type a hotkey", armed, 14);
    EXPECT_TRUE(view.acceptHotkey());

    view.flagsChanged(key("", option));
    expectLooks("⌥ ", armed, 20);
    // A press on an armed view does nothing: the held modifiers are not cleared.
    view.mouseDown({});
    expectLooks("⌥ ", armed, 20);
    view.flagsChanged(key("", 0));
    expectLooks("Type a hotkey", armed, 14);
    view.flagsChanged(key("", option));

    host.dirty.clear();
    view.keyDown(key("k", option | command));
    EXPECT_EQ(delegate.log, "will changed:⌥ ⌘ K ");
    expectLooks("⌥ ⌘ K", atRest, 20);
    EXPECT_EQ(host.dirty.size(), 1);
    EXPECT_EQ(hotkeyFromRecord(*view.registeredHotkey()),
        (Hotkey {
            .hasKey = true, .keycode = keyK, .character = u'k', .command = true, .option = true}));
    arm();
    expectLooks("Type a hotkey", armed, 14); // what was held the last time is forgotten
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
        {"other flags do not qualify", "k",
            NSEventModifierFlagCapsLock | NSEventModifierFlagFunction, "", before, true},
        {"a dead key is ignored", "", command, "", before, true},
        {"bad bytes are ignored", "\xFF", command, "", before, true},
        {"control and shift", "K", control | shift, "changed:⇧ ⌃ K ", "⇧ ⌃ K", false},
        {"return", "\r", command, "changed:⌘ K ", before, false},
        {"escape", "\x1B", 0, "undo:⌘ K ", before, false},
        {"escape with command", "\x1B", command, "undo:⌘ K ", before, false},
        {"delete, told before the record goes", "\x7F", 0, "removed:⌘ K! ", none, false},
        {"delete with command", "\x7F", command, "removed:⌘ K! ", none, false},
        {"forward delete", "\uF728", 0, "removed:⌘ K! ", none, false},
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
        EXPECT_EQ(service.isSuspended(), row.staysArmed);
        EXPECT_EQ(host.dirty.size(), row.staysArmed ? 0 : 1);
        EXPECT_EQ(colorOf(view), row.staysArmed ? armed : atRest);
        const auto& registered = view.registeredHotkey();
        EXPECT_EQ(registered ? renderHotkeyRecord(*registered) : none, row.hotkey);
        if (row.staysArmed)
            view.keyDown(key("\x1B", 0));
    }
}

TEST_F(KWHotkeyViewTest, AtRestItTakesNoKeysAndPassesNoneOn) {
    struct Next : NSResponder {
        void keyDown(const NSEvent&) override { ADD_FAILURE(); }
    } next;
    view.setNextResponder(&next);
    view.keyDown(key("k", command));
    EXPECT_FALSE(view.performKeyEquivalent(key("k", command)));
    EXPECT_EQ(host.dirty.size(), 0);
    view.flagsChanged(key("", option));
    EXPECT_EQ(host.dirty.size(), 1); // redrawn, though nothing is kept
    EXPECT_EQ(view.modifiersHotkey(), nullptr);
    EXPECT_EQ(delegate.log, "");
}

TEST_F(KWHotkeyViewTest, FocusLossCancelsArmedOrNot) {
    view.resignFirstResponder();
    EXPECT_EQ(delegate.log, "undo ");
    arm();
    EXPECT_TRUE(view.resignFirstResponder());
    EXPECT_FALSE(view.acceptHotkey());
    EXPECT_FALSE(service.isSuspended());
    EXPECT_EQ(delegate.log, "undo ");
    EXPECT_EQ(colorOf(view), atRest);
}

TEST_F(KWHotkeyViewTest, ALoneMouseReleaseArmsAndSuspendsUntilTheViewIsGone) {
    {
        KWHotkeyView brief;
        brief.setDelegate(delegate);
        brief.mouseUp({});
        brief.mouseUp({});
        EXPECT_TRUE(brief.acceptHotkey());
        EXPECT_TRUE(service.isSuspended());
    }
    EXPECT_FALSE(service.isSuspended());
    EXPECT_EQ(delegate.log, "");
}

TEST_F(KWHotkeyViewTest, APressArmsItUnlessItCannotHaveTheKeyboard) {
    struct Keeper : NSView {
        bool acceptsFirstResponder() const override { return true; }
        bool resignFirstResponder() override { return false; }
    };
    const auto keeper = std::make_shared<Keeper>();
    EXPECT_EQ(view.accessibilityLabel(), "Hotkey");
    EXPECT_TRUE(view.accessibilityPerformPress());
    EXPECT_TRUE(view.acceptHotkey());
    EXPECT_EQ(host.firstResponder(), &view);
    EXPECT_EQ(view.currentFontSize(), 14); // drawn or not
    view.addSubview(keeper);
    host.makeFirstResponder(keeper.get());
    EXPECT_FALSE(view.accessibilityPerformPress());
    EXPECT_FALSE(view.acceptHotkey());
}

TEST_F(KWHotkeyViewTest, ASetRecordIsShownWithoutFurtherAdo) {
    view.setRegisteredHotkey(std::make_shared<HotkeyRecord>());
    EXPECT_EQ(host.dirty.size(), 0);
    EXPECT_EQ(delegate.log, "");
    expectLooks("", atRest, 20); // a record that names no key is big all the same
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
    expectLooks("⌘ K", atRest, 20);
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

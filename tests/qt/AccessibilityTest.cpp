// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Views as assistive technology meets them.
#include <KWToolkit/controls/KWPillBadge.h>
#include <KWToolkit/hotkeys/KWHotkeyView.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/headless/HeadlessHotkeyService.h>
#include <KWToolkit/platform/ui/NSButton.h>
#include <KWToolkit/platform/ui/NSTextField.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Window.h"

#include <QAccessible>
#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

namespace {

using namespace kw;
using testing::Contains;
using testing::ElementsAre;

struct Group : NSView {
    using NSView::NSView;
    NSAccessibilityRole accessibilityRole() const override { return NSAccessibilityRole::group; }
};

/// Enumerators by their names.
template <class Enum>
std::string nameOf(Enum value) {
    const QMetaObject& names = QAccessible::staticMetaObject;
    const char* const kind = std::is_same_v<Enum, QAccessible::Role> ? "Role" : "Event";
    return names.enumerator(names.indexOfEnumerator(kind)).valueToKey(value);
}

/// Role, name, value and children, each of which is checked to know its parent and place.
std::string describe(QAccessibleInterface& interface) {
    std::string result = nameOf(interface.role());
    for (const auto kind : {QAccessible::Name, QAccessible::Value})
        result += " '" + interface.text(kind).toStdString() + "'";
    for (int i = 0; i < interface.childCount(); ++i) {
        QAccessibleInterface* const child = interface.child(i);
        EXPECT_EQ(child->parent(), &interface);
        EXPECT_EQ(interface.indexOfChild(child), i);
        EXPECT_EQ(child, QAccessible::accessibleInterface(QAccessible::uniqueId(child)));
        result += (i == 0 ? " [" : ", ") + describe(*child);
    }
    return result + (interface.childCount() > 0 ? "]" : "");
}

class Accessibility : public testing::Test {
protected:
    Accessibility() {
        badge->setCounterValue(7);
        field->setStringValue("Zoë");
        field->setPlaceholderString("Name");
        recorder->setAccessibilityLabel("Search");
        group->addSubview(badge);
        plain->addSubview(field);
        for (const auto& view : std::vector<std::shared_ptr<NSView>> {group, plain, recorder})
            root->addSubview(view);
        window = std::make_unique<Window>(root);
        events().clear();
        listen(true);
        QAccessible::installUpdateHandler([](QAccessibleEvent* event) {
            QAccessibleInterface* const interface = event->accessibleInterface();
            events().push_back(nameOf(event->type()) + " " + nameOf(interface->role()));
        });
    }
    ~Accessibility() override {
        listen(false);
        QAccessible::installUpdateHandler(nullptr);
    }

    /// As if a screen reader came or went; Qt has nothing public for it.
    static void listen(bool is) {
        QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(is);
    }

    static std::vector<std::string>& events() {
        static std::vector<std::string> list;
        return list;
    }
    static std::vector<std::string> takeEvents() {
        QCoreApplication::processEvents();
        return std::exchange(events(), {});
    }
    QAccessibleInterface* widget() { return QAccessible::queryAccessibleInterface(window->views); }
    QAccessibleInterface* child(int index) { return widget()->child(index); }

    HeadlessHotkeyService hotkeys;
    ServiceScope<HeadlessHotkeyService> scope {hotkeys};
    std::shared_ptr<NSView> root = std::make_shared<NSView>(NSMakeRect(0, 0, 200, 100));
    std::shared_ptr<NSView> group = std::make_shared<Group>(NSMakeRect(10, 60, 60, 30));
    std::shared_ptr<NSView> plain = std::make_shared<NSView>(NSMakeRect(80, 60, 100, 30));
    std::shared_ptr<KWPillBadge> badge = std::make_shared<KWPillBadge>(NSMakeRect(5, 5, 40, 20));
    std::shared_ptr<NSTextField> field = std::make_shared<NSTextField>(NSMakeRect(0, 5, 90, 20));
    std::shared_ptr<KWHotkeyView> recorder =
        std::make_shared<KWHotkeyView>(NSMakeRect(10, 10, 150, 40));
    std::unique_ptr<Window> window;
};

TEST_F(Accessibility, TellsOfViewsThatHaveARole) {
    EXPECT_EQ(describe(*widget()),
        "Client '' '' [Grouping '' '' [StaticText '7' '7'], EditableText 'Name' 'Zoë', "
        "HotkeyField 'Search' 'Click to set a hotkey']");
    recorder->removeFromSuperview();
    window = std::make_unique<Window>(recorder);
    EXPECT_EQ(describe(*widget()),
        "Client '' '' [HotkeyField 'Search' 'Click to set a hotkey']"); // the root itself
}

TEST_F(Accessibility, LeavesNativeWidgetsTheirOwnInterfaces) {
    const auto button = std::make_shared<NSButton>(NSMakeRect(0, 0, 50, 30));
    button->setTitle("Go");
    group->addSubview(button);
    QAccessibleInterface* const told = child(1);
    field->selectText();
    takeEvents();
    EXPECT_EQ(describe(*widget()),
        "Client '' '' [Grouping '' '' [StaticText '7' '7'], Button 'Go' '', "
        "EditableText 'Name' 'Zoë', HotkeyField 'Search' 'Click to set a hotkey']");
    EXPECT_NE(child(2)->object(), nullptr);
    EXPECT_TRUE(child(2)->state().focused);
    EXPECT_TRUE(told->state().invisible);
    window->other->setFocus();
    EXPECT_EQ(child(2), told);
    EXPECT_FALSE(told->state().invisible);
}

TEST_F(Accessibility, KnowsWhereViewsAre) {
    const QPoint corner = window->views->mapToGlobal(QPoint(0, 0));
    EXPECT_EQ(child(0)->child(0)->rect(), QRect(corner + QPoint(15, 15), QSize(40, 20)));
    const struct {
        QPoint place;
        int index; // -1: nothing
    } rows[] {{{16, 16}, 0}, {{12, 11}, 0}, {{85, 20}, 1}, {{175, 20}, -1}, {{15, 60}, 2},
        {{15, 120}, -1}};
    for (const auto& [place, index] : rows) {
        QAccessibleInterface* hit =
            widget()->childAt(corner.x() + place.x(), corner.y() + place.y());
        if (hit == child(0)->child(0))
            hit = hit->parent();
        EXPECT_EQ(hit, index < 0 ? nullptr : child(index)) << place.x();
    }
}

TEST_F(Accessibility, TellsStates) {
    EXPECT_TRUE(child(1)->state().editable);
    EXPECT_TRUE(child(1)->state().focusable);
    EXPECT_TRUE(child(0)->child(0)->state().readOnly);
    EXPECT_FALSE(child(0)->child(0)->state().focusable);
    EXPECT_FALSE(child(0)->child(0)->state().offscreen);
    badge->setFrame(NSMakeRect(70, 0, 20, 20)); // out of the group
    EXPECT_TRUE(child(0)->child(0)->state().offscreen);
    group->setHidden(true);
    EXPECT_TRUE(child(0)->child(0)->state().invisible);
    field->setEnabled(false);
    EXPECT_TRUE(child(1)->state().disabled);
}

TEST_F(Accessibility, PressesAndFocuses) {
    EXPECT_EQ(child(0)->child(0)->actionInterface()->actionNames(), QStringList());
    QAccessibleActionInterface* const actions = child(2)->actionInterface();
    takeEvents();
    actions->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(recorder->acceptHotkey());
    EXPECT_TRUE(child(2)->state().pressed);
    EXPECT_EQ(child(2)->text(QAccessible::Value), "Type a hotkey");
    EXPECT_EQ(widget()->focusChild(), child(2));
    EXPECT_TRUE(child(2)->state().focused);
    EXPECT_FALSE(widget()->state().focused);
    const auto told = takeEvents();
    EXPECT_EQ(told.back(), "Focus HotkeyField"); // behind the widget's own
    EXPECT_THAT(told, Contains("ValueChanged HotkeyField"));
    EXPECT_THAT(told, Contains("StateChanged HotkeyField"));
    window->other->setFocus();
    EXPECT_FALSE(child(2)->state().focused);
}

TEST_F(Accessibility, EditsFields) {
    QAccessibleInterface* const told = child(1);
    EXPECT_EQ(told->textInterface()->characterCount(), 3);
    EXPECT_EQ(told->textInterface()->text(2, 9), "ë");
    told->editableTextInterface()->insertText(3, " 🙂");
    told->editableTextInterface()->replaceText(0, 1, "N");
    told->editableTextInterface()->deleteText(4, 6); // a pair of surrogates
    EXPECT_EQ(field->stringValue(), "Noë ");
    EXPECT_EQ(child(2)->editableTextInterface(), nullptr);
}

TEST_F(Accessibility, TellsWhatChanges) {
    describe(*widget());
    takeEvents();
    badge->setCounterValue(8);
    EXPECT_THAT(takeEvents(), ElementsAre());
    badge->setNeedsDisplay();
    EXPECT_THAT(takeEvents(),
        ElementsAre("NameChanged StaticText", "ValueChanged StaticText", "TextUpdated StaticText"));
    badge->setNeedsDisplay();
    EXPECT_THAT(takeEvents(), ElementsAre());

    const QAccessible::Id id = QAccessible::uniqueId(child(0)->child(0));
    group->removeFromSuperview();
    EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
    EXPECT_THAT(
        takeEvents(), ElementsAre("ObjectDestroyed Grouping", "ObjectDestroyed StaticText"));
    root->addSubview(group);
    EXPECT_THAT(takeEvents(), ElementsAre("ObjectCreated Grouping", "ObjectCreated StaticText"));
}

TEST_F(Accessibility, OutlivesNeitherViewNorWidget) {
    const QAccessible::Id id = QAccessible::uniqueId(child(2));
    takeEvents();
    recorder->setNeedsDisplay();
    window.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
    EXPECT_FALSE(hotkeys.isSuspended());
}

} // namespace

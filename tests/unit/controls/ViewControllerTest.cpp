// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/controls/KWControlledView.h>
#include <KWToolkit/controls/KWViewController.h>
#include <KWToolkit/controls/NSResponder+ResponderChain.h>
#include <KWToolkit/controls/NSView+ViewControllerAddition.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/headless/HeadlessViewHost.h>
#include <KWToolkit/platform/headless/HeadlessViewLoader.h>
#include <KWToolkit/platform/ui/NSNib.h>

#include <gtest/gtest.h>

namespace {

using namespace kw;

/// The responders after one, "?" for those without a name.
std::string chainFrom(
    const NSResponder& first, std::initializer_list<std::pair<const NSResponder*, char>> names) {
    std::string chain;
    for (const NSResponder* at = &first; at; at = at->nextResponder()) {
        const auto* const named = std::find_if(
            names.begin(), names.end(), [at](const auto& name) { return name.first == at; });
        chain += named == names.end() ? '?' : named->second;
    }
    return chain;
}

TEST(ControlledView, KeepsItsControllerRightAfterIt) {
    HeadlessViewHost host;
    const auto root = std::make_shared<NSView>();
    const auto elsewhere = std::make_shared<NSView>();
    const auto view = std::make_shared<KWControlledView>();
    NSViewController one;
    NSViewController two;
    root->setHost(&host);
    root->addSubview(view);
    const auto chain = [&] {
        return chainFrom(*view,
            {{view.get(), 'v'}, {root.get(), 'r'}, {elsewhere.get(), 'e'}, {&one, '1'}, {&two, '2'},
                {&host.window(), 'w'}});
    };
    EXPECT_EQ(chain(), "vrw");
    view->setViewController(&one);
    EXPECT_EQ(chain(), "v1rw");
    view->setViewController(&one);
    EXPECT_EQ(chain(), "v1rw");
    elsewhere->addSubview(view);
    EXPECT_EQ(chain(), "v1e");
    view->removeFromSuperview();
    EXPECT_EQ(chain(), "v1");
    root->addSubview(view);
    setViewController(*view, &two);
    EXPECT_EQ(chain(), "v2rw");
    EXPECT_EQ(one.nextResponder(), nullptr);
    setViewController(*view, nullptr);
    EXPECT_EQ(chain(), "vrw");
    EXPECT_EQ(two.nextResponder(), nullptr);
    view->setViewController(&one);
    insertIntoResponderChain(*view, two);
    EXPECT_EQ(chain(), "v12rw");
    insertIntoResponderChain(one, two);
    EXPECT_EQ(chain(), "v12rw");
    one.setNextResponder(root.get());
    view->setViewController(nullptr);
    root->setHost(nullptr);
    EXPECT_EQ(chain(), "vr");
    // One that dies where it should not have.
    auto dying = std::make_shared<NSViewController>();
    view->setViewController(dying.get());
    dying.reset();
    view->removeFromSuperview();
    EXPECT_EQ(view->viewController(), nullptr);
}

TEST(ResponderChain, TakesTheLastThatIsInsertedFirst) {
    NSResponder next;
    NSResponder one;
    NSResponder two;
    NSResponder first;
    first.setNextResponder(&next);
    insertIntoResponderChain(first, one);
    insertIntoResponderChain(first, two);
    EXPECT_EQ(chainFrom(first, {{&first, 'f'}, {&one, '1'}, {&two, '2'}, {&next, 'n'}}), "f21n");
}

struct Preferences : KWViewController {
    using KWViewController::KWViewController;
    static Class& classObject() {
        static auto& object = *new Class("Preferences", KWViewController::classObject());
        return object;
    }
    Class& isa() const override { return classObject(); }
    void viewDidLoad() override {
        log += kw::viewController(*view()) == this ? "loaded " : "early ";
    }
    std::string log;
};

TEST(ViewController, LoadsTheViewNamedAfterItsClassOnce) {
    HeadlessViewLoader loader;
    const ServiceScope scope(loader);
    loader.views["Preferences"] = [] { return std::make_shared<KWControlledView>(); };
    auto controller = KWViewController::viewController<Preferences>();
    EXPECT_EQ(controller->log, ""); // nobody has asked for the view
    const auto view = controller->view();
    EXPECT_EQ(controller->view(), view);
    EXPECT_EQ(controller->log, "loaded ");
    EXPECT_EQ(view->nextResponder(), controller.get());

    // A view that is given loads nothing, and the former one is let go of.
    const auto plain = std::make_shared<NSView>();
    controller->setView(plain);
    EXPECT_EQ(view->nextResponder(), nullptr);
    EXPECT_EQ(viewController(*plain), controller.get());
    EXPECT_EQ(plain->nextResponder(), nullptr);
    controller->setView(view);
    const auto superview = std::make_shared<NSView>();
    superview->addSubview(view);
    controller.reset();
    EXPECT_EQ(viewController(*plain), nullptr);
    EXPECT_EQ(viewController(*view), nullptr);
    EXPECT_EQ(view->nextResponder(), superview.get());
}

TEST(ViewController, SaysWhichViewThereIsNot) {
    auto controller = KWViewController::viewController<Preferences>();
    try {
        controller->view();
        FAIL();
    } catch (const NSException& exception) {
        EXPECT_EQ(exception.name(), "NSInternalInconsistencyException");
        EXPECT_NE(std::string(exception.what()).find("Preferences"), std::string::npos);
    }
    EXPECT_EQ(controller->log, "");
    // The host's own description goes first.
    registerViewDescription("Preferences", [] { return std::make_shared<NSView>(); });
    EXPECT_NE(controller->view(), nullptr);
    registerViewDescription("Preferences", {});
}

} // namespace

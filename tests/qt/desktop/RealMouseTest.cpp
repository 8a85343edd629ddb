// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The mouse and the keys of a real display with a window manager, through Qt to text fields.
#include <KWToolkit/controls/KWShadowedTextField.h>
#include <KWToolkit/platform/ui/NSTextView.h>
#include <tests/qt/Window.h>
#include <tests/support/KeyInjector.h>

#include <gtest/gtest.h>

#include <xkbcommon/xkbcommon-keysyms.h>

namespace {

using namespace kw;

TEST(RealMouse, HighlightsAFieldThatItThenTypesInto) {
    test::KeyInjector user {qEnvironmentVariable("DISPLAY").toStdString()};
    const auto root = std::make_shared<NSView>(NSMakeRect(0, 0, 220, 80));
    std::vector<std::shared_ptr<KWShadowedTextField>> fields;
    for (const double y : {45.0, 10.0}) {
        const auto& field =
            fields.emplace_back(std::make_shared<KWShadowedTextField>(NSMakeRect(10, y, 150, 24)));
        field->setStringValue("Hamburg");
        root->addSubview(field);
    }
    fields[0]->setHighlightHoverWithColor(NSColor::colorWithDeviceRed(1, 0, 0, 1));
    Window window(root);
    const auto moveTo = [&](QPoint place) {
        const QPoint onScreen = window.views->mapToGlobal(place);
        user.moveMouse(onScreen.x(), onScreen.y());
    };
    const auto highlightBecomes = [&](bool isShown) {
        return QTest::qWaitFor([&] {
            const QImage image = window.views->grab().toImage();
            return (image.pixel(12, 32) == qRgb(255, 0, 0)) == isShown;
        });
    };
    for (const int x : {40, 200, 50}) {
        moveTo({x, 25});
        EXPECT_TRUE(highlightBecomes(x < 100));
        EXPECT_EQ(window.views->cursor().shape(), x < 100 ? Qt::IBeamCursor : Qt::ArrowCursor);
    }

    user.click();
    ASSERT_TRUE(QTest::qWaitFor([&] { return fields[0]->currentEditor() != nullptr; }));
    const NSRange place = fields[0]->currentEditor()->selectedRange();
    EXPECT_EQ(place.length, 0u);
    user.type({XKB_KEY_x});
    const std::string typed = std::string("Hamburg").insert(place.location, "x");
    EXPECT_TRUE(QTest::qWaitFor([&] { return fields[0]->stringValue() == typed; }));
    user.type({XKB_KEY_Tab});
    ASSERT_TRUE(QTest::qWaitFor([&] { return fields[1]->currentEditor() != nullptr; }));
    user.type({XKB_KEY_o});
    EXPECT_TRUE(QTest::qWaitFor([&] { return fields[1]->stringValue() == "o"; }));
    moveTo({200, 25});
    EXPECT_TRUE(highlightBecomes(false));
}

} // namespace

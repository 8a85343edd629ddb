// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/controls/KWPillBadge.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>
#include <KWToolkit/platform/headless/HeadlessConsole.h>
#include <KWToolkit/platform/ui/NSNib.h>
#include <KWToolkit/platform/ui/NSTextField.h>
#include <KWToolkitQt/ViewWidget.h>
#include <KWToolkitQt/WidgetView.h>
#include <tests/support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEvent>
#include <QPushButton>

#include <sys/stat.h>

#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace kw;
using testing::ElementsAre;
using testing::HasSubstr;

std::vector<std::string> awoken;

/// Tells when it has been loaded.
struct Sleeper : NSView {
    static Class& classObject() {
        static auto& object = *new Class("Sleeper", NSView::classObject());
        return object;
    }
    Class& isa() const override { return classObject(); }
    void awakeFromNib() override { awoken.push_back(identifier()); }
};

std::string ui(const std::string& content) {
    return "<ui version=\"4.0\"><class>Form</class>" + content + "</ui>";
}

std::string widget(const std::string& className, const std::string& name, const std::string& place,
    const std::string& content = {}) {
    std::string numbers;
    std::istringstream words(place);
    for (const char* const part : {"x", "y", "width", "height"}) {
        std::string word;
        words >> word;
        numbers += std::string("<") + part + ">" + word + "</" + part + ">";
    }
    return "<widget class=\"" + className + "\" name=\"" + name
        + "\"><property name=\"geometry\"><rect>" + numbers + "</rect></property>" + content
        + "</widget>";
}

std::string property(const std::string& name, const std::string& value) {
    return "<property name=\"" + name + "\">" + value + "</property>";
}

class ViewLoading : public testing::Test {
protected:
    void SetUp() override {
        registerViewClass<Sleeper>();
        awoken.clear();
    }
    std::shared_ptr<NSView> load(const std::string& content) {
        folder.write("Form.ui", content);
        return loadViewDescription("Form", folder.path(), reason);
    }

    test::TemporaryFolder folder;
    std::string reason;
    HeadlessConsole console;
    ServiceScope<HeadlessConsole> scope {console};
};

TEST_F(ViewLoading, MakesTheTreeWithPlacesNamesAndProperties) {
    const auto root = load(ui(widget("Sleeper", "root", "7 7 200 100",
        widget("KWPillBadge", "badge", "10 20 40 22",
            property("counterValue", "<string>a &amp; b</string>")
                + property("bgColor",
                    "<color alpha=\"51\"><red>255</red><green>0</green><blue>102</blue></color>")
                + property("lineWidth", "<double>1.5</double>")
                + property("xOffset", "<number>-3</number>")
                + property("textFont",
                    "<font><family>DejaVu Serif</family><pointsize>9</pointsize>"
                    "<bold>true</bold></font>")
                + property("unheardOf", "<bool>true</bool>"))
            + widget("NSTextField", "field", "0 0 50 20",
                property("stringValue", "<string>text</string>")
                    + property("enabled", "<bool>false</bool>")
                    + property("accessibleName", "<string>label</string>")
                    + widget("Sleeper", "inner", "1 2 3 4"))
            + widget("QPushButton", "native", "60 0 80 30",
                property("text", "<string>Press</string>")))));
    ASSERT_TRUE(root) << reason;
    EXPECT_EQ(root->frame(), NSMakeRect(0, 0, 200, 100));
    ASSERT_EQ(root->subviews().size(), 3u);

    auto* const badge = dynamic_cast<KWPillBadge*>(root->viewWithIdentifier("badge"));
    ASSERT_TRUE(badge);
    EXPECT_EQ(badge->frame(), NSMakeRect(10, 58, 40, 22));
    EXPECT_EQ(valueForKey<std::string>(*badge, "counterValue"), "a & b");
    EXPECT_EQ(valueForKey<double>(*badge, "lineWidth"), 1.5);
    EXPECT_EQ(valueForKey<int>(*badge, "xOffset"), -3);
    const auto color = valueForKey<NSColor>(*badge, "bgColor");
    EXPECT_NEAR(color.blueComponent(), 0.4, 1e-4);
    EXPECT_NEAR(color.alphaComponent(), 0.2, 1e-4);
    const auto font = valueForKey<NSFont>(*badge, "textFont");
    EXPECT_EQ(font.family, "DejaVu Serif");
    EXPECT_NEAR(font.size, 9.0 * QWidget().logicalDpiY() / 72, 1e-9);
    EXPECT_TRUE(font.isBold);
    EXPECT_THAT(console.lines(), ElementsAre(HasSubstr("Form.ui: unheardOf of \"badge\"")));

    auto* const field = dynamic_cast<NSTextField*>(root->viewWithIdentifier("field"));
    ASSERT_TRUE(field);
    EXPECT_EQ(field->frame(), NSMakeRect(0, 80, 50, 20));
    EXPECT_EQ(field->stringValue(), "text");
    EXPECT_FALSE(field->isEnabled());
    EXPECT_EQ(field->accessibilityLabel(), "label");
    EXPECT_EQ(root->viewWithIdentifier("inner")->frame(), NSMakeRect(1, 2, 3, 4)); // flipped
    EXPECT_THAT(awoken, ElementsAre("inner", "root"));
    EXPECT_FALSE(root->viewWithIdentifier(""));
}

TEST_F(ViewLoading, ShowsWidgetsInViewsAndViewsInWidgets) {
    auto root = load(ui(widget("NSView", "root", "0 0 200 100",
        widget("QWidget", "box", "20 10 100 50",
            "<layout class=\"QVBoxLayout\"><property name=\"margin\"><number>0</number></property>"
            "<item>"
                + widget("QPushButton", "button", "0 0 9 9") + "</item><item>"
                + widget("Sleeper", "deep", "0 0 9 9") + "</item></layout>"))));
    ASSERT_TRUE(root) << reason;
    auto* const box = dynamic_cast<qt::WidgetView*>(root->viewWithIdentifier("box"));
    ASSERT_TRUE(box);
    EXPECT_EQ(box->frame(), NSMakeRect(20, 40, 100, 50));
    EXPECT_THAT(awoken, ElementsAre("deep"));
    const QPointer<QPushButton> button = box->widget()->findChild<QPushButton*>("button");
    ASSERT_TRUE(button);
    for (int time = 0; time < 2; ++time) { // the widget outlives whoever shows it
        qt::ViewWidget shown(root);
        shown.resize(200, 100);
        shown.show();
        shown.grab();
        ASSERT_TRUE(button);
        EXPECT_EQ(box->widget()->mapTo(&shown, QPoint()), QPoint(20, 10));
        EXPECT_EQ(button->width(), 100);
        NSView* const deep = root->viewWithIdentifier("deep");
        ASSERT_TRUE(deep);
        EXPECT_EQ(deep->frame().size.width, 100);
        EXPECT_TRUE(button->isVisible());
    }
    root.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(button);
}

TEST_F(ViewLoading, SaysWhyThereIsNothing) {
    folder.write("broken.ui", "<ui version=\"4.0\">\n<widget class=\"NSView\"\n</ui>");
    folder.write("empty.ui", "");
    folder.write("other.ui", "<html/>");
    folder.write("sub/inside.ui", ui(widget("NSView", "root", "0 0 1 1")));
    std::string deep;
    for (int depth = 0; depth < 50000; ++depth)
        deep += "<widget class=\"QWidget\">";
    folder.write("deep.ui", ui(deep));
    std::filesystem::create_directory(folder.path("folder.ui"));
    ASSERT_EQ(mkfifo(folder.path("pipe.ui").c_str(), 0600), 0);
    const std::pair<std::string, std::string> rows[] {
        {"broken", "broken.ui: "},
        {"broken", "line 3"},
        {"empty", "empty.ui: "},
        {"other", "other.ui: "},
        {"deep", "deep.ui: is nested too deeply"},
        {"none", "none.ui: No such file or directory"},
        {"folder", "folder.ui: "},
        {"pipe", "pipe.ui: "},
        {"sub/inside", "no name of a layout file"},
        {"../" + folder.path().substr(folder.path().rfind('/') + 1) + "/broken", "no name"},
        {std::string("broken\0", 7), "no name"},
        {"", "no name"},
    };
    for (const auto& [name, expected] : rows) {
        reason.clear();
        EXPECT_FALSE(loadViewDescription(name, folder.path(), reason)) << name;
        EXPECT_THAT(reason, HasSubstr(expected));
    }
    EXPECT_TRUE(loadViewDescription("inside", folder.path("sub"), reason)) << reason;
}

} // namespace

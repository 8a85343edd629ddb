// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Text fields and buttons as the user meets them: as widgets over their views.
#include <KWToolkit/controls/KWShadowedTextField.h>
#include <KWToolkit/controls/KWTextFieldCell.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/foundation/NSNotificationCenter.h>
#include <KWToolkit/platform/ui/NSButton.h>
#include <KWToolkit/platform/ui/NSTextField.h>
#include <KWToolkit/platform/ui/NSTextView.h>
#include <KWToolkitQt/ViewPeer.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Window.h"

#include <QDialog>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>

#include <utility>

namespace {

using namespace kw;
using testing::ElementsAre;

const NSColor red = NSColor::colorWithDeviceRed(1, 0, 0, 1);
const NSColor green = NSColor::colorWithDeviceRed(0, 1, 0, 1);
const NSColor blue = NSColor::colorWithDeviceRed(0, 0, 1, 1);
constexpr QRgb redPixel = 0xffff0000;
constexpr QRgb greenPixel = 0xff00ff00;
constexpr QRgb bluePixel = 0xff0000ff;

/// Takes actions.
struct Target : NSObject {
    std::vector<std::string> log;
    std::function<void()> act = [] { };
    void enter(NSTextField& field) { log.push_back("enter " + field.stringValue()); }
    void press() {
        log.emplace_back("press");
        act();
    }
    static Class& classObject() {
        static auto& object = *new Class("Target", NSObject::classObject(),
            {method("enter:", &Target::enter), method("press", &Target::press)});
        return object;
    }
    Class& isa() const override { return classObject(); }
};

/// Two fields, one above the other, and a button at the lower edge.
struct Form {
    Form() {
        for (const auto& view : std::vector<std::shared_ptr<NSView>> {name, city, button})
            root->addSubview(view);
    }
    std::shared_ptr<NSView> root = std::make_shared<NSView>(NSMakeRect(0, 0, 220, 100));
    std::shared_ptr<NSTextField> name = std::make_shared<NSTextField>(NSMakeRect(10, 70, 200, 20));
    std::shared_ptr<NSTextField> city = std::make_shared<NSTextField>(NSMakeRect(10, 40, 200, 20));
    std::shared_ptr<NSButton> button = std::make_shared<NSButton>(NSMakeRect(10, 5, 90, 26));
};

/// What a field tells of its editing.
struct Posted {
    explicit Posted(const NSTextField& field, std::function<void()> act = [] { }) {
        for (const char* name : {NSControlTextDidBeginEditingNotification,
                 NSControlTextDidChangeNotification, NSControlTextDidEndEditingNotification})
            observers.push_back(
                center.addObserver(name, &field, [this, act](const NSNotification& notification) {
                    names.push_back(notification.name);
                    act();
                }));
    }
    ~Posted() {
        for (const auto observer : observers)
            center.removeObserver(observer);
    }
    NSNotificationCenter& center = NSNotificationCenter::defaultCenter();
    std::vector<std::string> names;
    std::vector<NSNotificationCenter::Observer> observers;
};

QWidget* focus() { return QApplication::focusWidget(); }
QLineEdit* editor() { return dynamic_cast<QLineEdit*>(focus()); }

QImage picture(QWidget& widget) { return widget.grab().toImage(); }

/// The smallest rectangle around all pixels for which it holds.
template <class Condition>
QRect boundsOf(const QImage& image, Condition holds) {
    QRect bounds;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (holds(image.pixel(x, y)))
                bounds |= QRect(x, y, 1, 1);
        }
    }
    return bounds;
}

QRect boundsOf(const QImage& image, QRgb color) {
    return boundsOf(image, [color](QRgb pixel) { return pixel == color; });
}

TEST(FieldPeer, TypesIntoTheFieldThatWasClicked) {
    const Form form;
    Target target;
    form.name->setTarget(target);
    form.name->setAction(SEL("enter:"));
    form.city->setStringValue("Rom");
    Window window(form.root);
    const Posted posted(*form.name);

    window.click({20, 15});
    ASSERT_TRUE(editor());
    QTest::keyClicks(focus(), "Ax");
    QInputMethodEvent composed;
    composed.setCommitString(QStringLiteral("\u00e9"));
    QApplication::sendEvent(focus(), &composed);
    EXPECT_EQ(form.name->stringValue(), "Ax\xc3\xa9");
    EXPECT_EQ(form.name->currentEditor()->selectedRange(), (NSRange {4, 0}));
    QTest::keyClick(focus(), Qt::Key_Home, Qt::ShiftModifier);
    EXPECT_EQ(form.name->currentEditor()->selectedRange(), (NSRange {0, 4}));
    window.views->grab();
    QTest::keyClick(focus(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(form.name->stringValue(), "");
    QTest::keyClick(focus(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(form.name->stringValue(), "Ax\xc3\xa9");
    QTest::keyClick(focus(), Qt::Key_Return);
    EXPECT_THAT(target.log, ElementsAre("enter Ax\xc3\xa9"));

    window.click({20, 45});
    EXPECT_EQ(posted.names.front(), NSControlTextDidBeginEditingNotification);
    EXPECT_EQ(posted.names.back(), NSControlTextDidEndEditingNotification);
    EXPECT_EQ(form.name->currentEditor(), nullptr);
    EXPECT_EQ(editor()->text(), "Rom");
    form.city->setStringValue("Oslo");
    EXPECT_TRUE(QTest::qWaitFor([] { return editor()->text() == "Oslo"; }));
    window.other->setFocus();
    EXPECT_EQ(form.city->currentEditor(), nullptr);
    EXPECT_EQ(window.views->firstResponder(), nullptr);
}

TEST(FieldPeer, PutsTheCaretWhereTheFirstClickIsAndSelectsFromThere) {
    for (const auto alignment :
        {NSTextAlignmentNatural, NSTextAlignmentRight, NSTextAlignmentCenter}) {
        const Form form;
        form.name->setStringValue("mmmmmmmmmm");
        form.name->setAlignment(alignment);
        Window window(form.root);
        form.name->selectText();
        form.name->currentEditor()->setInsertionPointColor(NSColor::clearColor());
        form.name->currentEditor()->setSelectedRange({0, 0});
        const QRect text = boundsOf(picture(*window.views).copy(10, 10, 200, 20),
            [&](QRgb pixel) { return qGray(pixel) < 100; });
        window.other->setFocus();
        ASSERT_FALSE(text.isEmpty());
        const QPoint middle = text.center() + QPoint(10, 10);
        QTest::mousePress(window.views, Qt::LeftButton, {}, middle);
        EXPECT_EQ(form.name->currentEditor()->selectedRange(), (NSRange {5, 0})) << alignment;
        QMouseEvent drag(QEvent::MouseMove, QPointF(text.right() + 10, middle.y()),
            window.views->mapToGlobal(QPointF(text.right() + 10, middle.y())), Qt::NoButton,
            Qt::LeftButton, {});
        QApplication::sendEvent(window.views, &drag);
        QTest::mouseRelease(window.views, Qt::LeftButton, {}, middle);
        EXPECT_EQ(form.name->currentEditor()->selectedRange(), (NSRange {5, 5})) << alignment;
    }
}

TEST(FieldPeer, ShowsTheTextWhereTheFieldDrawsIt) {
    for (const double size : {11.0, 13.0, 24.0}) {
        const Form form;
        form.name->setStringValue("Hamburg");
        form.name->setFont(NSFont::systemFontOfSize(size));
        form.name->setFrame(NSMakeRect(10, 60, 200, 30));
        form.name->setTextColor(blue);
        Window window(form.root);
        const auto isInk = [](QRgb pixel) { return qBlue(pixel) > qRed(pixel) + 30; };
        const QRect drawn = boundsOf(picture(*window.views), isInk);
        form.name->selectText();
        ASSERT_TRUE(editor());
        form.name->currentEditor()->setInsertionPointColor(NSColor::redColor());
        form.name->currentEditor()->setSelectedRange({7, 0});
        EXPECT_EQ(boundsOf(picture(*window.views), isInk), drawn) << size;
    }
}

TEST(FieldPeer, HasTheColorsOfTheEditor) {
    const Form form;
    form.name->setStringValue("Hamburg");
    Window window(form.root);
    window.click({20, 15});
    const auto edited = form.name->currentEditor();
    edited->setInsertionPointColor(red);
    edited->setSelectedTextAttributes({green, blue});
    edited->setSelectedRange({7, 0});
    QImage image = picture(*window.views);
    const QRect caret = boundsOf(image, redPixel);
    EXPECT_EQ(caret.width(), 1);
    EXPECT_GT(caret.height(), 10);
    EXPECT_TRUE(boundsOf(image, greenPixel).isEmpty());
    edited->selectAll();
    image = picture(*window.views);
    EXPECT_NEAR(boundsOf(image, greenPixel).right(), caret.left(), 1);
    EXPECT_TRUE(boundsOf(image, redPixel).isEmpty());
}

TEST(FieldPeer, IsRecoloredByItsCellAsTheWindowIsActivatedAndKeepsBeingEdited) {
    struct Cell : KWTextFieldCell {
        Cell() {
            m_selectionColor = green;
            m_inactiveSelectionColor = blue;
        }
        void drawWithFrame(NSGraphicsContext& context, NSRect frame, NSView& view) override {
            KWTextFieldCell::drawWithFrame(context, frame, view);
            ++drawn;
        }
        int drawn = 0;
    };
    const Form form;
    const auto cell = std::make_shared<Cell>();
    form.name->setCell(cell);
    form.name->setStringValue("Hamburg");
    Window window(form.root);
    form.name->selectText();
    EXPECT_FALSE(boundsOf(picture(*window.views), greenPixel).isEmpty());
    {
        QWidget another;
        another.show();
        another.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&another));
        EXPECT_EQ(window.views->firstResponder(), form.name->currentEditor().get());
        ASSERT_TRUE(form.name->currentEditor());
        EXPECT_FALSE(boundsOf(picture(*window.views), bluePixel).isEmpty());
        cell->drawn = 0;
        for (int pass = 0; pass < 50; ++pass)
            QCoreApplication::processEvents();
        EXPECT_LT(cell->drawn, 5); // and not for ever
    }
    window.window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window.window));
    QTest::keyClicks(focus(), "Ulm");
    EXPECT_EQ(form.name->stringValue(), "Ulm");
}

TEST(FieldPeer, FollowsAFieldThatIsAsWideAsItsText) {
    const auto root = std::make_shared<NSView>(NSMakeRect(0, 0, 400, 40));
    const auto field = std::make_shared<KWShadowedTextField>(NSMakeRect(10, 10, 8, 20));
    field->setPadding({3, 2});
    root->addSubview(field);
    Window window(root);
    field->selectText();
    const auto isInk = [](QRgb pixel) { return qGray(pixel) < 128; };
    for (const char letter : std::string("Lilli")) {
        QTest::keyClick(focus(), letter);
        ASSERT_TRUE(
            QTest::qWaitFor([&] { return focus()->width() == qRound(field->frame().size.width); }));
    }
    field->currentEditor()->setInsertionPointColor(NSColor::clearColor());
    const QRect typed = boundsOf(picture(*window.views), isInk);
    window.other->setFocus();
    EXPECT_EQ(boundsOf(picture(*window.views), isInk), typed);
}

TEST(ViewPeers, AreInTheOrderOfTheTabKey) {
    const Form form;
    const auto probe = std::make_shared<Probe>(NSMakeRect(120, 5, 20, 20));
    form.root->addSubview(probe);
    for (const bool isAlone : {false, true}) {
        Window window(form.root);
        if (isAlone)
            window.other->setFocusPolicy(Qt::NoFocus);
        const auto place = [&] {
            const NSView* const first =
                focus() == window.other ? nullptr : window.views->firstResponder();
            return !first                               ? "other"
                : first == probe.get()                  ? "probe"
                : first == form.button.get()            ? "button"
                : first->superview() == form.name.get() ? "name"
                                                        : "city";
        };
        const auto walk = [&](Qt::Key key) {
            std::string way;
            for (int step = 0; step < 5; ++step) {
                QTest::keyClick(focus(), key);
                way += std::string(" ") + place();
            }
            return way;
        };
        if (isAlone)
            form.name->selectText();
        EXPECT_EQ(walk(Qt::Key_Tab),
            isAlone ? " city button probe name city" : " name city button probe other");
        EXPECT_EQ(walk(Qt::Key_Backtab),
            isAlone ? " name probe button city name" : " probe button city name other");
    }
}

TEST(ViewPeers, LeaveKeysThatNeitherTextNorViewsTakeToTheDialog) {
    const Form form;
    Target target;
    form.button->setTarget(target);
    form.button->setAction(SEL("press"));
    form.button->setKeyEquivalent("\r");
    QDialog dialog;
    auto* const views = new qt::ViewWidget(form.root, &dialog);
    views->resize(220, 100);
    dialog.show();
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    form.name->selectText();
    ASSERT_TRUE(editor());
    QTest::keyClick(focus(), Qt::Key_Return); // no action of its own
    EXPECT_THAT(target.log, ElementsAre("press"));
    EXPECT_TRUE(views->findChild<QPushButton*>()->isDefault());
    EXPECT_EQ(form.button->host()->makeFirstResponder(form.button.get()), true);
    QTest::keyClick(focus(), Qt::Key_Return);
    EXPECT_THAT(target.log, ElementsAre("press", "press")); // once each
    QTest::keyClick(focus(), Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
}

TEST(ViewPeers, LieWhereTheirViewsAreToBeSeen) {
    const Form form;
    Window window(form.root);
    const auto box = std::make_shared<NSView>(NSMakeRect(10, 5, 50, 20));
    form.root->addSubview(box);
    box->addSubview(form.button);
    form.button->setFrame(NSMakeRect(-10, 0, 90, 26));
    window.views->grab();
    QWidget* const widget = window.views->findChildren<QPushButton*>().last(); // of its new place
    const double bottom = form.root->frame().size.height;
    EXPECT_EQ(widget->geometry(), QRect(0, static_cast<int>(bottom) - 31, 90, 26));
    EXPECT_EQ(widget->mask().boundingRect(), QRect(10, 6, 50, 20));
    box->setHidden(true);
    window.views->grab();
    EXPECT_TRUE(widget->isHidden());
    const QPointer<QWidget> gone = widget;
    box->removeFromSuperview();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !gone; }));
}

TEST(ViewPeers, LiveNoLongerThanWhatTheyShow) {
    auto form = std::make_unique<Form>();
    auto window = std::make_unique<Window>(form->root);
    window->click({20, 15});
    QTest::keyClicks(focus(), "a");
    form->name->removeFromSuperview();
    EXPECT_EQ(form->name->stringValue(), "a");
    EXPECT_EQ(focus(), window->views);
    QTest::keyClicks(focus(), "b");
    form->city->selectText();
    QTest::keyClicks(focus(), "c");
    form->city->setHidden(true);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !form->city->currentEditor(); }));
    form->city->setHidden(false);
    form->city->selectText();
    window.reset();
    EXPECT_EQ(form->city->stringValue(), "c");
    EXPECT_EQ(form->city->currentEditor(), nullptr);

    // A field that goes while it is told of a change.
    window = std::make_unique<Window>(form->root);
    const Posted posted(*form->city, [&] { form->city->removeFromSuperview(); });
    form->city->selectText();
    QTest::keyClicks(focus(), "d");
    form->city.reset();
    form.reset();
    QTest::keyClicks(focus(), "e");
}

TEST(ViewPeers, LeaveTheFocusWhereTheEndOfEditingHasPutIt) {
    enum class Act { removes, reselects };
    for (const auto act : {Act::removes, Act::reselects}) {
        Form form;
        Window window(form.root);
        form.name->selectText();
        const Posted posted(*form.name, [&] {
            if (act == Act::reselects && !form.name->currentEditor())
                form.name->selectText();
            else if (act == Act::removes && form.city)
                std::exchange(form.city, nullptr)->removeFromSuperview();
        });
        QTest::keyClick(focus(), Qt::Key_Tab);
        EXPECT_EQ(window.views->firstResponder(), form.name->currentEditor().get());
        EXPECT_EQ(form.name->currentEditor() != nullptr, act == Act::reselects);
    }
}

TEST(ViewPeers, MayDeleteTheirWidgetByAKeyOrWhenEditingEnds) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Tab}) {
        const Form form;
        Target target;
        form.button->setTarget(target);
        form.button->setAction(SEL("press"));
        form.button->setKeyEquivalent("\r");
        Window window(form.root);
        form.name->selectText();
        target.act = [&] { delete std::exchange(window.views, nullptr); };
        const Posted posted(*form.name, target.act);
        QTest::keyClick(focus(), key);
        EXPECT_FALSE(window.views);
    }
}

TEST(ViewPeers, DoNothingWithAKeyThatIsAShortcut) {
    const Form form;
    Target target;
    form.button->setTarget(target);
    form.button->setAction(SEL("press"));
    form.button->setKeyEquivalent(" ");
    Window window(form.root);
    form.root->host()->makeFirstResponder(form.button.get());
    QTest::keyClick(focus(), Qt::Key_Space);
    EXPECT_THAT(target.log, ElementsAre("press"));
    form.button->setKeyEquivalent("");
    QTest::keyClick(focus(), Qt::Key_Space);
    EXPECT_THAT(target.log, ElementsAre("press", "press"));
}

TEST(ViewPeers, AreScrolledToWithTheFocus) {
    const Form form;
    form.root->setFrame(NSMakeRect(0, 0, 220, 2000)); // the fields at its lower end
    QScrollArea area;
    auto* const views = new qt::ViewWidget(form.root);
    views->resize(220, 2000);
    area.setWidget(views);
    area.resize(240, 200);
    area.show();
    area.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&area));
    form.city->selectText();
    EXPECT_TRUE(views->visibleRegion().contains(QRect(10, 1940, 200, 20)));
}

TEST(ButtonPeer, ClicksWithItsTitleAsItIs) {
    const Form form;
    Target target;
    form.button->setTarget(target);
    form.button->setAction(SEL("press"));
    form.button->setTitle("R&D");
    Window window(form.root);
    window.views->grab();
    const QPointer<QPushButton> widget = window.views->findChild<QPushButton*>();
    EXPECT_EQ(widget->text(), "R&&D");
    NSAttributedString title("Red");
    title.setForegroundColor(red, {0, 3});
    EXPECT_TRUE(boundsOf(picture(*window.views), redPixel).isEmpty());
    form.button->setAttributedTitle(title);
    const QRect ink = boundsOf(
        picture(*window.views), [](QRgb pixel) { return qRed(pixel) > qGreen(pixel) + 80; });
    EXPECT_LT((ink.center() - widget->geometry().center()).manhattanLength(), 5);

    QTest::mouseClick(widget, Qt::LeftButton);
    EXPECT_EQ(window.views->firstResponder(), form.button.get());
    form.button->setEnabled(false);
    window.views->grab();
    QTest::mouseClick(widget, Qt::LeftButton);
    form.button->setEnabled(true);
    window.views->grab();
    target.act = [&] { form.button->removeFromSuperview(); };
    QTest::mouseClick(widget, Qt::LeftButton);
    EXPECT_THAT(target.log, ElementsAre("press", "press"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !widget; }));
}

TEST(ViewPeers, AreMadeForClassesOfTheHostsAndThoseThatInheritThem) {
    struct Dial : NSView {
        using NSView::NSView;
        static Class& classObject() {
            static auto& object = *new Class("Dial", NSView::classObject());
            return object;
        }
        Class& isa() const override { return classObject(); }
    };
    struct BigDial : Dial {
        using Dial::Dial;
        static Class& classObject() {
            static auto& object = *new Class("BigDial", Dial::classObject());
            return object;
        }
        Class& isa() const override { return classObject(); }
    };
    struct Peer : qt::ViewPeer {
        explicit Peer(QWidget& parent)
            : m_widget(*new QLineEdit(&parent)) {
            m_widget.setObjectName("dial");
            m_widget.setFocusPolicy(Qt::ClickFocus);
        }
        QWidget& widget() override { return m_widget; }
        void update() override { }
        QLineEdit& m_widget;
    };
    qt::registerViewPeer(Dial::classObject(),
        [](NSView&, QWidget& parent) { return std::make_unique<Peer>(parent); });
    const Form form;
    const auto dial = std::make_shared<BigDial>(NSMakeRect(120, 5, 50, 30));
    form.root->addSubview(dial);
    Window window(form.root);
    form.name->selectText();
    auto* const widget = window.views->findChild<QWidget*>("dial");
    ASSERT_TRUE(widget);
    QTest::mouseClick(widget, Qt::LeftButton);
    widget->setFocus(); // as a real click does
    EXPECT_EQ(window.views->firstResponder(), dial.get());
    EXPECT_EQ(form.name->currentEditor(), nullptr);
}

TEST(FieldPeer, MayGoWhileItTellsOfAChange) {
    for (const bool isModal : {false, true}) {
        const Form form;
        Window window(form.root);
        form.name->selectText();
        const QPointer<QWidget> line = editor();
        bool isTold = false;
        const Posted posted(*form.name, [&] {
            if (std::exchange(isTold, true))
                return;
            if (!isModal) {
                delete std::exchange(window.views, nullptr);
                return;
            }
            QDialog dialog;
            form.name->removeFromSuperview();
            QObject::connect(line, &QObject::destroyed, &dialog, &QDialog::accept);
            dialog.exec();
        });
        QTest::keyClick(focus(), 'a');
        EXPECT_TRUE(isTold);
        EXPECT_FALSE(line);
    }
}

TEST(FieldPeer, KeepsTheCaretBehindBytesThatAreNoText) {
    const Form form;
    form.name->setStringValue("\xff\xff\xe2\x82"
                              "abc");
    Window window(form.root);
    form.name->selectText();
    editor()->setCursorPosition(5);
    EXPECT_EQ(form.name->currentEditor()->selectedRange(), (NSRange {5, 0}));
    QTest::keyClick(focus(), Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(form.name->currentEditor()->selectedRange(), (NSRange {5, 1}));
}

TEST(FieldPeer, IsNotStyledByTheSheetsOfTheHost) {
    for (const char* const sheet : {"QLineEdit { padding: 6px; border: 3px solid yellow; }",
             "* { font: 24px; }", "QLineEdit:focus { color: red; background: yellow; }",
             "QLineEdit { min-height: 60px; margin: 4px; }"}) {
        qApp->setStyleSheet(sheet);
        const Form form;
        form.name->setStringValue("Hamburg");
        form.name->setTextColor(blue);
        Window window(form.root);
        const auto isInk = [](QRgb pixel) { return qBlue(pixel) > qRed(pixel) + 30; };
        const QRect drawn = boundsOf(picture(*window.views), isInk);
        form.name->selectText();
        form.name->currentEditor()->setInsertionPointColor(NSColor::clearColor());
        form.name->currentEditor()->setSelectedRange({7, 0});
        const QImage edited = picture(*window.views);
        EXPECT_EQ(boundsOf(edited, isInk), drawn) << sheet;
        EXPECT_TRUE(
            boundsOf(edited, [](QRgb pixel) { return qRed(pixel) > qBlue(pixel) + 80; }).isEmpty())
            << sheet;
    }
    qApp->setStyleSheet({});
}

} // namespace

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "WindowsPage.h"

#include "ImageWidgets.h"
#include "Tour.h"
#include "Widgets.h"

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/headless/HeadlessWorkspace.h>
#include <KWToolkit/platform/ui/NSAnimation.h>
#include <KWToolkit/platform/ui/NSButton.h>
#include <KWToolkit/platform/ui/NSPanel.h>
#include <KWToolkit/windows/KWTranFadeWindow.h>
#include <KWToolkit/windows/NSAlert+SimpleAlert.h>
#include <KWToolkit/windows/NSPanel+Fade.h>
#include <KWToolkit/windows/NSWindow+Fade.h>
#include <KWToolkit/windows/NSWindow+SmartResize.h>

#include <QAbstractButton>
#include <QApplication>
#include <QScreen>
#include <QTest>

#include <algorithm>
#include <chrono>
#include <optional>
#include <string>
#include <utility>

namespace gallery {

namespace {

constexpr kw::NSSize small {240, 130};
constexpr kw::NSSize large {240, 260};
constexpr int distance = 16; // from the gallery
constexpr int hidden = 1000; // milliseconds, the gallery between its fades

/// Shows the key that was typed last, above a button.
class Content final : public kw::NSView {
public:
    Content(const std::string& buttonTitle, const char* action, kw::NSObject& target) {
        auto button = std::make_shared<kw::NSButton>(kw::NSMakeRect(60, 20, 120, 30));
        button->setTitle(buttonTitle);
        button->setTarget(target);
        button->setAction(kw::SEL(action));
        addSubview(std::move(button));
    }

    bool acceptsFirstResponder() const override { return true; }
    void keyDown(const kw::NSEvent& event) override {
        typed = event.charactersIgnoringModifiers;
        setNeedsDisplay();
    }
    void drawRect(kw::NSGraphicsContext& context, kw::NSRect) override {
        context.setFillColor(kw::NSColor::colorWithCalibratedRed(0.16, 0.2, 0.34, 1));
        context.fill(kw::NSBezierPath::bezierPathWithRoundedRect(bounds(), 18, 18));
        const kw::TextAttributes attributes {
            kw::NSFont::boldSystemFontOfSize(16), kw::NSColor::whiteColor()};
        const std::string text = typed.empty() ? "Type a letter" : "The letter “" + typed + "”";
        const kw::NSSize size = context.sizeOfText(text, attributes);
        const double room = NSMaxY(bounds()) - 50; // above the button
        context.drawText(text,
            {(bounds().size.width - size.width) / 2, 50 + (room - size.height) / 2}, attributes);
    }

    std::string typed;
};

/// Calls a function when it is clicked.
class ActionButton final : public kw::NSButton {
public:
    ActionButton(const std::string& title, std::function<void()> action)
        : m_action(std::move(action)) {
        setTitle(title);
        sizeToFit();
        setTarget(*this);
        setAction(kw::SEL("act"));
    }
    static kw::Class& classObject() {
        static kw::Class object("ActionButton", kw::NSButton::classObject(),
            {kw::method("act", [](ActionButton& self) { self.m_action(); })});
        return object;
    }
    kw::Class& isa() const override { return classObject(); }

private:
    const std::function<void()> m_action;
};

const char* nameOf(kw::NSWindowOpacity opacity) {
    switch (opacity) {
    case kw::NSWindowOpacity::window:
        return "the whole window";
    case kw::NSWindowOpacity::content:
        return "the window's content";
    default:
        return "nothing";
    }
}

/// The widget that shows a tree of views.
QWidget* widgetOf(const kw::NSView& root) {
    const QWidgetList all = QApplication::allWidgets();
    const auto found = std::ranges::find_if(all, [&](QWidget* widget) {
        const auto* const shows = dynamic_cast<kw::qt::ViewWidget*>(widget);
        return shows && shows->rootView().get() == &root;
    });
    return found == all.end() ? nullptr : *found;
}

QString rectText(const kw::NSRect& rect) {
    return QString("%1 at %2, %3")
        .arg(sizeText(rect.size.width, rect.size.height, "points"))
        .arg(rect.origin.x)
        .arg(rect.origin.y);
}

} // namespace

struct WindowsPage::Shown {
    std::shared_ptr<kw::NSWindow> window;
    std::shared_ptr<Content> content;
    std::function<void()> fadeIn;
    std::function<void()> fadeOut;
    bool hasPlace = false;
};

QWidget* WindowsPage::make() { return new WindowsPage; }

WindowsPage::WindowsPage()
    : m_fadeIn(new QPushButton("Fade in"))
    , m_fadeOut(new QPushButton("Fade out"))
    , m_larger(new QPushButton("Larger"))
    , m_smaller(new QPushButton("Smaller"))
    , m_isAnimated(new QCheckBox("Animated resizing"))
    , m_reducesMotion(new QCheckBox("Reduced motion"))
    , m_warn(new QPushButton("Warn"))
    , m_state(label())
    , m_frame(label())
    , m_upperEdge(label())
    , m_fades(label())
    , m_fadeGallery(new kw::qt::ViewWidget(
          std::make_shared<ActionButton>("Fade the gallery", [this] { fadeGallery(); }))) {
    kw::NSAnimation::setHonorsReducedMotion(true);
    const kw::NSRect frame {{0, 0}, small};
    const auto frameless = std::make_shared<kw::KWTranFadeWindow>(frame);
    const auto panel = std::make_shared<kw::NSPanel>(frame,
        kw::NSWindowStyleMaskTitled | kw::NSWindowStyleMaskClosable
            | kw::NSWindowStyleMaskResizable,
        kw::NSBackingStoreType::buffered, false);
    panel->setTitle("A panel");
    panel->setMinSize(small);
    m_windows[0] = std::make_unique<Shown>(
        Shown {frameless, std::make_shared<Content>("Fade out", "fadeOut:", *frameless),
            [frameless = frameless.get()] { frameless->fadeIn(); },
            [frameless = frameless.get()] { frameless->fadeOut(); }});
    m_windows[1] =
        std::make_unique<Shown>(Shown {panel, std::make_shared<Content>("Close", "close", *panel),
            [panel = panel.get()] { kw::fadeIn(*panel); },
            [panel = panel.get()] { kw::fadeOut(*panel); }});
    for (const auto& shown : m_windows)
        shown->window->setContentView(shown->content);

    auto* const choices = new QWidget;
    m_choice = choice(*choices, {"without a frame", "with a title"});
    m_isAnimated->setChecked(true);
    m_fadeGallery->setFixedSize(m_fadeGallery->sizeHint());
    const auto row = [](std::initializer_list<QWidget*> widgets) {
        auto* const layout = new QHBoxLayout;
        layout->setSpacing(8);
        for (QWidget* const widget : widgets)
            layout->addWidget(widget);
        layout->addStretch();
        return layout;
    };

    auto* const layout = pageLayout(*this, "Windows");
    layout->addWidget(label("Both windows fade, have the keyboard, and keep their upper left "
                            "corner when they are resized. The one without a frame is moved by "
                            "its background, and seen through where nothing is drawn."));
    layout->addLayout(factsLayout({{"Window", choices}}));
    layout->addLayout(row({m_fadeIn, m_fadeOut, m_larger, m_smaller}));
    layout->addLayout(row({m_isAnimated, m_reducesMotion}));
    layout->addLayout(factsLayout({{"It is", m_state}, {"Frame", m_frame},
        {"Upper edge", m_upperEdge}, {"What fades", m_fades}}));
    layout->addLayout(row({m_fadeGallery, m_warn}));
    layout->addStretch();

    connect(m_fadeIn, &QPushButton::clicked, this, &WindowsPage::fadeIn);
    connect(m_fadeOut, &QPushButton::clicked, this, [this] { doAsDesired(chosen().fadeOut); });
    connect(m_larger, &QPushButton::clicked, this, [this] { resizeTo(large); });
    connect(m_smaller, &QPushButton::clicked, this, [this] { resizeTo(small); });
    connect(m_warn, &QPushButton::clicked, this, [] {
        kw::simpleWarningAlertWithTitle("The recording is almost full",
            "What is recorded in an hour from now replaces what was recorded first.", "I see");
    });
    connect(m_choice, &QButtonGroup::idClicked, this, &WindowsPage::update);
    connect(&m_timer, &QTimer::timeout, this, &WindowsPage::update);
    update();
}

WindowsPage::~WindowsPage() = default;

void WindowsPage::showEvent(QShowEvent*) {
    update();
    m_timer.start(std::chrono::milliseconds(50));
}

void WindowsPage::hideEvent(QHideEvent*) { m_timer.stop(); }

WindowsPage::Shown& WindowsPage::chosen() const {
    return *m_windows[static_cast<std::size_t>(m_choice->checkedId())];
}

void WindowsPage::doAsDesired(const std::function<void()>& action) const {
    kw::HeadlessWorkspace calm;
    calm.reducesMotion = true;
    std::optional<kw::ServiceScope<kw::HeadlessWorkspace>> scope;
    if (m_reducesMotion->isChecked())
        scope.emplace(calm);
    action();
}

void WindowsPage::fadeIn() {
    Shown& shown = chosen();
    if (!std::exchange(shown.hasPlace, true)) {
        // On the gallery's right, as far as there is room.
        const kw::NSRect gallery = m_fadeGallery->rootView()->window()->frame();
        const double end = window()->screen()->availableGeometry().right();
        const kw::NSSize size = shown.window->frame().size;
        const double x = std::min(NSMaxX(gallery) + distance, end - size.width - distance);
        shown.window->setFrame(
            kw::NSMakeRect(x, NSMaxY(gallery) - size.height - 100, size.width, size.height), false);
    }
    doAsDesired(shown.fadeIn);
    // A fade shows the window, and leaves the keyboard where it is.
    shown.window->makeKeyAndOrderFront();
    shown.window->makeFirstResponder(shown.content.get());
}

void WindowsPage::fadeGallery() {
    kw::NSWindow& gallery = *m_fadeGallery->rootView()->window();
    doAsDesired([&] { kw::fadeOut(gallery); });
    QTimer::singleShot(hidden, this, [this, &gallery] {
        doAsDesired([&] { kw::fadeIn(gallery); });
        gallery.makeKeyAndOrderFront();
    });
}

void WindowsPage::resizeTo(kw::NSSize size) {
    doAsDesired([&] { kw::resizeWindowToSize(*chosen().window, size, m_isAnimated->isChecked()); });
    update();
}

void WindowsPage::update() {
    const kw::NSWindow& window = *chosen().window;
    m_state->setText(!window.isVisible() ? "hidden"
            : window.isKeyWindow()       ? "shown, with the keyboard"
                                         : "shown");
    m_frame->setText(rectText(window.frame()));
    m_upperEdge->setText(QString::number(NSMaxY(window.frame())));
    m_fades->setText(nameOf(window.opacity()));
}

void WindowsPage::visit(Tour& tour, QWidget& page) { static_cast<WindowsPage&>(page).steps(tour); }

void WindowsPage::visitChosen(Tour& tour, const QString& name) {
    const Shown& shown = chosen();
    const auto state = [this] { return m_state->text(); };
    QWidget* const widget = widgetOf(*shown.content);
    if (!widget) {
        tour.expect("the window", "shown by a widget", [] { return "not"; });
        return;
    }
    const auto picture = [&] { return tour.pictureOf(*widget->window(), *window()); };
    const auto opacity = [&] {
        const QPoint place(widget->width() / 2, 12);
        return widget->window()->windowOpacity() >= 1
                && widget->window()->grab().toImage().pixel(place)
                    == widget->grab().toImage().pixel(place)
            ? "whole"
            : "faded";
    };
    const auto resize = [&](QPushButton& button, kw::NSSize size) {
        const QString upperEdge = m_upperEdge->text();
        const double frameHeight = shown.window->frame().size.height;
        const int height = widget->height();
        tour.click(button);
        tour.expect(button.text(), sizeText(size.width, size.height, "points"),
            [&] { return sizeText(widget->width(), widget->height(), "points"); });
        tour.expect("frame, higher by", QString::number(size.height - height),
            [&] { return QString::number(shown.window->frame().size.height - frameHeight); });
        tour.expect("upper edge", upperEdge, [this] { return m_upperEdge->text(); });
    };

    tour.expect("the window", "hidden", state);
    tour.click(*m_fadeIn);
    tour.expect("at the beginning", "shown",
        [&] { return shown.window->isVisible() ? "shown" : "hidden"; });
    QTest::qWait(static_cast<int>(kw::NSAnimation().duration() * 1000 / 2));
    tour.takePicture(name + "-1-half-way", picture());
    tour.expect("at the end", "whole", opacity);
    tour.expect("the window", "shown, with the keyboard", state);
    tour.hands().pressKey(Qt::Key_K);
    tour.hands().releaseKey(Qt::Key_K);
    tour.expect(
        "the key that it got", "k", [&] { return QString::fromStdString(shown.content->typed); });
    tour.takePicture(name + "-2-small", picture());

    resize(*m_larger, large);
    tour.takePicture(name + "-3-large", picture());
    tour.click(*m_isAnimated);
    tour.expect(
        m_isAnimated->text(), "off", [this] { return m_isAnimated->isChecked() ? "on" : "off"; });
    resize(*m_smaller, small);
    tour.click(*m_isAnimated);

    tour.click(*m_fadeOut);
    tour.expect("at the end", "hidden", state);
    tour.click(*m_reducesMotion);
    tour.expect(m_reducesMotion->text(), "on",
        [this] { return m_reducesMotion->isChecked() ? "on" : "off"; });
    tour.click(*m_fadeIn);
    tour.expect("the window", "shown, with the keyboard", state);
    tour.expect("the window", "whole", opacity);
    tour.click(*m_reducesMotion);
    tour.click(*widget->findChild<QAbstractButton*>());
    tour.expect("the window, by its own button", "hidden", state);
}

void WindowsPage::steps(Tour& tour) {
    visitChosen(tour, "windows-frameless");
    QWidget& titled = *m_choice->button(1);
    tour.hands().pressMouse(titled, {titled.height() / 2, titled.height() / 2});
    tour.hands().releaseMouse(titled, {titled.height() / 2, titled.height() / 2});
    tour.expect("choice", "with a title", [this] { return m_choice->checkedButton()->text(); });
    visitChosen(tour, "windows-titled");

    QWidget& gallery = *window();
    const auto isShown = [&] { return gallery.isVisible() ? "shown" : "hidden"; };
    tour.click(*m_fadeGallery->findChild<QAbstractButton*>());
    tour.expect("the gallery", "hidden", isShown);
    tour.expect("the gallery", "shown", isShown);
    tour.expect("the gallery", "active",
        [&] { return gallery.isActiveWindow() ? "active" : "not active"; });
    tour.clickToOpen(*m_warn, [&](QWidget& alert) {
        tour.takePicture("windows-warning", alert.grab());
        tour.click(*alert.findChild<QAbstractButton*>());
    });
}

} // namespace gallery

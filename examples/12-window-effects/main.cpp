// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// A window without a frame that fades in and out, and grows downward.
#include <KWToolkit/KWToolkit.h>
#include <KWToolkit/platform/ui/NSAnimation.h>
#include <KWToolkit/platform/ui/NSButton.h>
#include <KWToolkitQt/QtServices.h>

#include <QApplication>

#include <iostream>
#include <memory>
#include <string>

namespace {

constexpr const char* usage =
    "usage: 12-window-effects [--once]\n"
    "Shows a window without a frame: its buttons resize it and let it disappear, the mouse moves\n"
    "it by its background. With --once it does all that by itself, tells what it does, and ends.\n";

constexpr kw::NSSize small {300, 120};
constexpr kw::NSSize large {300, 240};

class EffectsView final : public kw::NSView {
public:
    EffectsView() {
        addButton("Grow", 20, "resize");
        addButton("Fade out", 160, "fadeOut");
    }

    static kw::Class& classObject() {
        static kw::Class object("EffectsView", kw::NSView::classObject(),
            {kw::method("resize", &EffectsView::resize),
                kw::method("fadeOut", &EffectsView::fadeOut)});
        return object;
    }
    kw::Class& isa() const override { return classObject(); }

    void drawRect(kw::NSGraphicsContext& context, kw::NSRect) override {
        context.setFillColor(kw::NSColor::colorWithCalibratedRed(0.15, 0.2, 0.3, 0.9));
        context.fill(kw::NSBezierPath::bezierPathWithRoundedRect(bounds(), 16, 16));
    }

    void resize() {
        m_isLarge = !m_isLarge;
        kw::resizeWindowToSize(*window(), m_isLarge ? large : small, /*animate*/ true);
    }
    void fadeOut() {
        kw::fadeOut(*window());
        // A fade tells nobody when it is over, but how long it takes is known.
        kw::Platform::runLoop().callAfter(
            kw::NSAnimation().duration() + 0.1, [] { QApplication::quit(); });
    }

private:
    void addButton(const std::string& title, double x, const char* action) {
        auto button = std::make_shared<kw::NSButton>(kw::NSMakeRect(x, 20, 120, 32));
        button->setTitle(title);
        button->setTarget(*this);
        button->setAction(kw::SEL(action));
        addSubview(button);
    }

    bool m_isLarge = false;
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

void doOnce(kw::KWTranFadeWindow& window, EffectsView& view) {
    auto& loop = kw::Platform::runLoop();
    const auto tell = [&window](const char* when) {
        const kw::NSRect frame = window.frame();
        std::cout << when << ": " << (window.isVisible() ? "shown" : "hidden") << ", "
                  << frame.size.width << " x " << frame.size.height << ", upper edge at "
                  << kw::NSMaxY(frame) << std::endl;
    };
    std::cout << "What fades is " << nameOf(window.opacity()) << ".\n";
    loop.callAfter(0.7, [&view, tell] {
        tell("faded in");
        view.resize();
    });
    loop.callAfter(1.2, [&view, tell] {
        tell("resized");
        view.fadeOut();
    });
}

} // namespace

int main(int argc, char** argv) {
    const bool isOnce = argc == 2 && argv[1] == std::string("--once");
    if (argc > 1 && !isOnce) {
        std::cerr << usage;
        return 2;
    }
    const QApplication application(argc, argv);
    kw::qt::useQtServices();

    kw::KWTranFadeWindow window({{300, 400}, small});
    const auto view = std::make_shared<EffectsView>();
    window.setContentView(view);
    window.fadeIn();
    window.makeKeyAndOrderFront();
    if (isOnce)
        doOnce(window, *view);
    QApplication::exec();
    std::cout << (window.isVisible() ? "still shown" : "hidden") << "\n";
    return window.isVisible() ? 1 : 0;
}

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// From the call of a modal web page to the first picture of it, beside a dialog with a bare web
// view; and the frames of a fade, beside those of Qt's own animation of the same window.
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/ui/NSApplication.h>
#include <KWToolkit/platform/ui/NSViewAnimation.h>
#include <KWToolkit/windows/KWHtmlModal.h>
#include <KWToolkit/windows/KWTranFadeWindow.h>
#include <KWToolkitQtWeb/QtWeb.h>
#include <bench/RatioReporter.h>

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFile>
#include <QPropertyAnimation>
#include <QTemporaryDir>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>
#include <QWebEngineView>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr kw::NSSize windowSize {500, 400};
constexpr int fades = 20;

QString page() {
    return QStringLiteral("<html><body style='background: #204060; color: white'><h1>License</h1>"
                          "<p>%1</p></body></html>")
        .arg(QStringLiteral("All that the page says. ").repeated(60));
}

double seconds(Clock::duration time) { return std::chrono::duration<double>(time).count(); }

/// Looks every millisecond whether a web view shows its page, and calls with the time when it does.
void whenPainted(const std::function<void(Clock::time_point, QWidget&)>& call) {
    auto* const timer = new QTimer;
    QObject::connect(timer, &QTimer::timeout, timer, [timer, call] {
        for (QWidget* const window : QApplication::topLevelWidgets()) {
            auto* const view = window->findChild<QWebEngineView*>();
            if (!view || !view->isVisible())
                continue;
            const QImage picture = view->grab().toImage();
            if (picture.pixelColor(3, 3) != QColor(0x20, 0x40, 0x60))
                continue;
            const auto now = Clock::now();
            timer->deleteLater();
            timer->stop();
            call(now, *window);
            return;
        }
    });
    timer->start(1);
}

double modal(const std::string& url) {
    const auto begin = Clock::now();
    auto end = begin;
    whenPainted([&end](Clock::time_point now, QWidget&) {
        end = now;
        kw::NSApplication::sharedApplication().stopModal();
    });
    kw::KWHtmlModal::htmlWindowWithSize(windowSize, url);
    return seconds(end - begin);
}

double dialog(const std::string& url) {
    const auto begin = Clock::now();
    auto end = begin;
    whenPainted([&end](Clock::time_point now, QWidget& window) {
        end = now;
        static_cast<QDialog&>(window).reject();
    });
    QDialog window;
    window.resize(static_cast<int>(windowSize.width), static_cast<int>(windowSize.height));
    auto* const layout = new QVBoxLayout(&window);
    auto* const view = new QWebEngineView;
    const QUrl address(QString::fromStdString(url));
    view->setHtml(page(), address.adjusted(QUrl::RemoveFilename));
    layout->addWidget(view);
    layout->addWidget(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel));
    window.exec();
    return seconds(end - begin);
}

void waitFor(double time) {
    QTimer::singleShot(static_cast<int>(time * 1e3), qApp, [] { QApplication::exit(); });
    QApplication::exec();
}

void open(benchmark::State& state, double (*show)(const std::string&), const std::string& url) {
    for (auto _ : state) {
        state.SetIterationTime(show(url));
        waitFor(0.1); // what is left to do of the former window
    }
}

/// When each frame of a fade was shown.
struct Frames {
    std::vector<Clock::time_point> times;

    void print(const char* name) const {
        double largest = 0;
        for (std::size_t i = 1; i < times.size(); ++i)
            largest = std::max(largest, seconds(times[i] - times[i - 1]));
        std::printf("%-24s %6zu %10.1f %10.1f\n", name, times.size(),
            1e3 * seconds(times.back() - times.front()), 1e3 * largest);
    }
};

class TimedFade final : public kw::NSViewAnimation {
public:
    TimedFade(kw::NSWindow& window, Frames& frames)
        : NSViewAnimation({{{kw::NSViewAnimationTargetKey, kw::WeakReference(window)},
              {kw::NSViewAnimationEffectKey, kw::NSViewAnimationFadeInEffect}}})
        , m_frames(frames) { }

private:
    void setCurrentProgress(double progress) override {
        NSViewAnimation::setCurrentProgress(progress);
        m_frames.times.push_back(Clock::now());
    }
    Frames& m_frames;
};

Frames worst(const std::vector<Frames>& all) {
    return *std::ranges::min_element(all, {}, [](const Frames& one) { return one.times.size(); });
}

void printFades() {
    kw::KWTranFadeWindow window({{100, 100}, {400, 300}});
    window.orderFront();
    QWidget widget;
    widget.resize(400, 300);
    widget.show();
    waitFor(0.5);
    std::vector<Frames> toolkit(fades);
    std::vector<Frames> qt(fades);
    for (int i = 0; i < fades; ++i) {
        const auto fade = std::make_shared<TimedFade>(window, toolkit[i]);
        fade->startAnimation();
        waitFor(0.6);
        QPropertyAnimation animation(&widget, "windowOpacity");
        animation.setDuration(500);
        animation.setStartValue(0.0);
        animation.setEndValue(1.0);
        QObject::connect(&animation, &QPropertyAnimation::valueChanged,
            [&frames = qt[i]] { frames.times.push_back(Clock::now()); });
        animation.start();
        waitFor(0.6);
    }
    std::printf(
        "\nThe worst of %d fades of 500 ms: frames, milliseconds from the first to the last,"
        " the longest between two\n",
        fades);
    worst(toolkit).print("NSViewAnimation");
    worst(qt).print("QPropertyAnimation");
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    kw::qt::useQtWeb();
    const QTemporaryDir folder;
    const QString path = folder.filePath("page.html");
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return 1;
    const QString text = page();
    file.write(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
    file.close();
    const std::string url = QUrl::fromLocalFile(path).toString().toStdString();

    printFades();
    modal(url); // starts the engine
    for (const auto& [name, show] : {std::pair("modal", &modal), std::pair("dialog", &dialog)})
        benchmark::RegisterBenchmark(name, open, show, url)
            ->Unit(benchmark::kMillisecond)
            ->UseManualTime();
    if (!kw::bench::initializeInTurns(argc, argv, 15, "0.3"))
        return 1;
    kw::bench::RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\nHow many times as long:\n");
    reporter.printRatio("modal/manual_time", "dialog/manual_time");
}

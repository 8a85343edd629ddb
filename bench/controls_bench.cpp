// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// A frame of 1,000 badges that scroll, beside 1,000 labels with a style sheet that makes them look
// the same; and what each of them takes of memory.
#include <KWToolkit/controls/KWPillBadge.h>
#include <KWToolkitQt/ViewWidget.h>
#include <bench/RatioReporter.h>

#include <QApplication>
#include <QGraphicsDropShadowEffect>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>

#include <cstdio>
#include <malloc.h>
#include <memory>

namespace {

constexpr int badges = 1'000;
constexpr QSize badgeSize(44, 20);
constexpr QSize cell(48, 24);
constexpr int shadowRadius = 4;

enum class Arrangement {
    list, ///< one below the other: some 30 are seen
    wall, ///< all of them are seen
};

QRect placeOf(int index, Arrangement arrangement) {
    const int columns = arrangement == Arrangement::list ? 1 : 25;
    return {QPoint(index % columns * cell.width(), index / columns * cell.height()), badgeSize};
}

QSize sizeOfAll(Arrangement arrangement) {
    return arrangement == Arrangement::list ? QSize(cell.width(), badges * cell.height())
                                            : QSize(25 * cell.width(), 40 * cell.height());
}

struct FlippedView : kw::NSView {
    using NSView::NSView;
    bool isFlipped() const override { return true; }
};

QWidget* makeViews(Arrangement arrangement, bool hasShadow) {
    const QSize size = sizeOfAll(arrangement);
    auto root = std::make_shared<FlippedView>(kw::NSMakeRect(0, 0, size.width(), size.height()));
    for (int i = 0; i < badges; ++i) {
        const QRect place = placeOf(i, arrangement);
        auto badge = std::make_shared<kw::KWPillBadge>(
            kw::NSMakeRect(place.x(), place.y(), place.width(), place.height()));
        badge->setCounterValue(i);
        badge->setTextFont(kw::NSFont::systemFontOfSize(10));
        if (hasShadow) {
            badge->setShadowColor(kw::NSColor::blackColor());
            badge->setShadowBlurRadius(shadowRadius);
        }
        root->addSubview(badge);
    }
    return new kw::qt::ViewWidget(root);
}

QWidget* makeLabels(Arrangement arrangement, bool hasShadow) {
    auto* const content = new QWidget;
    content->setStyleSheet(QStringLiteral("QLabel { background: #ff0000; color: white;"
                                          " border-radius: %1px; font-size: 10px; }")
            .arg(hasShadow ? badgeSize.height() / 2 - shadowRadius : badgeSize.height() / 2));
    for (int i = 0; i < badges; ++i) {
        auto* const label = new QLabel(QString::number(i), content);
        label->setAlignment(Qt::AlignCenter);
        label->setGeometry(placeOf(i, arrangement));
        if (hasShadow) {
            const QMargins room(shadowRadius, shadowRadius, shadowRadius, shadowRadius);
            label->setGeometry(label->geometry().marginsRemoved(room));
            auto* const shadow = new QGraphicsDropShadowEffect(label);
            shadow->setBlurRadius(shadowRadius);
            shadow->setOffset(0, 0);
            label->setGraphicsEffect(shadow);
        }
    }
    return content;
}

using Make = QWidget* (*)(Arrangement, bool);

/// Badges in an area that they scroll in.
struct Scrolled {
    Scrolled(Make make, Arrangement arrangement, bool hasShadow) {
        const int rows = arrangement == Arrangement::list ? 30 : 40;
        area.resize(25 * cell.width() + 40, rows * cell.height() + 4);
        content = make(arrangement, hasShadow);
        content->resize(sizeOfAll(arrangement));
        area.setWidget(content);
        area.show();
        QApplication::processEvents();
    }

    QScrollArea area;
    QWidget* content;
};

/// Milliseconds a frame in which everything moves and all that is seen is painted anew.
void scroll(benchmark::State& state, Make make, Arrangement arrangement, bool hasShadow) {
    const Scrolled shown(make, arrangement, hasShadow);
    QScrollBar& bar = *shown.area.verticalScrollBar();
    int step = 7;
    for (auto _ : state) {
        if (bar.value() + step > bar.maximum() || bar.value() + step < 0)
            step = -step;
        bar.setValue(bar.value() + step);
        shown.content->update();
        QApplication::processEvents();
    }
}

/// All of it, what is drawn into included: which is the same for whatever is shown.
std::size_t bytesInUse() {
    const auto usage = mallinfo2();
    return usage.uordblks + usage.hblkhd;
}

double bytesEach(Make make) {
    const std::size_t before = bytesInUse();
    const Scrolled shown(make, Arrangement::list, false);
    return static_cast<double>(bytesInUse() - before) / badges;
}

} // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    struct Case {
        const char* name;
        Arrangement arrangement;
        bool hasShadow;
    };
    constexpr Case cases[] {{"list", Arrangement::list, false}, {"wall", Arrangement::wall, false},
        {"list_with_shadows", Arrangement::list, true},
        {"wall_with_shadows", Arrangement::wall, true}};
    for (const Case& one : cases) {
        for (const auto& [who, make] : {std::pair<std::string, Make>("badges/", makeViews),
                 std::pair<std::string, Make>("labels/", makeLabels)})
            benchmark::RegisterBenchmark(
                (who + one.name).c_str(), scroll, make, one.arrangement, one.hasShadow)
                ->Unit(benchmark::kMillisecond);
    }
    for (const Make make : {makeViews, makeLabels})
        bytesEach(make); // what is made once
    const double area = bytesEach([](Arrangement, bool) { return new QWidget; });
    std::printf("bytes a badge: %.0f\nbytes a label: %.0f\n", bytesEach(makeViews) - area,
        bytesEach(makeLabels) - area);
    if (!kw::bench::initializeInTurns(argc, argv, 5, "0.3"))
        return 1;
    kw::bench::RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\nHow many times as long:\n");
    for (const Case& one : cases)
        reporter.printRatio(std::string("badges/") + one.name, std::string("labels/") + one.name);
}

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "LayersPage.h"

#include "ImageWidgets.h"
#include "Tour.h"
#include "Widgets.h"

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/headless/HeadlessWorkspace.h>
#include <KWToolkit/platform/ui/CAConstraintLayoutManager.h>
#include <KWToolkit/platform/ui/CATransaction.h>
#include <KWToolkit/platform/ui/NSView.h>
#include <KWToolkit/windows/layers/CALayer+Animations.h>
#include <KWToolkit/windows/layers/CALayer+Layout.h>
#include <KWToolkitQt/ViewWidget.h>

#include <QGroupBox>

#include <optional>
#include <string>

namespace gallery {

namespace {

constexpr double slowly = 1; // seconds
constexpr const char* picture = "picture";
constexpr const char* onTheirWay = "on their way";

kw::CGColor color(double red, double green, double blue, double alpha = 1) {
    return {kw::CGColorSpace::deviceRGB, {red, green, blue, alpha}};
}

/// Has no place until it has constraints.
std::shared_ptr<kw::CALayer> makeLayer(
    kw::CALayer& superlayer, const std::string& name, kw::NSSize size, double radius) {
    auto layer = std::make_shared<kw::CALayer>();
    layer->setName(name);
    layer->setBounds({{0, 0}, size});
    layer->setCornerRadius(radius);
    superlayer.addSublayer(layer);
    return layer;
}

void addPicture(kw::CALayer& root) {
    const auto layer = makeLayer(root, picture, {160, 120}, 24);
    layer->setContents(generatedPicture());
    layer->setMasksToBounds(true);
    layer->setBackgroundColor(color(0.16, 0.18, 0.26));
    layer->setBorderColor(color(1, 1, 1, 0.8));
    layer->setBorderWidth(2);
    centerVerticallyAndHorizontallyRelativeTo(*layer, "superlayer", 0, 20);
    kw::removeAllImplicitAnimations(*layer); // it goes with the window
}

/// Two discs that overlap, half transparent as one.
void addDiscs(kw::CALayer& root) {
    const auto group = makeLayer(root, "group", {100, 44}, 22);
    group->setOpacity(0.5F);
    centerHorizontallyRelativeTo(*group, "superlayer", 24, -24);
    anchorBottomRelativeTo(*group, "superlayer", 20);
    kw::removeAllImplicitAnimations(*group);
    group->setBackgroundColor(color(0.3, 0.36, 0.6));
    group->setLayoutManager(std::make_shared<kw::CAConstraintLayoutManager>());
    for (const double side : {-1.0, 1.0}) {
        const auto disc = makeLayer(*group, "disc", {60, 60}, 30);
        disc->setBackgroundColor(side < 0 ? color(1, 0.8, 0.3) : color(0.4, 0.85, 0.7));
        centerVerticallyAndHorizontallyRelativeTo(*disc, "superlayer", side * 20, 0);
    }
}

struct Corner {
    const char* title;
    void (*vertically)(kw::CALayer&, const std::string&, double);
    void (*horizontally)(kw::CALayer&, const std::string&, double);
    kw::NSSize offset; // over the picture's edges
};
constexpr Corner corners[] {
    {"top left", kw::anchorTopRelativeTo, kw::anchorLeftRelativeTo, {-10, 10}},
    {"top right", kw::anchorTopRelativeTo, kw::anchorRightRelativeTo, {10, 10}},
    {"bottom left", kw::anchorBottomRelativeTo, kw::anchorLeftRelativeTo, {-10, -10}},
    {"bottom right", kw::anchorBottomRelativeTo, kw::anchorRightRelativeTo, {10, -10}},
};

} // namespace

QWidget* LayersPage::make() { return new LayersPage; }

LayersPage::LayersPage()
    : m_isAnimated(new QCheckBox("Animations"))
    , m_reducesMotion(new QCheckBox("Reduced motion"))
    , m_status(label())
    , m_root(std::make_shared<kw::CALayer>())
    , m_badge(std::make_shared<kw::CALayer>())
    , m_bar(std::make_shared<kw::CALayer>()) {
    auto* const badgePlaces = new QWidget;
    QStringList titles;
    for (const Corner& corner : corners)
        titles += corner.title;
    m_corner = choice(*badgePlaces, titles);
    auto* const barPlaces = new QWidget;
    m_side = choice(*barPlaces, {"on the right", "on the left"});
    m_isAnimated->setChecked(true);
    kw::CATransaction::setHonorsReducedMotion(true);

    m_root->setBackgroundColor(color(0.11, 0.12, 0.18));
    m_root->setLayoutManager(std::make_shared<kw::CAConstraintLayoutManager>());
    addPicture(*m_root);
    addDiscs(*m_root);
    m_bar->setName("bar");
    m_bar->setBounds({{0, 0}, {16, 120}});
    m_bar->setCornerRadius(8);
    m_bar->setBackgroundColor(color(0.35, 0.6, 1));
    m_root->addSublayer(m_bar);
    m_badge->setName("badge");
    m_badge->setBounds({{0, 0}, {40, 40}});
    m_badge->setCornerRadius(20);
    m_badge->setBackgroundColor(color(0.92, 0.25, 0.3));
    m_badge->setBorderColor(color(1, 1, 1));
    m_badge->setBorderWidth(3);
    m_root->addSublayer(m_badge);
    setAnimated(false); // until something is chosen: at first they go with the window
    place();
    m_status->setText("at rest");

    auto view = std::make_shared<kw::NSView>(kw::NSMakeRect(0, 0, 216, 300));
    view->setLayer(m_root);
    auto* const screen = new kw::qt::ViewWidget(std::move(view));
    screen->setMinimumSize(216, 300);
    screen->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    screen->setFocusPolicy(Qt::NoFocus);

    auto* const settings = factsLayout({{"Badge", badgePlaces}, {"Bar", barPlaces},
        {"Layers", m_status}, {nullptr, m_isAnimated}, {nullptr, m_reducesMotion},
        {nullptr,
            label("Badge and bar are constrained to the picture, which stays in the middle. What "
                  "is chosen changes their constraints. The discs are half transparent as one.")}});
    settings->setAlignment(m_isAnimated, Qt::AlignLeft);
    settings->setAlignment(m_reducesMotion, Qt::AlignLeft);
    auto* const content = new QWidget;
    auto* const pictures = new QVBoxLayout;
    pictures->addWidget(screen, 1);
    arrange(*content, settings, pictures);
    content->layout()->setContentsMargins(0, 0, 0, 0);
    pageLayout(*this, "Layers")->addWidget(content, 1);

    for (const QButtonGroup* const group : {m_corner, m_side})
        connect(group, &QButtonGroup::idClicked, this, [this] {
            setAnimated(m_isAnimated->isChecked());
            place();
        });
    connect(m_isAnimated, &QCheckBox::toggled, this, [this](bool is) { setAnimated(is); });
}

void LayersPage::setAnimated(bool isAnimated) {
    for (const auto& layer : {m_badge, m_bar}) {
        if (isAnimated)
            layer->setActions({});
        else
            kw::removeAllImplicitAnimations(*layer);
    }
}

void LayersPage::place() {
    // As if the desktop asked for it; else it is the real one's word that counts.
    kw::HeadlessWorkspace calm;
    calm.reducesMotion = true;
    std::optional<kw::ServiceScope<kw::HeadlessWorkspace>> scope;
    if (m_reducesMotion->isChecked())
        scope.emplace(calm);

    kw::CATransaction::flush();
    kw::CATransaction::begin();
    kw::CATransaction::setAnimationDuration(slowly);
    kw::CATransaction::setCompletionBlock([this, life = std::weak_ptr(m_life)] {
        if (!life.expired() && !isMoving() && m_status->text() == onTheirWay)
            m_status->setText("at rest");
    });
    const Corner& corner = corners[m_corner->checkedId()];
    m_badge->setConstraints({});
    corner.vertically(*m_badge, picture, corner.offset.height);
    corner.horizontally(*m_badge, picture, corner.offset.width);
    m_bar->setConstraints({});
    centerVerticallyRelativeTo(*m_bar, picture, 0);
    if (m_side->checkedId() == 0)
        stayOnRightRelativeTo(*m_bar, picture, 12);
    else
        stayOnLeftRelativeTo(*m_bar, picture, -12);
    kw::CATransaction::commit();

    m_status->setText(isMoving() ? onTheirWay : "there at once");
}

bool LayersPage::isMoving() const {
    return !m_badge->animationKeys().empty() || !m_bar->animationKeys().empty();
}

void LayersPage::visit(Tour& tour, QWidget& page) { static_cast<LayersPage&>(page).steps(tour); }

void LayersPage::steps(Tour& tour) {
    const auto status = [this] { return m_status->text(); };
    const auto click = [&](QWidget& button) {
        const QPoint place(button.height() / 2, button.height() / 2);
        tour.hands().pressMouse(button, place);
        tour.hands().releaseMouse(button, place);
    };
    const auto choose = [&](const QButtonGroup& group, int id, const char* expected) {
        click(*group.button(id));
        tour.expect("choice", group.button(id)->text() + ": " + expected,
            [&] { return group.checkedButton()->text() + ": " + status(); });
    };
    const auto set = [&](QCheckBox& box) {
        const bool was = box.isChecked();
        click(box);
        tour.expect(box.text(), was ? "off" : "on", [&] { return box.isChecked() ? "on" : "off"; });
    };
    const auto badgeX = [this] { return m_badge->presentationLayer()->position().x; };

    tour.expect("the layers", "in their places",
        [this] { return isMoving() ? "not yet" : "in their places"; });
    tour.takePicture("layers-1-before");
    const double before = badgeX();
    choose(*m_corner, 3, onTheirWay);
    choose(*m_side, 1, onTheirWay);
    const double third = before + (m_badge->position().x - before) / 3;
    tour.expect("the badge", "underway", [&] { return badgeX() > third ? "underway" : "waiting"; });
    tour.takePicture("layers-2-animated");
    tour.expect("the end", "at rest", status);
    tour.takePicture("layers-3-at-rest");
    set(*m_reducesMotion);
    choose(*m_corner, 2, "there at once");
    set(*m_reducesMotion);
    choose(*m_side, 0, onTheirWay);
    tour.expect("the end", "at rest", status);
    set(*m_isAnimated);
    choose(*m_corner, 1, "there at once");
    tour.takePicture("layers-4-at-once");
    set(*m_isAnimated);
    choose(*m_corner, 0, onTheirWay);
    tour.expect("the end", "at rest", status);
}

} // namespace gallery

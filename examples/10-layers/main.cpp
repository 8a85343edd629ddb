// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Layers that are anchored to one another, and to others at each click.
#include <KWToolkit/KWToolkit.h>
#include <KWToolkit/platform/ui/CAConstraintLayoutManager.h>
#include <KWToolkit/platform/ui/CATransaction.h>
#include <KWToolkitQt/QtServices.h>
#include <KWToolkitQt/ViewWidget.h>

#include <QApplication>
#include <QFile>
#include <QPixmap>

#include <cstddef>
#include <iostream>
#include <memory>

namespace {

constexpr const char* usage =
    "usage: 10-layers [PICTURE.png]\n"
    "Shows layers that are anchored to one another, and to others after a click. With a file,\n"
    "shows no window: anchors them to others once and writes what that looks like.\n";

kw::CGColor rgb(double red, double green, double blue) {
    return {kw::CGColorSpace::deviceRGB, {red, green, blue, 1}};
}

class LayersView final : public kw::NSView {
public:
    LayersView()
        : kw::NSView(kw::NSMakeRect(0, 0, 420, 260)) {
        m_root->setBackgroundColor(rgb(0.13, 0.15, 0.2));
        m_root->setLayoutManager(std::make_shared<kw::CAConstraintLayoutManager>());
        setLayer(m_root);
        add(m_sun, "sun", {72, 72}, rgb(0.98, 0.72, 0.2), 36);
        add(m_cloud, "cloud", {96, 44}, rgb(0.85, 0.9, 0.96), 22);
        add(m_kite, "kite", {40, 40}, rgb(0.87, 0.33, 0.36), 6);
        add(m_ground, "ground", {10, 28}, rgb(0.34, 0.66, 0.42), 8);
        m_ground->setBorderWidth(2);
        m_ground->setBorderColor(rgb(0.2, 0.45, 0.28));
        anchor();
    }

    void anchorAnew() {
        m_isEvening = !m_isEvening;
        anchor();
        m_sun->setBackgroundColor(m_isEvening ? rgb(0.9, 0.36, 0.24) : rgb(0.98, 0.72, 0.2));
        m_cloud->setOpacity(m_isEvening ? 0.6F : 1);
        m_kite->setAffineTransform(m_isEvening ? kw::CGAffineTransform {0.8, 0.6, -0.6, 0.8, 0, 0}
                                               : kw::CGAffineTransform {});
    }

    void mouseDown(const kw::NSEvent&) override { anchorAnew(); }
    bool acceptsFirstMouse(const kw::NSEvent&) override { return true; }

private:
    using Layer = std::shared_ptr<kw::CALayer>;

    void add(const Layer& layer, const char* name, kw::NSSize size, const kw::CGColor& color,
        double radius) {
        layer->setName(name);
        layer->setBounds({{}, size});
        layer->setBackgroundColor(color);
        layer->setCornerRadius(radius);
        m_root->addSublayer(layer);
    }

    void anchor() {
        for (const Layer& layer : m_root->sublayers())
            layer->setConstraints({});
        // From edge to edge, whatever it is called relative to.
        kw::centerHorizontallyRelativeTo(*m_ground, "sun", 16, -16);
        kw::anchorBottomRelativeTo(*m_ground, "superlayer", 16);
        if (m_isEvening) {
            kw::anchorRightRelativeTo(*m_sun, "superlayer", -32);
            kw::anchorBottomRelativeTo(*m_sun, "ground", 40);
            kw::stayOnLeftRelativeTo(*m_cloud, "sun", 24);
            kw::centerVerticallyRelativeTo(*m_cloud, "sun", 8);
            kw::stayOnLeftRelativeTo(*m_kite, "cloud", -40);
            kw::anchorTopRelativeTo(*m_kite, "superlayer", -32);
        } else {
            kw::centerVerticallyAndHorizontallyRelativeTo(*m_sun, "superlayer", 0, 40);
            kw::stayOnRightRelativeTo(*m_cloud, "sun", -16);
            kw::anchorBottomRelativeTo(*m_cloud, "sun", -8);
            kw::anchorLeftRelativeTo(*m_kite, "ground", 24);
            kw::centerVerticallyRelativeTo(*m_kite, "cloud", 0);
        }
    }

    bool m_isEvening = false;
    Layer m_root = std::make_shared<kw::CALayer>();
    Layer m_sun = std::make_shared<kw::CALayer>();
    Layer m_cloud = std::make_shared<kw::CALayer>();
    Layer m_kite = std::make_shared<kw::CALayer>();
    Layer m_ground = std::make_shared<kw::CALayer>();
};

/// Writes the picture once the animations are over, and ends the program with its result.
void writeWhenStill(kw::qt::ViewWidget& widget, LayersView& view, const char* file) {
    widget.resize(widget.sizeHint());
    kw::CATransaction::flush(); // from here on changes are seen
    kw::CATransaction::begin();
    kw::CATransaction::setCompletionBlock([&widget, file] {
        const bool isWritten = widget.grab().save(QFile::decodeName(file), "PNG");
        if (!isWritten)
            std::cerr << "10-layers: " << file << ": cannot be written\n";
        QApplication::exit(isWritten ? 0 : 1);
    });
    view.anchorAnew();
    kw::CATransaction::commit();
}

} // namespace

int main(int argc, char** argv) {
    if (argc > 2 || (argc == 2 && argv[1][0] == '-')) {
        std::cerr << usage;
        return 2;
    }
    if (argc == 2)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    kw::qt::useQtServices();

    const auto view = std::make_shared<LayersView>();
    kw::qt::ViewWidget widget(view);
    widget.setWindowTitle("Layers");
    if (argc == 2)
        writeWhenStill(widget, *view, argv[1]);
    else
        widget.show();
    return QApplication::exec();
}

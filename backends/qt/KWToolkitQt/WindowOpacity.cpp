// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/WindowOpacity.h>

#include <QGraphicsEffect>
#include <QGuiApplication>
#include <QPainter>
#include <QWidget>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include <xcb/xcb.h>

namespace kw::qt {

namespace {

/// Blends a top-level widget with what is behind its content.
class Fade final : public QGraphicsEffect {
public:
    explicit Fade(const QWidget& window)
        : m_window(window) { }
    void setOpacity(double opacity) {
        m_opacity = opacity;
        update();
    }

protected:
    void draw(QPainter* painter) override {
        if (!m_window.testAttribute(Qt::WA_TranslucentBackground))
            painter->fillRect(boundingRect(), m_window.palette().window());
        QPoint corner;
        const QPixmap content = sourcePixmap(Qt::LogicalCoordinates, &corner, NoPad);
        painter->setOpacity(m_opacity);
        painter->drawPixmap(corner, content);
        painter->setOpacity(1);
    }

private:
    const QWidget& m_window;
    double m_opacity = 1;
};

/// Whether somebody blends the windows of the X screen. It may come and go.
bool isComposited(xcb_connection_t& xcb) {
    struct Free {
        void operator()(void* reply) const { std::free(reply); }
    };
    // Qt's connection has one screen.
    const std::string name = "_NET_WM_CM_S0";
    const auto nameCookie =
        xcb_intern_atom(&xcb, false, static_cast<std::uint16_t>(name.size()), name.data());
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> atom(
        xcb_intern_atom_reply(&xcb, nameCookie, nullptr));
    if (!atom)
        return false;
    const auto ownerCookie = xcb_get_selection_owner(&xcb, atom->atom);
    const std::unique_ptr<xcb_get_selection_owner_reply_t, Free> reply(
        xcb_get_selection_owner_reply(&xcb, ownerCookie, nullptr));
    return reply && reply->owner != XCB_NONE;
}

/// Of whole windows.
struct Blending {
    bool canBeAsked; // Qt warns where it cannot
    bool isDone;
};

Blending blending() {
    const QString name = QGuiApplication::platformName();
    // Others may have such an interface, too, without a connection.
    const auto* const x11 =
        name == "xcb" ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    if (x11 && x11->connection())
        return {true, isComposited(*x11->connection())};
    const bool blends = name == "windows" || name == "cocoa";
    return {blends, blends};
}

} // namespace

void setOpacity(QWidget& topLevel, double opacity) {
    auto* fade = dynamic_cast<Fade*>(topLevel.graphicsEffect());
    const Blending blends = blending();
    if (blends.canBeAsked)
        topLevel.setWindowOpacity(opacity);
    if (opacity >= 1 || blends.isDone) {
        if (fade)
            topLevel.setGraphicsEffect(nullptr);
        return;
    }
    if (!fade && !topLevel.graphicsEffect())
        topLevel.setGraphicsEffect(fade = new Fade(topLevel));
    if (fade)
        fade->setOpacity(opacity);
}

NSWindowOpacity opacityOf(const QWidget& topLevel) {
    if (blending().isDone)
        return NSWindowOpacity::window;
    const QGraphicsEffect* const effect = topLevel.graphicsEffect();
    return !effect || dynamic_cast<const Fade*>(effect) ? NSWindowOpacity::content
                                                        : NSWindowOpacity::none;
}

} // namespace kw::qt

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/ViewPeer.h>
#include <KWToolkitQt/WidgetView.h>

#include <QVBoxLayout>

#include <memory>

namespace kw::qt {

namespace {

/// Lends the widget a parent, which goes with the peer; the widget stays with its view.
class WidgetPeer final : public ViewPeer {
public:
    WidgetPeer(QWidget* shown, QWidget& parent)
        : m_frame(*new QWidget(&parent))
        , m_shown(shown) {
        auto* const layout = new QVBoxLayout(&m_frame);
        layout->setContentsMargins({});
        layout->setSizeConstraint(QLayout::SetNoConstraint);
        if (m_shown)
            layout->addWidget(m_shown);
    }
    ~WidgetPeer() override {
        if (m_shown)
            m_shown->setParent(nullptr);
    }
    QWidget& widget() override { return m_frame; }
    void update() override { }

private:
    QWidget& m_frame;
    QPointer<QWidget> m_shown;
};

[[maybe_unused]] const bool isRegistered = [] {
    registerViewPeer(WidgetView::classObject(), [](NSView& view, QWidget& parent) {
        return std::make_unique<WidgetPeer>(static_cast<WidgetView&>(view).widget(), parent);
    });
    return true;
}();

} // namespace

} // namespace kw::qt

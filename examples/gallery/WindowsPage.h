// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/ui/NSWindow.h>
#include <KWToolkitQt/ViewWidget.h>

#include <QButtonGroup>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QWidget>

#include <array>
#include <functional>
#include <memory>

namespace gallery {

class Tour;

/// Fades and resizes a window without a frame, one with a title, and the gallery's own.
class WindowsPage final : public QWidget {
public:
    static QWidget* make();
    static void visit(Tour& tour, QWidget& page);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    struct Shown;

    WindowsPage();
    ~WindowsPage() override;

    Shown& chosen() const;
    /// Does something as if the desktop asked for reduced motion, where the box is checked.
    void doAsDesired(const std::function<void()>& action) const;
    void fadeIn();
    void fadeGallery();
    void resizeTo(kw::NSSize size);
    void update();

    void steps(Tour& tour);
    void visitChosen(Tour& tour, const QString& name);

    QButtonGroup* m_choice;
    QPushButton* m_fadeIn;
    QPushButton* m_fadeOut;
    QPushButton* m_larger;
    QPushButton* m_smaller;
    QCheckBox* m_isAnimated;
    QCheckBox* m_reducesMotion;
    QPushButton* m_warn;
    QLabel* m_state;
    QLabel* m_frame;
    QLabel* m_upperEdge;
    QLabel* m_fades;
    kw::qt::ViewWidget* m_fadeGallery; ///< a view, for it knows the gallery's window
    QTimer m_timer;
    std::array<std::unique_ptr<Shown>, 2> m_windows; ///< by the choice's ids
};

} // namespace gallery

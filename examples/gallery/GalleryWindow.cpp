// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "GalleryWindow.h"

#include "ControlsPage.h"
#include "HotkeysPage.h"
#include "HtmlModalPage.h"
#include "ImagesPage.h"
#include "LayersPage.h"
#include "LoggingPage.h"
#include "LoginItemsPage.h"
#include "MovePage.h"
#include "ObservationPage.h"
#include "Page.h"
#include "RunningApplicationsPage.h"
#include "UrlPage.h"
#include "WindowsPage.h"

#include <QHBoxLayout>

namespace gallery {

namespace {

// A page of a facility is a line here.
const Page pages[] {
    {"Hotkeys", &HotkeysPage::make, &HotkeysPage::visit},
    {"Logging", &LoggingPage::make, &LoggingPage::visit},
    {"URLs and mail", &UrlPage::make, &UrlPage::visit},
    {"Move to Applications", &MovePage::make, &MovePage::visit},
    {"Login items", &LoginItemsPage::make, &LoginItemsPage::visit},
    {"Running applications", &RunningApplicationsPage::make, &RunningApplicationsPage::visit},
    {"Images", &ImagesPage::make, &ImagesPage::visit},
    {"Observation", &ObservationPage::make, &ObservationPage::visit},
    {"Layers", &LayersPage::make, &LayersPage::visit},
    {"Controls", &ControlsPage::make, &ControlsPage::visit},
    {"Windows", &WindowsPage::make, &WindowsPage::visit},
    {"Web page", &HtmlModalPage::make, &HtmlModalPage::visit},
};

} // namespace

GalleryWindow::GalleryWindow()
    : m_titles(new QListWidget)
    , m_pages(new QStackedWidget) {
    setWindowTitle("KWToolkit Gallery");
    m_titles->setFixedWidth(160);
    m_titles->setFrameShape(QFrame::NoFrame);
    m_titles->setSpacing(4);
    for (const Page& page : pages) {
        auto* const title = new QListWidgetItem(page.title, m_titles);
        title->setSizeHint(QSize(0, m_titles->fontMetrics().height() * 2));
        m_pages->addWidget(page.make());
    }
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_titles);
    layout->addWidget(m_pages, 1);
    connect(m_titles, &QListWidget::currentRowChanged, m_pages, &QStackedWidget::setCurrentIndex);
    m_titles->setCurrentRow(0);
}

bool GalleryWindow::visit(Tour& tour, const QString& only) {
    int row = 0;
    bool isFound = false;
    for (const Page& page : pages) {
        if (only.isEmpty() || only == page.title) {
            isFound = true;
            m_titles->setCurrentRow(row);
            page.visit(tour, *m_pages->widget(row));
        }
        ++row;
    }
    return isFound;
}

} // namespace gallery

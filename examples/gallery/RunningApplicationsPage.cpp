// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "RunningApplicationsPage.h"

#include "Tour.h"
#include "Widgets.h"

#include <KWToolkit/appservices/KWActiveApplications.h>
#include <KWToolkit/appservices/NSApplication+Relaunch.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSBundle.h>
#include <KWToolkit/platform/foundation/NSException.h>

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QHeaderView>

#include <array>
#include <chrono>
#include <vector>

namespace gallery {

namespace {

using kw::KWActiveApplications;

QString previousApplication() {
    try {
        const auto name = KWActiveApplications::previousActiveApplicationName();
        const auto path = KWActiveApplications::previousActiveApplicationPath();
        return name && path ? QString::fromStdString(*name + ", " + *path) : "not known";
    } catch (const kw::NSException& exception) {
        return QString::fromUtf8(exception.what());
    }
}

} // namespace

QWidget* RunningApplicationsPage::make() { return new RunningApplicationsPage; }

RunningApplicationsPage::RunningApplicationsPage()
    : m_list(new QTableWidget(0, 3))
    , m_previous(label())
    , m_relaunch(new QPushButton("Relaunch the gallery")) {
    m_list->setHorizontalHeaderLabels({"Application", "Process", "Path"});
    m_list->horizontalHeader()->setStretchLastSection(true);
    m_list->verticalHeader()->hide();
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setSelectionMode(QAbstractItemView::NoSelection);
    m_list->setFocusPolicy(Qt::NoFocus);
    m_list->setWordWrap(false);

    auto* const tools = new QHBoxLayout;
    tools->addWidget(m_relaunch);
    tools->addStretch();

    auto* const layout = pageLayout(*this, "Running applications");
    layout->addWidget(label("The one that was active last comes first. Switch between windows, and "
                            "see the order change."));
    layout->addWidget(m_list, 1);
    layout->addLayout(factsLayout({{"Active before", m_previous}}));
    layout->addLayout(tools);

    connect(m_relaunch, &QPushButton::clicked, this, [] { kw::relaunchApp(); });
    connect(&m_timer, &QTimer::timeout, this, [this] { update(); });
}

void RunningApplicationsPage::showEvent(QShowEvent*) {
    update();
    m_timer.start(std::chrono::milliseconds(250));
}

void RunningApplicationsPage::hideEvent(QHideEvent*) { m_timer.stop(); }

void RunningApplicationsPage::update() {
    const auto applications =
        KWActiveApplications::activeApplications().value_or(std::vector<kw::RunningApplication>());
    m_list->setRowCount(static_cast<int>(applications.size()));
    for (int row = 0; row < m_list->rowCount(); ++row) {
        const auto& [name, path, process] = applications[static_cast<std::size_t>(row)];
        const std::array texts {
            QString::fromStdString(name), QString::number(process), QString::fromStdString(path)};
        for (int column = 0; column < m_list->columnCount(); ++column)
            m_list->setItem(
                row, column, new QTableWidgetItem(texts[static_cast<std::size_t>(column)]));
    }
    m_list->resizeColumnToContents(0);
    m_previous->setText(previousApplication());
}

QStringList RunningApplicationsPage::names() const {
    QStringList names;
    for (int row = 0; row < m_list->rowCount(); ++row)
        names += m_list->item(row, 0)->text();
    return names;
}

void RunningApplicationsPage::visit(Tour& tour, QWidget& page) {
    static_cast<RunningApplicationsPage&>(page).steps(tour);
}

void RunningApplicationsPage::steps(Tour& tour) {
    if (!kw::Platform::runningApplications().frontToBack()) {
        tour.expect("applications, no window manager", "", [this] { return names().join(", "); });
        tour.expect("active before", "not known", [this] { return m_previous->text(); });
        return tour.takePicture("applications-1-none");
    }
    const auto host = QString::fromStdString(kw::NSBundle::mainBundle().info().name);
    tour.expect("application in front", host, [this] { return names().value(0); });
    tour.expect("its process", QString::number(QCoreApplication::applicationPid()), [this] {
        const auto* const item = m_list->item(0, 1);
        return item ? item->text() : QString();
    });
    tour.takePicture("applications-1-list");
}

} // namespace gallery

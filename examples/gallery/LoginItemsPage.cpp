// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "LoginItemsPage.h"

#include "Tour.h"
#include "Widgets.h"

#include <KWToolkit/appservices/KWStartUpUtils.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSBundle.h>

#include <QHBoxLayout>
#include <QStringList>

#include <string>

namespace gallery {

namespace {

/// What the paths of the gallery's login items hold: all of its path, so that no other is meant.
std::string ownName() { return kw::NSBundle::mainBundle().bundlePath(); }

QString launchText() {
    switch (kw::KWStartUpUtils::wasStartedAtLogin()) {
    case kw::LoginLaunch::shown:
        return "by its login item";
    case kw::LoginLaunch::hidden:
        return "by its login item, to be hidden";
    case kw::LoginLaunch::none:
        break;
    }
    return "by hand";
}

QString itemText(const kw::LoginItem& item) {
    const std::string path = item.path.value_or("a program that is not there");
    return QString::fromStdString(path) + (item.isHidden ? ", hidden" : "");
}

} // namespace

QWidget* LoginItemsPage::make() { return new LoginItemsPage; }

LoginItemsPage::LoginItemsPage()
    : m_launch(label(launchText()))
    , m_status(label())
    , m_items(new QPlainTextEdit)
    , m_hidden(new QCheckBox("Hidden"))
    , m_add(new QPushButton("Start at login"))
    , m_remove(new QPushButton("Do not start at login")) {
    m_items->setReadOnly(true);
    m_items->setLineWrapMode(QPlainTextEdit::NoWrap);

    auto* const tools = new QWidget;
    auto* const toolsLayout = new QHBoxLayout(tools);
    toolsLayout->setContentsMargins(0, 0, 0, 0);
    toolsLayout->setSpacing(8);
    for (QWidget* const tool : {static_cast<QWidget*>(m_add), static_cast<QWidget*>(m_hidden),
             static_cast<QWidget*>(m_remove)})
        toolsLayout->addWidget(tool);
    toolsLayout->addStretch();

    auto* const layout = pageLayout(*this, "Login items");
    layout->addWidget(label("What starts when you log in, the first at the top. The gallery can be "
                            "among it, shown or hidden."));
    layout->addWidget(tools);
    layout->addLayout(factsLayout({{"The gallery", m_status}, {"It was started", m_launch}}));
    layout->addWidget(m_items, 1);

    connect(m_add, &QPushButton::clicked, this, [this] {
        showItems(
            kw::KWStartUpUtils::addApplicationToStartUpItems(ownName(), m_hidden->isChecked()));
    });
    connect(m_remove, &QPushButton::clicked, this,
        [this] { showItems(kw::KWStartUpUtils::removeApplicationToLogin(ownName())); });
    showItems();
}

void LoginItemsPage::showItems(const std::error_code& error) {
    QStringList lines;
    for (const kw::LoginItem& item : kw::Platform::loginItems().read())
        lines += itemText(item);
    m_items->setPlainText(lines.join('\n'));
    if (error)
        m_status->setText("That failed: " + QString::fromStdString(error.message()));
    else
        m_status->setText(kw::KWStartUpUtils::ApplicationIsStartUpItem(ownName())
                ? "starts at login"
                : "does not start at login");
}

void LoginItemsPage::visit(Tour& tour, QWidget& page) {
    static_cast<LoginItemsPage&>(page).steps(tour);
}

void LoginItemsPage::steps(Tour& tour) {
    const QString own = QString::fromStdString(ownName());
    const auto expectItems = [&](const QString& when, const QString& status, const QString& items) {
        tour.expect("the gallery, " + when, status, [this] { return m_status->text(); });
        tour.expect("login items, " + when, items, [this] { return m_items->toPlainText(); });
    };
    tour.expect("it was started", "by hand", [this] { return m_launch->text(); });
    expectItems("at first", "does not start at login", "");
    tour.click(*m_add);
    expectItems("added", "starts at login", own);
    m_hidden->setChecked(true);
    tour.click(*m_add);
    expectItems("added hidden", "starts at login", own + ", hidden");
    tour.takePicture("login-1-hidden");
    tour.click(*m_remove);
    expectItems("removed", "does not start at login", "");
    tour.takePicture("login-2-removed");
}

} // namespace gallery

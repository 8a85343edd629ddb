// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "ImagesPage.h"

#include "ImageTabs.h"
#include "ImageWidgets.h"
#include "Tour.h"
#include "Widgets.h"

#include <KWToolkit/imaging/KWFileThumbnail.h>
#include <KWToolkit/imaging/KWImageLoading.h>

#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QTabBar>
#include <QTemporaryDir>

#include <string>

namespace gallery {

namespace {

struct Tab {
    const char* title;
    ImageTab* (*make)();
};
constexpr Tab tabs[] {
    {"Representations", &makeRepresentationsTab},
    {"Thumbnail", &makeThumbnailTab},
    {"Gamma", &makeGammaTab},
    {"Reflection", &makeReflectionTab},
    {"Pattern color", &makePatternTab},
};

/// What is worked with is no larger, so that each change is shown at once.
constexpr double maximumSide = 1024;

struct Reading {
    kw::CGImageRef picture;
    QString status;
};

Reading read(const QString& path) {
    const QString name = QFileInfo(path).fileName();
    const std::string file = QFile::encodeName(path).toStdString();
    const auto thumb = kw::thumbFromFile(file, {maximumSide, maximumSide});
    if (!thumb)
        return {nullptr, name + " cannot be read: it is no picture, is damaged or is too large."};
    const kw::CGImageRef picture = thumb->CGImage();
    const kw::CGImageRef stored = kw::CreateCGImageFromFile(file);
    if (!stored) // too large for memory, though not for being reduced
        return {picture, name + ": shown as " + sizeText(picture)};
    QString status =
        QString("%1: %2 of %3 bits").arg(name, sizeText(stored)).arg(stored->bitsPerPixel());
    if (picture->width() != stored->width() || picture->height() != stored->height())
        status += ", shown as " + sizeText(picture);
    return {picture, status};
}

} // namespace

QWidget* ImagesPage::make() { return new ImagesPage; }

ImagesPage::ImagesPage()
    : m_status(label("The gallery's own picture."))
    , m_open(new QPushButton("Open…"))
    , m_generated(new QPushButton("Own picture"))
    , m_tabs(new QTabWidget) {
    m_reader.setMaxThreadCount(1);
    m_status->setMinimumHeight(2 * m_status->fontMetrics().lineSpacing());
    for (const Tab& tab : tabs)
        m_tabs->addTab(tab.make(), tab.title);

    auto* const tools = new QHBoxLayout;
    tools->addWidget(m_open);
    tools->addWidget(m_generated);
    tools->addSpacing(8);
    tools->addWidget(m_status, 1);
    auto* const layout = pageLayout(*this, "Images");
    layout->setSpacing(10);
    layout->addLayout(tools);
    layout->addWidget(m_tabs, 1);

    connect(m_open, &QPushButton::clicked, this, [this] { chooseFile(); });
    connect(m_generated, &QPushButton::clicked, this, [this] {
        m_status->setText("The gallery's own picture.");
        setPicture(generatedPicture());
    });
    setPicture(generatedPicture());
}

void ImagesPage::setPicture(const kw::CGImageRef& picture) {
    for (int i = 0; i < m_tabs->count(); ++i)
        static_cast<ImageTab*>(m_tabs->widget(i))->setPicture(picture);
}

void ImagesPage::chooseFile() {
    const QString path = QFileDialog::getOpenFileName(this, "Open a picture");
    if (!path.isEmpty())
        open(path);
}

void ImagesPage::open(const QString& path) {
    m_status->setText("Reading " + QFileInfo(path).fileName() + "…");
    m_open->setEnabled(false);
    m_generated->setEnabled(false);
    m_reader.start([this, path] {
        QMetaObject::invokeMethod(this, [this, reading = read(path)] {
            m_open->setEnabled(true);
            m_generated->setEnabled(true);
            m_status->setText(reading.status);
            if (reading.picture)
                setPicture(reading.picture);
        });
    });
}

void ImagesPage::visit(Tour& tour, QWidget& page) { static_cast<ImagesPage&>(page).steps(tour); }

void ImagesPage::steps(Tour& tour) {
    QTabBar& bar = *m_tabs->tabBar();
    const auto openTab = [&](int index) {
        const QPoint place = bar.tabRect(index).center();
        tour.hands().pressMouse(bar, place);
        tour.hands().releaseMouse(bar, place);
        tour.expect(
            "tab", tabs[index].title, [this] { return m_tabs->tabText(m_tabs->currentIndex()); });
    };
    for (int i = 0; i < m_tabs->count(); ++i) {
        openTab(i);
        static_cast<ImageTab*>(m_tabs->widget(i))->visit(tour);
    }

    const QTemporaryDir folder;
    const auto status = [this] { return m_status->text(); };
    const QString damaged = folder.filePath("damaged.png");
    QFile file(damaged);
    file.open(QIODevice::WriteOnly);
    file.write("\x89PNG\r\n\x1a\n");
    file.close();
    open(damaged);
    tour.expect("a damaged file",
        "damaged.png cannot be read: it is no picture, is damaged or is too large.", status);
    const QString good = folder.filePath("window.png");
    const QImage picture = window()->grab().toImage().scaled(2048, 1024);
    picture.save(good);
    openTab(3);
    open(good);
    tour.expect(
        "a file", "window.png: 2048 × 1024 pixels of 32 bits, shown as 1024 × 512 pixels", status);
    tour.takePicture("images-8-file");
    tour.click(*m_generated);
    tour.expect("no file any more", "The gallery's own picture.", status);
}

} // namespace gallery

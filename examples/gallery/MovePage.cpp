// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "MovePage.h"

#include "Tour.h"
#include "Widgets.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QHBoxLayout>
#include <QProcess>

namespace gallery {

namespace {

constexpr int lookInterval = 200; // milliseconds

} // namespace

QWidget* MovePage::make() { return new MovePage; }

MovePage::MovePage()
    : m_hasFolder(new QCheckBox("There is an Applications folder in the home folder"))
    , m_start(new QPushButton("Start Mover"))
    , m_startOver(new QPushButton("Start over"))
    , m_files(label())
    , m_events(new QPlainTextEdit) {
    m_hasFolder->setChecked(true);
    m_events->setReadOnly(true);
    m_files->setTextFormat(Qt::PlainText);

    auto* const tools = new QHBoxLayout;
    tools->setSpacing(8);
    tools->addWidget(m_start);
    tools->addWidget(m_startOver);
    tools->addStretch();
    auto* const layout = pageLayout(*this, "Move to Applications");
    layout->addWidget(label("\"Mover\" has just been downloaded, into a home folder made for this "
                            "page. Started there, it offers to move itself to where applications "
                            "are kept."));
    layout->addWidget(m_hasFolder);
    layout->addLayout(tools);
    layout->addLayout(factsLayout({{"In the home folder", m_files}}));
    layout->addWidget(m_events, 1);

    connect(m_start, &QPushButton::clicked, this, &MovePage::start);
    connect(m_startOver, &QPushButton::clicked, this, &MovePage::startOver);
    connect(m_hasFolder, &QCheckBox::toggled, this, &MovePage::startOver);
    connect(&m_lookout, &QTimer::timeout, this, &MovePage::look);
    startOver();
}

void MovePage::showEvent(QShowEvent*) { m_lookout.start(lookInterval); }

void MovePage::startOver() {
    m_home = std::make_unique<QTemporaryDir>();
    const QDir home(m_home->path());
    home.mkpath("Downloads/Mover.app");
    if (m_hasFolder->isChecked())
        home.mkpath("Applications");
    QFile::copy(
        QCoreApplication::applicationFilePath(), home.filePath("Downloads/Mover.app/Mover"));
    look();
}

void MovePage::start() {
    const QDir home(m_home->path());
    QProcess mover;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HOME", home.path());
    for (const char* const folder : {"XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
        environment.remove(folder);
    mover.setProcessEnvironment(environment);
    mover.setProgram(home.filePath("Downloads/Mover.app/Mover"));
    // The copy that is started in its place writes there, too.
    mover.setStandardErrorFile(home.filePath("console.log"), QIODevice::Append);
    if (!mover.startDetached())
        m_events->appendPlainText("Mover is not there any more. Start over.");
}

void MovePage::look() {
    const QDir home(m_home->path());
    QStringList files;
    QDirIterator file(home.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (file.hasNext()) {
        const QString path = home.relativeFilePath(file.next());
        if (path.contains("Mover.app"))
            files.append(path);
    }
    files.sort();
    m_files->setText(files.join('\n'));
    QFile console(home.filePath("console.log"));
    const QString lines = console.open(QIODevice::ReadOnly) ? console.readAll().trimmed() : "";
    if (lines != m_events->toPlainText())
        m_events->setPlainText(lines);
}

void MovePage::visit(Tour& tour, QWidget& page) { static_cast<MovePage&>(page).steps(tour); }

void MovePage::steps(Tour& tour) {
    if (!tour.hands().areReal()) {
        tour.write("Mover has windows of its own, which need a display");
        return;
    }
    const auto press = [&](Qt::Key key) {
        tour.hands().pressKey(key);
        tour.hands().releaseKey(key);
    };
    const auto lastLine = [this] { return m_events->toPlainText().section('\n', -1); };
    const auto expectFront = [&](bool isOurs) {
        tour.expect(isOurs ? "the gallery" : "Mover", "in front",
            [&] { return QString(isActiveWindow() == isOurs ? "in front" : "behind"); });
    };
    // As it looks on the screen, for Mover's windows are not the gallery's.
    const auto takePicture = [&](const char* name) {
        tour.takePicture(name, tour.pictureOf(*window()));
    };

    tour.click(*m_start);
    expectFront(false);
    takePicture("move-1-alert");
    press(Qt::Key_Escape);
    tour.expect("Mover, declined", "Mover runs from ~/Downloads/Mover.app", lastLine);
    expectFront(false);
    press(Qt::Key_Escape);
    expectFront(true);

    tour.click(*m_start);
    expectFront(false);
    press(Qt::Key_Return);
    tour.expect("Mover, agreed", "Mover runs from ~/Applications/Mover.app", lastLine);
    tour.expect("files",
        ".local/share/Trash/files/Mover.app/Mover, .local/share/Trash/info/Mover.app.trashinfo, "
        "Applications/Mover.app/Mover",
        [this] { return m_files->text().replace('\n', ", "); });
    expectFront(false);
    takePicture("move-2-moved");
    press(Qt::Key_Escape);
    expectFront(true);
}

} // namespace gallery

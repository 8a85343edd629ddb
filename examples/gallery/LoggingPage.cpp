// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "LoggingPage.h"

#include "Tour.h"
#include "Widgets.h"

#include <KWToolkit/appservices/KWCrashLogFinder.h>
#include <KWToolkit/appservices/KWPathUtils.h>
#include <KWToolkit/logging/GDASLLogManager.h>
#include <KWToolkit/logging/KWFileLogger.h>
#include <KWToolkit/platform/Platform.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFontDatabase>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QScrollBar>
#include <QTemporaryFile>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>

namespace gallery {

namespace {

using Level = kw::SystemLogLevel;

struct LevelButton {
    const char* title;
    void (kw::GDASLLog::*log)(std::string_view message);
};

constexpr LevelButton levelButtons[] {
    {"Emergency", &kw::GDASLLog::emergency},
    {"Alert", &kw::GDASLLog::alert},
    {"Critical", &kw::GDASLLog::critical},
    {"Error", &kw::GDASLLog::error},
    {"Warning", &kw::GDASLLog::warning},
    {"Notice", &kw::GDASLLog::notice},
    {"Info", &kw::GDASLLog::info},
    {"Debug", &kw::GDASLLog::debug},
};

constexpr const char* noReport = "No new report.";

QString pathInHome(const QString& path) {
    const QString home = QDir::homePath();
    return path.startsWith(home + '/') ? "~" + path.mid(home.size()) : path;
}

/// The last lines of a file, as far as they are in its last 16 KiB, so that its size costs nothing.
QStringList lastLines(const QString& path) {
    constexpr qint64 room = 16'384;
    constexpr qsizetype count = 8;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const bool isAll = file.size() <= room;
    file.seek(isAll ? 0 : file.size() - room);
    QByteArray text = file.read(room);
    if (!isAll)
        text.remove(0, text.indexOf('\n') + 1);
    const QStringList lines = QString::fromUtf8(text).split('\n', Qt::SkipEmptyParts);
    return lines.last(std::min(count, lines.size()));
}

/// What a user wants to know first.
QString summaryOf(const QString& report) {
    QFile file(report);
    if (!file.open(QIODevice::ReadOnly))
        return "cannot be read";
    QStringList lines;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).simplified();
        if (line == "Backtrace:")
            break;
        for (const char* const caption : {"Version:", "Date/Time:", "Signal:", "Address:"}) {
            if (line.startsWith(caption))
                lines += line;
        }
    }
    return lines.join('\n');
}

QPlainTextEdit* makeTail() {
    auto* const tail = new QPlainTextEdit;
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(font.pointSizeF() * 0.85);
    tail->setFont(font);
    tail->setReadOnly(true);
    tail->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    return tail;
}

/// What the program writes to standard output until an action ends.
QString outputOf(const std::function<void()>& action) {
    QTemporaryFile output;
    output.open();
    std::fflush(stdout);
    const int former = ::dup(STDOUT_FILENO);
    ::dup2(output.handle(), STDOUT_FILENO);
    action();
    std::fflush(stdout);
    ::dup2(former, STDOUT_FILENO);
    ::close(former);
    output.seek(0);
    return QString::fromUtf8(output.readAll());
}

} // namespace

QWidget* LoggingPage::make() { return new LoggingPage; }

LoggingPage::LoggingPage()
    : m_log(kw::KWFileLogger::sharedKWFileLogger().log())
    , m_path(QString::fromStdString(kw::KWPathUtils::applicationSupportFolder()) + "/debugLog")
    , m_text(new QLineEdit("It works"))
    , m_enabled(new QCheckBox("Logging is enabled"))
    , m_mirrored(new QCheckBox("Alert and critical also to standard output"))
    , m_file(label())
    , m_unsent(label())
    , m_tail(makeTail())
    , m_crash(new QPushButton("Crash a child process"))
    , m_look(new QPushButton("Look again"))
    , m_report(label()) {
    auto* const levels = new QGridLayout;
    levels->setSpacing(8);
    for (const LevelButton& level : levelButtons) {
        const int place = static_cast<int>(m_levels.size());
        m_levels.push_back(new QPushButton(level.title));
        connect(m_levels.back(), &QPushButton::clicked, this, [this, &level] {
            std::invoke(level.log, m_log, kw::messageFromText(m_text->text().toStdString()));
            std::fflush(stdout); // the mirrored text has no end of line
            updateFacts();
        });
        levels->addWidget(m_levels.back(), place / 4, place % 4);
    }

    auto* const switches = new QHBoxLayout;
    switches->setSpacing(20);
    switches->addWidget(m_enabled);
    switches->addWidget(m_mirrored);
    switches->addStretch();

    auto* const tools = new QWidget;
    auto* const toolsLayout = new QHBoxLayout(tools);
    toolsLayout->setContentsMargins(0, 0, 0, 0);
    toolsLayout->setSpacing(8);
    toolsLayout->addWidget(m_crash);
    toolsLayout->addWidget(m_look);
    toolsLayout->addStretch();

    auto* const facts = factsLayout({
        {"System log", m_unsent},
        {"Log file", m_file},
        {nullptr, m_tail},
        {nullptr, tools},
        {"Last crash", m_report},
    });
    facts->setVerticalSpacing(10);

    auto* const layout = pageLayout(*this, "Logging");
    layout->setSpacing(10);
    layout->addWidget(m_text);
    layout->addLayout(levels);
    layout->addLayout(switches);
    layout->addLayout(facts, 1);

    auto& registry = kw::GDASLLogManager::sharedInstance();
    m_enabled->setChecked(registry.enabled());
    m_mirrored->setChecked(m_log.logToStdOut());
    connect(m_enabled, &QCheckBox::toggled, this,
        [&registry](bool isOn) { registry.setEnabled(isOn); });
    connect(
        m_mirrored, &QCheckBox::toggled, this, [this](bool isOn) { m_log.setLogToStdOut(isOn); });
    connect(m_crash, &QPushButton::clicked, this, [this] {
        m_crash->setEnabled(false);
        m_child.start(QCoreApplication::applicationFilePath(), {"--crash"});
    });
    connect(&m_child, &QProcess::stateChanged, this, [this](QProcess::ProcessState state) {
        if (state != QProcess::NotRunning)
            return;
        m_crash->setEnabled(true);
        lookForReport();
    });
    connect(m_look, &QPushButton::clicked, this, [this] { lookForReport(); });
    // Other processes write to the file as well, and may put another in its place.
    connect(&m_timer, &QTimer::timeout, this, [this] { updateFacts(); });
    lookForReport();
}

void LoggingPage::showEvent(QShowEvent*) {
    updateFacts();
    m_timer.start(std::chrono::milliseconds(250));
}

void LoggingPage::hideEvent(QHideEvent*) { m_timer.stop(); }

QPushButton& LoggingPage::button(Level level) const {
    return *m_levels[static_cast<std::size_t>(level)];
}

void LoggingPage::updateFacts() {
    const QString path = pathInHome(m_path);
    m_file->setText(m_log.fd() >= 0 ? path : "cannot open " + path);
    m_unsent->setText(QString("messages it did not take: %1").arg(m_log.unsentMessageCount()));
    QStringList lines = lastLines(m_path);
    if (lines == m_lines)
        return;
    m_lines = std::move(lines);
    m_tail->setPlainText(m_lines.join('\n'));
    m_tail->verticalScrollBar()->setValue(m_tail->verticalScrollBar()->maximum());
}

void LoggingPage::lookForReport() {
    const auto report = kw::KWCrashLogFinder::lastCrashReportPath();
    if (!report)
        return m_report->setText(noReport);
    const QString path = QString::fromStdString(*report);
    m_report->setText(pathInHome(path) + '\n' + summaryOf(path));
}

void LoggingPage::visit(Tour& tour, QWidget& page) { static_cast<LoggingPage&>(page).steps(tour); }

void LoggingPage::steps(Tour& tour) {
    if (dynamic_cast<kw::UnavailableSystemLog*>(&kw::Platform::systemLog())) {
        tour.write("skipped logging: this build has no system log");
        return;
    }
    // The last messages with their levels, without what is different each time.
    const auto messages = [this](qsizetype count) {
        QStringList texts;
        for (const QString& line : m_lines.last(std::min(count, m_lines.size())))
            texts += line.mid(line.indexOf("] <") + 2);
        return texts.isEmpty() ? "none" : texts.join(", ");
    };
    const auto last = [&] { return messages(1); };
    const auto enabled = [this] { return QString(m_enabled->isChecked() ? "on" : "off"); };
    const auto report = [this] { return m_report->text().section('\n', -2, -2); };

    tour.expect("messages at first", "none", last);
    tour.expect("crash at first", noReport, [this] { return m_report->text(); });
    tour.takePicture("logging-1-empty");

    m_text->setText("Hi");
    QStringList all;
    for (const auto& [title, log] : levelButtons)
        all += QString("<%1>: Hi").arg(title);
    for (QPushButton* const level : m_levels)
        tour.click(*level);
    tour.expect("messages, each level clicked", all.join(", "), [&] { return messages(8); });
    tour.expect("system log",
        QString("messages it did not take: %1").arg(m_log.unsentMessageCount()),
        [this] { return m_unsent->text(); });
    tour.takePicture("logging-2-levels");

    tour.click(*m_enabled);
    tour.expect("the switch", "off", enabled);
    m_text->setText("Unheard");
    tour.click(button(Level::error));
    tour.takePicture("logging-3-off");
    tour.click(*m_enabled);
    tour.expect("the switch", "on", enabled);
    m_text->setText("Heard");
    tour.click(button(Level::warning));
    tour.expect(
        "messages, off and on again", "<Debug>: Hi, <Warning>: Heard", [&] { return messages(2); });

    m_text->setText("100% of %s, %%d and %n");
    tour.click(button(Level::notice));
    tour.expect("message with percent signs", "<Notice>: 100% of %s, %%d and %n", last);
    tour.takePicture("logging-4-percent");

    tour.click(*m_mirrored);
    m_text->setText("Both");
    const QString output = outputOf([&] {
        tour.click(button(Level::alert));
        tour.click(button(Level::critical));
        tour.click(button(Level::error));
    });
    tour.expect("standard output of alert, critical and error", "BothBoth",
        [&] { return QString(output); });
    tour.takePicture("logging-5-mirrored");

    tour.click(*m_crash);
    tour.expect("crash of a child process", "Signal: SIGSEGV (11)", report);
    tour.takePicture("logging-6-crashed");
    tour.click(*m_look);
    tour.expect("crash, looked again", noReport, [this] { return m_report->text(); });
    tour.takePicture("logging-7-no-new-crash");

    QFile other(m_path);
    if (other.open(QIODevice::Append))
        other.write("another program[1] <Info>: Hello\n");
    other.close();
    tour.expect("message of another program", "<Info>: Hello", last);
    QFile::rename(m_path, m_path + ".1");
    tour.expect("messages, log file moved away", "none", last);
    m_text->setText("A new page");
    tour.click(button(Level::info));
    tour.expect("messages, logged again", "<Info>: A new page", [&] { return messages(8); });
    tour.takePicture("logging-8-rotated");
}

} // namespace gallery

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/logging/GDASLLog.h>

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QWidget>

#include <vector>

namespace gallery {

class Tour;

/// Logs a text at each level, shows the end of the log file, and finds the reports of crashes.
class LoggingPage final : public QWidget {
public:
    static QWidget* make();
    static void visit(Tour& tour, QWidget& page);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    LoggingPage();

    QPushButton& button(kw::SystemLogLevel level) const;
    void updateFacts();
    void lookForReport();
    void steps(Tour& tour);

    kw::GDASLLog& m_log;
    const QString m_path; ///< of the log file
    QStringList m_lines; ///< the last of the log file
    QTimer m_timer;

    QLineEdit* m_text;
    std::vector<QPushButton*> m_levels; ///< in the order of kw::SystemLogLevel
    QCheckBox* m_enabled;
    QCheckBox* m_mirrored;
    QLabel* m_file;
    QLabel* m_unsent;
    QPlainTextEdit* m_tail;
    QPushButton* m_crash;
    QPushButton* m_look;
    QLabel* m_report;
    QProcess m_child; ///< goes first, since the page is told of its end
};

} // namespace gallery

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/foundation/NSOperationQueue.h>

#include <QButtonGroup>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QWidget>

#include <map>
#include <memory>
#include <string>

namespace gallery {

class Album;
class Tour;

/// Edits a model, and writes down what observers of its properties are told.
class ObservationPage final : public QWidget {
public:
    static QWidget* make();
    static void visit(Tour& tour, QWidget& page);

private:
    ObservationPage();
    ~ObservationPage() override;
    void observe();
    void stopObserving();
    void told(const std::string& keyPath, bool isOnMainThread);
    void showState();
    std::string keyPath() const;
    void steps(Tour& tour);

    QLineEdit* m_title;
    QSpinBox* m_year;
    QWidget* m_artists;
    QButtonGroup* m_artist;
    QLineEdit* m_artistName;
    QSlider* m_volume;
    QWidget* m_paths;
    QButtonGroup* m_path;
    QPushButton* m_observe;
    QPushButton* m_stop;
    QCheckBox* m_onQueue;
    QListWidget* m_log;
    QLabel* m_count;

    const std::shared_ptr<Album> m_album;
    const std::shared_ptr<kw::NSOperationQueue> m_queue;
    std::map<std::string, std::string> m_tokens; // by key path
    int m_notifications = 0;
};

} // namespace gallery

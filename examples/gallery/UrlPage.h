// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/url/KWUrlDelegate.h>

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QWidget>

#include <functional>
#include <string>
#include <vector>

namespace gallery {

class Tour;

/// Shows a text in and out of URLs, and what links of the gallery's own scheme tell it.
class UrlPage final : public QWidget {
public:
    static QWidget* make();
    static void visit(Tour& tour, QWidget& page);

private:
    /// What a link can call.
    class Listener final : public kw::NSObject {
    public:
        static kw::Class& classObject();
        kw::Class& isa() const override { return classObject(); }

        std::function<void(const QString& line)> tell;

    private:
        void say(const std::vector<std::string>& words);
        void unhandledUrlCall(const std::string& url);
    };

    UrlPage();
    void transform();
    void open(const std::string& url);
    void steps(Tour& tour);

    Listener m_listener;
    kw::KWUrlDelegate m_dispatcher {m_listener};

    QLineEdit* m_text;
    std::vector<QLineEdit*> m_results; ///< one for each transformation
    QPushButton* m_link;
    QPushButton* m_broken;
    QPushButton* m_mail;
    QPlainTextEdit* m_events;
};

} // namespace gallery

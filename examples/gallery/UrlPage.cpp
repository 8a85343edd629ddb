// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "UrlPage.h"

#include "Tour.h"
#include "Widgets.h"

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/url/KWMailUtils.h>
#include <KWToolkit/url/NSString+GTMNSStringURLArgumentsAdditions.h>
#include <KWToolkit/url/NSURL+Encode.h>

#include <QHBoxLayout>

#include <optional>
#include <string_view>

namespace gallery {

namespace {

const std::string urlScheme = "kwtoolkit-gallery";

struct Transformation {
    const char* name;
    std::optional<std::string> (*apply)(std::string_view text);
};

constexpr Transformation transformations[] {
    {"urlEncode", [](std::string_view text) { return std::optional(kw::urlEncode(text)); }},
    {"urlDecode", [](std::string_view text) { return std::optional(kw::urlDecode(text)); }},
    {"escaped as argument", &kw::gtm_stringByEscapingForURLArgument},
    {"unescaped from argument", &kw::gtm_stringByUnescapingFromURLArgument},
};

QString shown(const std::optional<std::string>& text) {
    return text ? QString::fromStdString(*text) : QString("nothing: these escapes are no text");
}

} // namespace

kw::Class& UrlPage::Listener::classObject() {
    static kw::Class object("UrlPage", kw::NSObject::classObject(),
        {
            kw::method("say:", &Listener::say),
            kw::method("unhandledUrlCall:", &Listener::unhandledUrlCall),
        });
    return object;
}

void UrlPage::Listener::say(const std::vector<std::string>& words) {
    QString line = "say:";
    for (const std::string& word : words)
        line += " " + QString::fromStdString(kw::urlDecode(word));
    tell(line);
}

void UrlPage::Listener::unhandledUrlCall(const std::string& url) {
    tell("unhandledUrlCall: " + QString::fromStdString(url));
}

QWidget* UrlPage::make() { return new UrlPage; }

UrlPage::UrlPage()
    : m_text(new QLineEdit("Rock & Roll / 100 %25 €"))
    , m_link(new QPushButton("Open as a link"))
    , m_broken(new QPushButton("Open a broken link"))
    , m_mail(new QPushButton("Mail it"))
    , m_events(new QPlainTextEdit) {
    m_listener.tell = [this](const QString& line) { m_events->appendPlainText(line); };
    m_events->setReadOnly(true);

    auto* const tools = new QWidget;
    auto* const toolsLayout = new QHBoxLayout(tools);
    toolsLayout->setContentsMargins(0, 0, 0, 0);
    toolsLayout->setSpacing(8);
    for (QPushButton* const button : {m_link, m_broken, m_mail})
        toolsLayout->addWidget(button);
    toolsLayout->addStretch();

    std::vector<std::pair<const char*, QWidget*>> rows;
    for (const Transformation& transformation : transformations) {
        m_results.push_back(new QLineEdit);
        m_results.back()->setReadOnly(true);
        rows.emplace_back(transformation.name, m_results.back());
    }
    auto* const layout = pageLayout(*this, "URLs and mail");
    layout->addWidget(label("Type, and see the text in and out of URLs. As a link of the gallery's "
                            "own scheme it comes back as an event."));
    layout->addWidget(m_text);
    layout->addLayout(factsLayout(rows));
    layout->addWidget(tools);
    layout->addWidget(m_events, 1);

    connect(m_text, &QLineEdit::textChanged, this, [this] { transform(); });
    connect(m_link, &QPushButton::clicked, this,
        [this] { open(urlScheme + "://say&!p!&" + kw::urlEncode(m_text->text().toStdString())); });
    connect(
        m_broken, &QPushButton::clicked, this, [this] { open(urlScheme + ":without slashes"); });
    connect(m_mail, &QPushButton::clicked, this, [this] {
        kw::KWMailUtils::openMailWithReceiver(
            "someone@example.org", "From the gallery", kw::urlEncode(m_text->text().toStdString()));
    });
    transform();
}

void UrlPage::transform() {
    const std::string text = m_text->text().toStdString();
    for (std::size_t i = 0; i < m_results.size(); ++i) {
        m_results[i]->setText(shown(transformations[i].apply(text)));
        m_results[i]->setCursorPosition(0);
    }
}

void UrlPage::open(const std::string& url) {
    if (kw::Platform::urlEvents().receive({url}) == kw::UrlReception::elsewhere)
        m_listener.tell("Another gallery has it.");
}

void UrlPage::visit(Tour& tour, QWidget& page) { static_cast<UrlPage&>(page).steps(tour); }

void UrlPage::steps(Tour& tour) {
    const auto expectResults = [&](const char* text, std::initializer_list<const char*> results) {
        m_text->setText(text);
        auto* const* result = results.begin();
        for (std::size_t i = 0; i < m_results.size(); ++i)
            tour.expect(transformations[i].name, result[i], [&] { return m_results[i]->text(); });
    };
    const auto events = [this] { return m_events->toPlainText().replace('\n', ", "); };

    expectResults("a+b c/%41", {"a%2Bb%20c%2F%41", "a+b c/%41", "a%2Bb%20c%2F%2541", "a b c/A"});
    tour.takePicture("urls-1-transformed");
    expectResults("%C3%A9 %zz",
        {"%C3%A9%20%zz", "%C3%A9 %zz", "%25C3%25A9%20%25zz", "nothing: these escapes are no text"});
    tour.takePicture("urls-2-no-text");

    m_text->setText("Rock & Roll");
    tour.click(*m_link);
    tour.expect("events, link opened", "say: Rock & Roll", events);
    tour.click(*m_broken);
    tour.expect("events, broken link opened",
        "say: Rock & Roll, unhandledUrlCall: kwtoolkit-gallery:without slashes", events);
    tour.takePicture("urls-3-events");
}

} // namespace gallery

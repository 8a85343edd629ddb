// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "HtmlModalPage.h"

#include "ImageWidgets.h"
#include "Tour.h"
#include "Widgets.h"

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/FileURL.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/platform/foundation/NSURLCache.h>
#include <KWToolkit/platform/ui/NSApplication.h>
#include <KWToolkit/platform/ui/WebPreferences.h>
#include <KWToolkit/windows/KWHtmlModal.h>
#include <KWToolkitQt/QtImages.h>

#include <QAbstractButton>
#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QStringEncoder>

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace gallery {

namespace {

constexpr kw::NSSize modalSize {460, 340};
constexpr QPoint linkPlace {40, 30}; // in the page
constexpr QRect picturePlace {300, 40, 120, 50};
constexpr int stopCode = 7;

struct Case {
    const char* title;
    const char* fileName; // empty for no address
    const char* pictureName;
    const char* answer; // the tour's: a button, or empty to stop the session
};
constexpr Case cases[] {
    {"A page", "terms.html", "local", "Agree"},
    {"A page that is too long", "long.html", "long", "Decline"},
    {"A missing file", "missing.html", "missing", "Agree"},
    {"A page in UTF-8", "utf-8.html", "utf-8", "Decline"},
    {"No address", "", "none", ""},
};

constexpr const char* pageStyle = R"(
body { margin: 20px 28px; font: 15px/1.45 sans-serif; color: #26304a; background: #f4f6fb; }
a { position: absolute; left: 28px; top: 20px; color: #2f5fc4; }
h1 { margin: 40px 0 8px; font-size: 24px; }
img { float: right; width: 150px; margin: 28px 0 12px 20px; }
)";

QString pageOf(int paragraphs) {
    const QString paragraph = "<p>You may use the recorder for as long as you like, on as many "
                              "desks as you have. What you record is yours.</p>";
    return "<!DOCTYPE html><html><head><title>Terms</title>"
           "<link rel=\"stylesheet\" href=\"style.css\"></head><body>"
           "<a href=\"more.html\">More on this</a><img src=\"picture.png\">"
           "<h1>Terms of use</h1>"
        + paragraph.repeated(paragraphs) + "</body></html>";
}

const char* onOff(bool isOn) { return isOn ? "on" : "off"; }

QString settingsText() {
    const auto& preferences = kw::WebPreferences::standardPreferences();
    const char* const caches[] {"the smallest cache", "a medium cache", "the largest cache"};
    return QString("JavaScript %1, Java %2, plug-ins %3, %4 with %5 bytes on disk")
        .arg(onOff(preferences.isJavaScriptEnabled()), onOff(preferences.isJavaEnabled()),
            onOff(preferences.arePlugInsEnabled()),
            caches[static_cast<std::size_t>(preferences.cacheModel())])
        .arg(kw::NSURLCache::sharedURLCache().diskCapacity());
}

QString buttonText(const kw::NSButton& button) {
    const kw::NSRect frame = button.frame();
    return QString("%1: %2 at %3, %4")
        .arg(QString::fromStdString(button.title()),
            sizeText(frame.size.width, frame.size.height, "points"))
        .arg(frame.origin.x)
        .arg(frame.origin.y);
}

QString answerText(int code) {
    switch (code) {
    case 1:
        return "1, the first button";
    case 2:
        return "2, the second button";
    case kw::NSRunAbortedResponse:
        return QString("%1, the window was closed").arg(code);
    default:
        return QString("%1, stopped by the program").arg(code);
    }
}

bool isUniform(const QImage& image) {
    const QRgb first = image.pixel(0, 0);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != first)
                return false;
        }
    }
    return true;
}

/// The desktop's own web page; null where there are none.
QWidget* pageIn(const QWidget& modal) {
    const auto widgets = modal.findChildren<QWidget*>();
    const auto found = std::ranges::find_if(
        widgets, [](const QWidget* widget) { return widget->inherits("QWebEngineView"); });
    return found == widgets.end() ? nullptr : *found;
}

} // namespace

/// Tells the link that was clicked; the page itself leads nowhere.
class HtmlModalPage::Links final : public kw::NSObject {
public:
    explicit Links(QLabel& told)
        : m_told(told) { }

    static kw::Class& classObject() {
        static kw::Class object("GalleryLinks", kw::NSObject::classObject(),
            {kw::method("webView:decidePolicyForNavigationAction:request:frame:decisionListener:",
                &Links::decide)});
        return object;
    }
    kw::Class& isa() const override { return classObject(); }

    void decide(kw::WebView&, const kw::WebNavigationAction& action, const std::string& request,
        kw::WebFrame&, kw::WebPolicyDecisionListener& listener) {
        if (action.type == kw::WebNavigationType::linkClicked)
            m_told.setText(QString::fromStdString(request).section('/', -1));
        listener.ignore();
    }

private:
    QLabel& m_told;
};

QWidget* HtmlModalPage::make() { return new HtmlModalPage; }

HtmlModalPage::HtmlModalPage()
    : m_answer(label("none yet"))
    , m_buttons(label("none yet"))
    , m_link(label("none yet"))
    , m_settings(label(settingsText()))
    , m_links(std::make_shared<Links>(*m_link)) {
    writePages();
    auto* const tools = new QGridLayout;
    tools->setSpacing(8);
    tools->setColumnStretch(3, 1);
    for (const Case& each : cases) {
        auto* const button = new QPushButton(each.title);
        const int index = static_cast<int>(m_cases.size());
        tools->addWidget(button, index / 3, index % 3);
        m_cases.push_back(button);
        connect(button, &QPushButton::clicked, this, [this, &each] { ask(each.fileName); });
    }

    auto* const layout = pageLayout(*this, "Web page");
    layout->addWidget(label(kw::Platform::web().isAvailable()
            ? "A window asks with a web page above two buttons, and waits for the answer. Files "
              "are read as UTF-16. What is too long is cut off. Links lead where the program says: "
              "here they are only told."
            : "A window asks above two buttons, and waits for the answer. This gallery was built "
              "without web pages, so they are all empty."));
    layout->addLayout(tools);
    layout->addLayout(factsLayout({{"Answer", m_answer}, {"Buttons", m_buttons},
        {"Link clicked", m_link}, {"All web pages", m_settings}}));
    layout->addStretch();
}

HtmlModalPage::~HtmlModalPage() = default;

void HtmlModalPage::writePages() {
    const auto write = [this](const char* name, const QByteArray& bytes) {
        QFile file(m_folder.filePath(name));
        if (file.open(QIODevice::WriteOnly))
            file.write(bytes);
    };
    const auto utf16 = [](const QString& text) {
        return QByteArray(
            QStringEncoder(QStringConverter::Utf16, QStringConverter::Flag::WriteBom)(text));
    };
    write("terms.html", utf16(pageOf(2)));
    write("long.html", utf16(pageOf(40)));
    write("utf-8.html", pageOf(2).toUtf8());
    write("style.css", pageStyle);
    kw::qt::toQImage(generatedPicture()).save(m_folder.filePath("picture.png"));
}

void HtmlModalPage::ask(const std::string& fileName) {
    std::optional<std::string> url;
    if (!fileName.empty())
        url = kw::fileURLOfPath(m_folder.filePath(QString::fromStdString(fileName)).toStdString());
    m_answer->setText("being waited for");
    m_link->setText("none yet");
    const auto modal =
        std::make_shared<kw::KWHtmlModal>(modalSize, url, "Agree", "Decline", m_links);
    m_buttons->setText(buttonText(*modal->okButton()) + "\n" + buttonText(*modal->cancelbutton()));
    m_settings->setText(settingsText());
    m_answer->setText(answerText(modal->beginModal()));
}

void HtmlModalPage::visit(Tour& tour, QWidget& page) {
    static_cast<HtmlModalPage&>(page).steps(tour);
}

void HtmlModalPage::steps(Tour& tour) {
    tour.takePicture("web-page-1-before");
    for (const Case& each : cases) {
        tour.clickToOpen(*m_cases[static_cast<std::size_t>(&each - cases)], [&](QWidget& modal) {
            QWidget* const page = pageIn(modal);
            const bool hasText = page && QFile::exists(m_folder.filePath(each.fileName))
                && each.fileName != std::string();
            const auto drawnAt = [&](const QRect& place) {
                return page && !isUniform(tour.pictureOf(*page).toImage().copy(place)) ? "drawn"
                                                                                       : "blank";
            };
            tour.expect(each.title, hasText ? "drawn" : "blank",
                [&] { return drawnAt({QPoint(), page ? page->size() : QSize()}); });
            const bool isTerms = hasText && each.fileName == std::string("terms.html");
            if (isTerms)
                tour.expect(
                    "the picture beside it", "drawn", [&] { return drawnAt(picturePlace); });
            tour.takePicture(QString("web-page-2-") + each.pictureName, tour.pictureOf(modal));
            if (isTerms) {
                QWidget& target = page->focusProxy() ? *page->focusProxy() : *page;
                tour.hands().pressMouse(target, linkPlace);
                tour.hands().releaseMouse(target, linkPlace);
                tour.expect("link", "more.html", [this] { return m_link->text(); });
            }
            const auto buttons = modal.findChildren<QAbstractButton*>();
            const auto button = std::ranges::find_if(
                buttons, [&](QAbstractButton* one) { return one->text() == each.answer; });
            if (button == buttons.end())
                kw::NSApplication::sharedApplication().stopModalWithCode(stopCode);
            else
                tour.click(**button);
        });
        tour.expect("answer",
            answerText(*each.answer ? 1 + (each.answer == std::string("Decline")) : stopCode),
            [this] { return m_answer->text(); });
    }
    tour.expect("all web pages",
        "JavaScript off, Java off, plug-ins off, the smallest cache with 0 bytes on disk",
        [this] { return m_settings->text(); });
    tour.takePicture("web-page-3-after");
}

} // namespace gallery

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "ObservationPage.h"

#include "ImageWidgets.h"
#include "Tour.h"
#include "Widgets.h"

#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>
#include <KWToolkit/platform/foundation/NSKeyValueObserving.h>
#include <KWToolkit/runtime/NSObject+OBBlockObservation.h>
#include <KWToolkitQt/ObservableObject.h>

#include <QHBoxLayout>
#include <QRadioButton>
#include <QThread>

#include <any>
#include <array>
#include <cstdint>
#include <utility>

namespace gallery {

namespace {

using kw::setAndNotify;

class Artist final : public kw::NSObject {
public:
    explicit Artist(std::string name)
        : m_name(std::move(name)) { }
    const std::string& name() const { return m_name; }
    void setName(std::string name) { setAndNotify(*this, nameKey, m_name, std::move(name)); }

    static kw::Class& classObject() {
        static kw::Class object("Artist", kw::NSObject::classObject(), {},
            {kw::property("name", &Artist::name, &Artist::setName)});
        return object;
    }
    kw::Class& isa() const override { return classObject(); }

private:
    static inline const kw::SEL nameKey {"name"};
    std::string m_name;
};

constexpr std::array keyPaths {"title", "year", "artist.name", "volume.value"};

} // namespace

/// What is edited.
class Album final : public kw::NSObject {
public:
    explicit Album(std::shared_ptr<kw::NSObject> volume)
        : m_volume(std::move(volume)) { }
    const std::string& title() const { return m_title; }
    void setTitle(std::string title) { setAndNotify(*this, titleKey, m_title, std::move(title)); }
    int year() const { return m_year; }
    void setYear(int year) { setAndNotify(*this, yearKey, m_year, year); }
    const std::shared_ptr<Artist>& artist() const { return m_artist; }
    void setArtist(std::shared_ptr<Artist> artist) {
        setAndNotify(*this, artistKey, m_artist, std::move(artist));
    }

    static kw::Class& classObject() {
        static kw::Class object("Album", kw::NSObject::classObject(), {},
            {kw::property("title", &Album::title, &Album::setTitle),
                kw::property("year", &Album::year, &Album::setYear),
                kw::property("artist", &Album::artist, &Album::setArtist),
                kw::property("volume", [](const Album& album) { return album.m_volume; })});
        return object;
    }
    kw::Class& isa() const override { return classObject(); }

    /// Those to choose from.
    const std::array<std::shared_ptr<Artist>, 2> artists {
        std::make_shared<Artist>("Mia"), std::make_shared<Artist>("Tom")};

private:
    static inline const kw::SEL titleKey {"title"};
    static inline const kw::SEL yearKey {"year"};
    static inline const kw::SEL artistKey {"artist"};
    std::string m_title = "Blue";
    int m_year = 1999;
    std::shared_ptr<Artist> m_artist = artists[0];
    const std::shared_ptr<kw::NSObject> m_volume; // a slider
};

QWidget* ObservationPage::make() { return new ObservationPage; }

ObservationPage::ObservationPage()
    : m_title(new QLineEdit)
    , m_year(new QSpinBox)
    , m_artists(new QWidget)
    , m_artist(choice(*m_artists, {"the first", "the second"}))
    , m_artistName(new QLineEdit)
    , m_volume(new QSlider(Qt::Horizontal))
    , m_paths(new QWidget)
    , m_path(choice(*m_paths, QStringList(keyPaths.begin(), keyPaths.end())))
    , m_observe(new QPushButton("Observe"))
    , m_stop(new QPushButton("Stop observing"))
    , m_onQueue(new QCheckBox("On a serial queue"))
    , m_log(new QListWidget)
    , m_count(label())
    , m_album(std::make_shared<Album>(kw::qt::observable(*m_volume)))
    , m_queue(std::make_shared<kw::NSOperationQueue>()) {
    m_queue->setMaxConcurrentOperationCount(1);
    m_year->setRange(1900, 2100);
    m_year->setValue(m_album->year());
    m_title->setText(QString::fromStdString(m_album->title()));
    m_artistName->setText(QString::fromStdString(m_album->artist()->name()));
    m_volume->setRange(0, 10);
    m_volume->setPageStep(5);
    m_volume->setValue(5);
    m_log->setFocusPolicy(Qt::NoFocus);
    m_log->setUniformItemSizes(true);

    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(m_observe);
    buttons->addWidget(m_stop);
    buttons->addSpacing(12);
    buttons->addWidget(m_onQueue);
    buttons->addStretch();
    auto* const layout = pageLayout(*this, "Observation");
    layout->addLayout(factsLayout({{"Title", m_title}, {"Year", m_year}, {"Artist", m_artists},
        {"Artist's name", m_artistName}, {"Volume (a slider)", m_volume}, {"Key path", m_paths}}));
    layout->addLayout(buttons);
    layout->addWidget(m_log, 1);
    layout->addWidget(m_count);

    connect(m_title, &QLineEdit::textEdited, this,
        [this](const QString& text) { m_album->setTitle(text.toStdString()); });
    connect(m_year, &QSpinBox::valueChanged, this, [this](int year) { m_album->setYear(year); });
    connect(m_artist, &QButtonGroup::idClicked, this, [this](int id) {
        m_album->setArtist(m_album->artists.at(static_cast<std::size_t>(id)));
        m_artistName->setText(QString::fromStdString(m_album->artist()->name()));
    });
    connect(m_artistName, &QLineEdit::textEdited, this,
        [this](const QString& text) { m_album->artist()->setName(text.toStdString()); });
    connect(m_path, &QButtonGroup::idClicked, this, [this] { showState(); });
    connect(m_observe, &QPushButton::clicked, this, [this] { observe(); });
    connect(m_stop, &QPushButton::clicked, this, [this] { stopObserving(); });
    showState();
}

ObservationPage::~ObservationPage() {
    for (const auto& [path, token] : m_tokens)
        kw::removeObserverWithBlockToken(*m_album, token);
    m_queue->waitUntilAllOperationsAreFinished();
}

std::string ObservationPage::keyPath() const {
    return keyPaths.at(static_cast<std::size_t>(m_path->checkedId()));
}

void ObservationPage::observe() {
    const auto task = [this, path = keyPath()](kw::NSObject&, const kw::NSKeyValueChange&) {
        const bool isOnMainThread = QThread::currentThread() == thread();
        QMetaObject::invokeMethod(
            this, [this, path, isOnMainThread] { told(path, isOnMainThread); });
    };
    m_tokens[keyPath()] = kw::addObserverForKeyPath(
        *m_album, keyPath(), m_onQueue->isChecked() ? m_queue : nullptr, task);
    showState();
}

void ObservationPage::stopObserving() {
    kw::removeObserverWithBlockToken(*m_album, m_tokens.extract(keyPath()).mapped());
    showState();
}

void ObservationPage::told(const std::string& keyPath, bool isOnMainThread) {
    const std::any value = kw::valueForKeyPath(*m_album, keyPath);
    const auto* const text = std::any_cast<std::string>(&value);
    // From the queue it comes later, when there may have been another change.
    m_log->addItem(QString(
        isOnMainThread ? "%1 is now %2 (at once)" : "%1 changed, and is %2 by now (on the queue)")
            .arg(QString::fromStdString(keyPath),
                text ? QString::fromStdString(*text)
                     : QString::number(kw::unboxed<std::int64_t>(value))));
    m_log->scrollToBottom();
    ++m_notifications;
    showState();
}

void ObservationPage::showState() {
    const bool isObserved = m_tokens.contains(keyPath());
    m_observe->setEnabled(!isObserved);
    m_stop->setEnabled(isObserved);
    m_onQueue->setEnabled(!isObserved);
    QStringList paths;
    for (const auto& [path, token] : m_tokens)
        paths += QString::fromStdString(path);
    m_count->setText(QString("Observed: %1. Notifications: %2.")
            .arg(paths.isEmpty() ? "nothing" : paths.join(", "))
            .arg(m_notifications));
}

void ObservationPage::visit(Tour& tour, QWidget& page) {
    static_cast<ObservationPage&>(page).steps(tour);
}

void ObservationPage::steps(Tour& tour) {
    const auto state = [this] { return m_count->text(); };
    const auto lastLine = [this] {
        return m_log->count() == 0 ? QString() : m_log->item(m_log->count() - 1)->text();
    };
    const auto type = [&](QWidget& field, Qt::Key key) {
        tour.click(field);
        tour.hands().pressKey(key);
        tour.hands().releaseKey(key);
    };
    const auto clickAt = [&](QWidget& widget, QPoint place) {
        tour.hands().pressMouse(widget, place);
        tour.hands().releaseMouse(widget, place);
    };
    // A click in a radio button's middle may be beside its words.
    const auto choose = [&](const QButtonGroup& group, int id) {
        QAbstractButton& button = *group.button(id);
        clickAt(button, {button.height() / 2, button.height() / 2});
        tour.expect("choice", button.text(), [&] { return group.checkedButton()->text(); });
    };

    tour.expect("observed", "Observed: nothing. Notifications: 0.", state);
    tour.click(*m_observe);
    choose(*m_path, 2);
    tour.click(*m_observe);
    tour.expect("observed", "Observed: artist.name, title. Notifications: 0.", state);
    m_title->end(false);
    type(*m_title, Qt::Key_S);
    tour.expect("a property", "title is now Blues (at once)", lastLine);
    choose(*m_artist, 1);
    tour.expect("an object on the path replaced", "artist.name is now Tom (at once)", lastLine);
    m_artistName->clear();
    type(*m_artistName, Qt::Key_J);
    tour.expect("the new object", "artist.name is now j (at once)", lastLine);

    choose(*m_path, 3);
    tour.click(*m_onQueue);
    tour.click(*m_observe);
    clickAt(*m_volume, {m_volume->width() - 4, m_volume->height() / 2});
    tour.expect(
        "a widget, on a queue", "volume.value changed, and is 10 by now (on the queue)", lastLine);
    tour.takePicture("observation-1-told");

    choose(*m_path, 0);
    tour.click(*m_stop);
    type(*m_title, Qt::Key_T);
    tour.expect("nobody told", "Observed: artist.name, volume.value. Notifications: 4.", state);
    choose(*m_path, 2);
    tour.click(*m_stop);
    choose(*m_path, 3);
    tour.click(*m_stop);
    tour.expect("nothing observed", "Observed: nothing. Notifications: 4.", state);
}

} // namespace gallery

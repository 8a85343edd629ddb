// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include "HotkeysPage.h"

#include "Tour.h"
#include "Widgets.h"

#include <KWToolkit/hotkeys/KWGlobalHotkeyManager.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Message.h>

#include <QHBoxLayout>
#include <QLineEdit>
#include <QStringList>

namespace gallery {

namespace {

QString valueText(const kw::PropertyValue& value) {
    if (const bool* const boolean = value.boolean())
        return *boolean ? "true" : "false";
    const std::int64_t* const number = value.integer();
    return number ? QString::number(*number) : QString();
}

QString recordText(const kw::HotkeyRecord& record) {
    QStringList lines;
    for (const auto& [key, value] : record)
        lines += QString::fromStdString(key) + " = " + valueText(value);
    lines.sort();
    return lines.join('\n');
}

QString statusText(kw::HotkeyStatus status) {
    switch (status) {
    case kw::HotkeyStatus::live:
        return "Live: press it in any application.";
    case kw::HotkeyStatus::heldElsewhere:
        return "Refused: another program has it.";
    case kw::HotkeyStatus::unsupported:
        return "Refused: this desktop cannot grab it.";
    case kw::HotkeyStatus::unavailable:
        break;
    }
    return "Not live: there is no desktop to register with.";
}

QString capabilitiesText(const kw::HotkeyCapabilities& capabilities) {
    if (!capabilities.isAvailable)
        return "No system-wide hotkeys.";
    QStringList lines {"System-wide hotkeys."};
    if (capabilities.reportsConflicts)
        lines += "Tells when another program has the combination.";
    lines += capabilities.choosesKeys ? "The application chooses the combination."
                                      : "The user chooses the combination.";
    return lines.join('\n');
}

} // namespace

kw::Class& HotkeysPage::classObject() {
    using Page = HotkeysPage;
    static kw::Class object("HotkeysPage", kw::NSObject::classObject(),
        {
            kw::method("hotkeyViewWillChangeHotkey:", &Page::hotkeyViewWillChangeHotkey),
            kw::method("hotkeyViewChangedHotkey:", &Page::hotkeyViewChangedHotkey),
            kw::method("hotkeyViewUndoLastChanges:", &Page::hotkeyViewUndoLastChanges),
            kw::method("hotkeyViewRemovedHotkey:", &Page::hotkeyViewRemovedHotkey),
        });
    return object;
}

QWidget* HotkeysPage::make() { return new HotkeysPage; }

HotkeysPage::HotkeysPage()
    : m_recorder(std::make_shared<kw::KWHotkeyView>(kw::NSMakeRect(0, 0, 260, 56)))
    , m_recorderWidget(new kw::qt::ViewWidget(m_recorder))
    , m_register(new QPushButton("Register"))
    , m_release(new QPushButton("Release"))
    , m_status(label())
    , m_count(label("0", 1, true))
    , m_message(label("nothing yet"))
    , m_record(label())
    , m_capabilities(label()) {
    m_recorder->setDelegate(*this);
    m_recorderWidget->setFixedSize(m_recorderWidget->sizeHint());
    m_register->setMinimumHeight(m_recorderWidget->height() / 2);
    m_release->setMinimumHeight(m_recorderWidget->height() / 2);

    auto* const tools = new QHBoxLayout;
    tools->setSpacing(12);
    tools->addWidget(m_recorderWidget);
    tools->addWidget(m_register);
    tools->addWidget(m_release);
    tools->addStretch();

    auto* const layout = pageLayout(*this, "Hotkeys");
    layout->addWidget(label("Click the key cap and type a combination with Option, Control or "
                            "Command. Register it, and it works whichever application is in "
                            "front."));
    layout->addLayout(tools);
    layout->addSpacing(8);
    layout->addLayout(factsLayout({
        {"Status", m_status},
        {"Presses", m_count},
        {"Record", m_record},
        {"Delegate was told", m_message},
        {"This desktop", m_capabilities},
    }));
    layout->addStretch();

    connect(m_register, &QPushButton::clicked, this, [this] { registerRecorded(); });
    connect(m_release, &QPushButton::clicked, this, [this] { release(); });
    kw::KWGlobalHotkeyManager::hotkeyManager().setStatusChangeHandler([this] { updateStatus(); });
    updateStatus();
}

HotkeysPage::~HotkeysPage() {
    release();
    kw::KWGlobalHotkeyManager::hotkeyManager().setStatusChangeHandler({});
}

void HotkeysPage::hotkeyViewWillChangeHotkey(kw::KWHotkeyView&) {
    update("hotkeyViewWillChangeHotkey:");
}

void HotkeysPage::hotkeyViewChangedHotkey(kw::KWHotkeyView& view) {
    m_recorded = kw::hotkeyFromRecord(*view.registeredHotkey());
    m_record->setText(recordText(*view.registeredHotkey()));
    if (m_registered)
        registerRecorded();
    update("hotkeyViewChangedHotkey:");
}

void HotkeysPage::hotkeyViewUndoLastChanges(kw::KWHotkeyView&) {
    update("hotkeyViewUndoLastChanges:");
}

void HotkeysPage::hotkeyViewRemovedHotkey(kw::KWHotkeyView&) {
    m_recorded.reset();
    release();
    update("hotkeyViewRemovedHotkey:");
}

void HotkeysPage::registerRecorded() {
    release();
    if (!m_recorded)
        return;
    kw::KWGlobalHotkeyManager::hotkeyManager().registerHotkey(
        *m_recorded, {"count", [this] { m_count->setNum(++m_presses); }});
    m_registered = m_recorded;
    updateStatus();
}

void HotkeysPage::release() {
    if (m_registered)
        kw::KWGlobalHotkeyManager::hotkeyManager().unregisterHotkey(*m_registered);
    m_registered.reset();
    updateStatus();
}

void HotkeysPage::update(const char* message) {
    m_message->setText(message);
    updateStatus();
}

void HotkeysPage::updateStatus() {
    const auto status = m_registered
        ? kw::KWGlobalHotkeyManager::hotkeyManager().statusOfHotkey(*m_registered)
        : std::nullopt;
    m_status->setText(status ? statusText(*status) : "Not registered.");
    if (!m_recorded)
        m_record->setText("none");
    m_register->setEnabled(m_recorded && m_recorded != m_registered);
    m_release->setEnabled(m_registered.has_value());
    m_capabilities->setText(capabilitiesText(kw::Platform::hotkeys().capabilities()));
}

void HotkeysPage::visit(Tour& tour, QWidget& page) { static_cast<HotkeysPage&>(page).steps(tour); }

void HotkeysPage::steps(Tour& tour) {
    const auto recorder = [this] {
        return QString(m_recorder->acceptHotkey() ? "armed" : "at rest");
    };
    const auto held = [this] {
        const auto& record = m_recorder->modifiersHotkey();
        return QString::fromStdString(record ? kw::renderHotkeyRecord(*record) : "none");
    };
    const auto recorded = [this] {
        if (!m_recorded)
            return QString("none");
        return QString(m_recorded->option ? "Option " : "") + QChar(m_recorded->character);
    };
    const auto message = [this] { return m_message->text(); };
    const auto status = [this] {
        const bool isLive = m_status->text() == statusText(kw::HotkeyStatus::live);
        return QString(isLive ? "live" : "not live");
    };
    const auto presses = [this] { return m_count->text(); };
    const QPoint middle = m_recorderWidget->rect().center();

    tour.expect("recorded at first", "none", recorded);
    tour.takePicture("hotkeys-1-empty");

    tour.hands().pressMouse(*m_recorderWidget, middle);
    tour.expect("delegate, mouse down", "hotkeyViewWillChangeHotkey:", message);
    tour.expect("recorder, mouse down", "at rest", recorder);
    tour.takePicture("hotkeys-2-pressed");

    tour.hands().releaseMouse(*m_recorderWidget, middle);
    tour.expect("recorder, mouse up", "armed", recorder);
    tour.takePicture("hotkeys-3-armed");

    tour.hands().pressKey(Qt::Key_Alt);
    tour.expect("held, Option down", "⌥ ", held);
    tour.takePicture("hotkeys-4-armed-option");

    tour.hands().pressKey(Qt::Key_K);
    tour.hands().releaseKey(Qt::Key_K);
    tour.hands().releaseKey(Qt::Key_Alt);
    tour.expect("recorded, K typed", "Option k", recorded);
    tour.expect("recorder, K typed", "at rest", recorder);
    tour.takePicture("hotkeys-5-set");

    tour.click(*m_register);
    if (!tour.hands().areReal() || !kw::Platform::hotkeys().capabilities().isAvailable) {
        tour.expect("status, registered", "not live", status);
        tour.write("skipped press in another window: this desktop has no system-wide hotkeys");
        return;
    }
    tour.expect("status, registered", "live", status);

    QLineEdit other("Another window");
    other.setWindowTitle("Another window");
    other.show();
    other.activateWindow();
    other.setFocus();
    tour.expect("focus", "another window",
        [&] { return QString(other.isActiveWindow() ? "another window" : "elsewhere"); });
    tour.hands().pressKey(Qt::Key_Alt);
    tour.hands().pressKey(Qt::Key_K);
    tour.hands().releaseKey(Qt::Key_K);
    tour.hands().releaseKey(Qt::Key_Alt);
    tour.expect("presses, Option k typed in another window", "1", presses);
    tour.expect("text of the other window", "Another window", [&] { return other.text(); });
    tour.takePicture("hotkeys-6-counted");
    other.close();

    tour.click(*m_release);
    tour.expect("status, released", "not live", status);
}

} // namespace gallery

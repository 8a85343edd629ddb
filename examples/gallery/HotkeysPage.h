// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/hotkeys/HotkeyRecord.h>
#include <KWToolkit/hotkeys/KWHotkeyView.h>
#include <KWToolkitQt/ViewWidget.h>

#include <QLabel>
#include <QPushButton>
#include <QWidget>

#include <memory>
#include <optional>

namespace gallery {

class Tour;

/// Records a hotkey, makes it live system-wide, and counts how often it is pressed.
class HotkeysPage final : public QWidget, public kw::NSObject {
public:
    static QWidget* make();
    static void visit(Tour& tour, QWidget& page);

    static kw::Class& classObject();
    kw::Class& isa() const override { return classObject(); }

private:
    HotkeysPage();
    ~HotkeysPage() override;

    // The recorder's messages.
    void hotkeyViewWillChangeHotkey(kw::KWHotkeyView& view);
    void hotkeyViewChangedHotkey(kw::KWHotkeyView& view);
    void hotkeyViewUndoLastChanges(kw::KWHotkeyView& view);
    void hotkeyViewRemovedHotkey(kw::KWHotkeyView& view);

    void registerRecorded();
    void release();
    void update(const char* message);
    void updateStatus();
    void steps(Tour& tour);

    std::shared_ptr<kw::KWHotkeyView> m_recorder;
    std::optional<kw::Hotkey> m_recorded;
    std::optional<kw::Hotkey> m_registered;
    int m_presses = 0;

    kw::qt::ViewWidget* m_recorderWidget;
    QPushButton* m_register;
    QPushButton* m_release;
    QLabel* m_status;
    QLabel* m_count;
    QLabel* m_message;
    QLabel* m_record;
    QLabel* m_capabilities;
};

} // namespace gallery

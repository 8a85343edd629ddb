// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractNativeEventFilter>

namespace kw::qt {

/// Keeps the focus where it is while somebody presses a system-wide hotkey, on X11.
///
/// The press grabs the keyboard until the key is up. The server then tells the focused window that
/// it has lost the focus, with a mode that says why; Qt takes no note of the mode, and deactivates
/// the window if the key is held for long. While a ViewWidget has the focus, Qt is not told.
class KeyboardGrabFilter final : public QAbstractNativeEventFilter {
public:
    /// Has no effect the second time.
    static void install();

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
};

} // namespace kw::qt

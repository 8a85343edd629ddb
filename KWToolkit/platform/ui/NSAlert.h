// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/NSFont.h>

#include <string>
#include <utility>
#include <vector>

namespace kw {

/// What `NSAlert::runModal` answers for the first button; the second answers one more, and so on.
inline constexpr int NSAlertFirstButtonReturn = 1000;

enum class NSAlertStyle { warning = 0, informational = 1, critical = 2 };

enum class NSControlSize { regular, small, mini };

/// The checkbox with which a user asks not to see an alert again.
struct NSSuppressionButton {
    bool isOn = false;
    NSControlSize controlSize = NSControlSize::regular;
    NSFont font = NSFont::systemFontOfSize(NSFont::systemFontSize);
};

/// A message with buttons, in a window that waits for an answer. Main thread.
///
///     kw::NSAlert alert;
///     alert.setMessageText("Delete the recording?");
///     alert.addButtonWithTitle("Delete");
///     alert.addButtonWithTitle("Keep");
///     if (alert.runModal() == kw::NSAlertFirstButtonReturn)
///         recording.remove();
class KW_EXPORT NSAlert {
public:
    const std::string& messageText() const { return m_messageText; }
    void setMessageText(std::string text) { m_messageText = std::move(text); }

    /// Stands below the message, smaller.
    const std::string& informativeText() const { return m_informativeText; }
    void setInformativeText(std::string text) { m_informativeText = std::move(text); }

    NSAlertStyle alertStyle() const { return m_alertStyle; }
    void setAlertStyle(NSAlertStyle style) { m_alertStyle = style; }

    /// The first button is the default one. An alert without buttons shows one, "OK".
    void addButtonWithTitle(std::string title) { m_buttons.push_back(std::move(title)); }
    const std::vector<std::string>& buttons() const { return m_buttons; }

    /// Whether the checkbox is shown. Its title is the backend's, "Do not show this again" in Qt,
    /// where the font alone tells how large it is.
    bool showsSuppressionButton() const { return m_showsSuppressionButton; }
    void setShowsSuppressionButton(bool shows) { m_showsSuppressionButton = shows; }
    /// After `runModal`, the checkbox as the user left it.
    NSSuppressionButton& suppressionButton() { return m_suppressionButton; }
    const NSSuppressionButton& suppressionButton() const { return m_suppressionButton; }

    /// Shows the alert and waits. 0 where the user chose no button: the window was closed, or there
    /// is nothing to show it on.
    int runModal();

private:
    std::string m_messageText;
    std::string m_informativeText;
    NSAlertStyle m_alertStyle = NSAlertStyle::warning;
    std::vector<std::string> m_buttons;
    bool m_showsSuppressionButton = false;
    NSSuppressionButton m_suppressionButton;
};

} // namespace kw

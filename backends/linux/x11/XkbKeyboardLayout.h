// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/KeyboardLayout.h>
#include <backends/linux/x11/X11Connection.h>

#include <xkbcommon/xkbcommon.h>

#include <memory>
#include <string>

namespace kw {

/// The layout of an X server's keyboard, in the group in force. Key codes are the server's.
///
/// Each question reads first what the server has told since the last one, so an answer does not
/// depend on a run loop. A display that is missing or lost is looked for again every two seconds.
class KW_EXPORT XkbKeyboardLayout final : public KeyboardLayout {
public:
    /// The display is named as in DISPLAY; an empty name is what DISPLAY says.
    explicit XkbKeyboardLayout(std::string displayName = {});
    ~XkbKeyboardLayout() override;

    char16_t characterForKeyCode(std::uint16_t keyCode, bool shift = false) override;

private:
    template <auto release>
    struct Release {
        void operator()(auto* object) const { release(object); }
    };

    void followServer();
    void readLayout();

    const std::string m_displayName;
    std::unique_ptr<X11Connection> m_connection;
    double m_nextAttempt = 0; ///< to find a display, on the steady clock
    std::unique_ptr<xkb_context, Release<xkb_context_unref>> m_context;
    /// Null while there is no layout, or another than was read.
    std::unique_ptr<xkb_state, Release<xkb_state_unref>> m_state;
    xkb_layout_index_t m_group = 0;
};

} // namespace kw

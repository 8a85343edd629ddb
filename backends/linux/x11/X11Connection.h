// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <backends/linux/x11/Xcb.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kw {

/// A connection to an X server that hears of changes to the keyboard and nothing else by itself.
///
/// When the server dies the connection is lost: requests do nothing, replies are null.
class X11Connection {
public:
    /// Opens a display, named as in DISPLAY; an empty name is what DISPLAY says. Null where there
    /// is none, or none with the XKB extension.
    static std::unique_ptr<X11Connection> open(const std::string& displayName);
    ~X11Connection();
    X11Connection(const X11Connection&) = delete;
    X11Connection& operator=(const X11Connection&) = delete;

    operator xcb_connection_t*() const { return m_xcb; }
    int descriptor() const { return xcb_get_file_descriptor(m_xcb); }
    bool isLost() const { return xcb_connection_has_error(m_xcb) != 0; }
    const std::vector<xcb_window_t>& rootWindows() const { return m_rootWindows; }
    /// The XKB device that stands for all keyboards.
    int keyboard() const { return m_keyboard; }

    /// Returns once the server has done all that was asked of it.
    void synchronize();
    /// The next event that has arrived, null for none yet.
    XcbPointer<xcb_generic_event_t> nextEvent();
    /// The next event of those that were read along with others or with a reply.
    XcbPointer<xcb_generic_event_t> nextQueuedEvent();

    /// Whether the event says that keys or modifiers mean something else now.
    bool isMappingChange(const xcb_generic_event_t& event) const;
    /// The event as a change of the keyboard's group, null if it is another.
    const xcb_xkb_state_notify_event_t* groupChange(const xcb_generic_event_t& event) const;

private:
    explicit X11Connection(xcb_connection_t* xcb);

    xcb_connection_t* m_xcb;
    std::vector<xcb_window_t> m_rootWindows;
    std::uint8_t m_firstXkbEvent = 0;
    int m_keyboard = -1;
};

/// What kind of event it is, whether the server or another client sent it.
inline int eventType(const xcb_generic_event_t& event) { return event.response_type & 0x7f; }

} // namespace kw

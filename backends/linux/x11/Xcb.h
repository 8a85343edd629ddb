// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// The headers of xcb, as C++ can read them.
#pragma once

#include <xcb/xcb.h>

// A name in this C header.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

#include <cstdlib>
#include <memory>

namespace kw {

struct XcbFree {
    void operator()(void* memory) const { std::free(memory); }
};

/// Owns a reply, an event or an error.
template <class T>
using XcbPointer = std::unique_ptr<T, XcbFree>;

/// Waits for a request's reply: `xcbReply(xcb_query_keymap_reply, connection, cookie)`. Null when
/// the server refused or is gone.
template <class Reply, class Cookie>
XcbPointer<Reply> xcbReply(Reply* (*receive)(xcb_connection_t*, Cookie, xcb_generic_error_t**),
    xcb_connection_t* connection, Cookie cookie) {
    xcb_generic_error_t* error = nullptr;
    XcbPointer<Reply> reply(receive(connection, cookie, &error));
    std::free(error);
    return reply;
}

} // namespace kw

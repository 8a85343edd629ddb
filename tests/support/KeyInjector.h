// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <backends/linux/x11/Xcb.h>

#include <cstdint>
#include <string>
#include <vector>

namespace kw::test {

/// Another client of the display: presses keys and moves the mouse (by the XTEST extension),
/// switches what is locked, and competes for combinations. Each call returns after the server has
/// done it.
class KeyInjector {
public:
    explicit KeyInjector(const std::string& displayName);
    ~KeyInjector();
    KeyInjector(const KeyInjector&) = delete;
    KeyInjector& operator=(const KeyInjector&) = delete;

    /// The key that gives this keysym alone, 0 for none.
    xcb_keycode_t keyCode(xcb_keysym_t keysym) const;

    void press(xcb_keysym_t keysym) { fake(XCB_KEY_PRESS, keysym); }
    void release(xcb_keysym_t keysym) { fake(XCB_KEY_RELEASE, keysym); }
    /// In the order given.
    void press(const std::vector<xcb_keysym_t>& keysyms);
    void release(const std::vector<xcb_keysym_t>& keysyms);
    /// Presses the keys in order and releases them in reverse.
    void type(std::vector<xcb_keysym_t> keysyms);

    /// To a place on the screen.
    void moveMouse(int x, int y);
    /// The left button.
    void click();
    void holdButton(bool isDown);

    /// Locks these of the server's modifiers and no others.
    void lockModifiers(std::uint8_t modifiers);
    void lockGroup(std::uint8_t group);
    /// The keys of Shift, Lock, Control, Mod1 to Mod5.
    void setModifierKeys(const std::vector<std::vector<xcb_keysym_t>>& keysyms);

    /// Takes a combination. False if it is taken, or partly.
    bool grab(xcb_keysym_t keysym, std::uint16_t modifiers);
    void ungrab(xcb_keysym_t keysym, std::uint16_t modifiers);
    /// How many presses this client was sent since it was last asked.
    int takePresses();

private:
    void fake(std::uint8_t type, xcb_keysym_t keysym);
    void synchronize();

    xcb_connection_t* m_xcb;
    xcb_window_t m_root;
};

} // namespace kw::test

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/x11/X11Modifiers.h>

#include <KWToolkit/platform/services/HotkeyService.h>

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <initializer_list>
#include <span>

namespace kw {

namespace {

/// The keys of each modifier and what is printed on them.
class ModifierKeys {
public:
    explicit ModifierKeys(xcb_connection_t* connection) {
        const xcb_setup_t& setup = *xcb_get_setup(connection);
        const auto keysymsRequest = xcb_get_keyboard_mapping(connection, setup.min_keycode,
            static_cast<std::uint8_t>(setup.max_keycode - setup.min_keycode + 1));
        const auto modifiersRequest = xcb_get_modifier_mapping(connection);
        m_firstKeyCode = setup.min_keycode;
        m_keysyms = xcbReply(xcb_get_keyboard_mapping_reply, connection, keysymsRequest);
        m_modifiers = xcbReply(xcb_get_modifier_mapping_reply, connection, modifiersRequest);
    }

    /// The bit of the modifier among Mod1 to Mod5 that has a key with the first of these keysyms
    /// that any has; 0 for none.
    std::uint16_t bitOf(std::initializer_list<xcb_keysym_t> keysyms) const {
        for (const xcb_keysym_t keysym : keysyms) {
            for (int modifier = XCB_MAP_INDEX_1; modifier <= XCB_MAP_INDEX_5; ++modifier) {
                if (std::ranges::any_of(keyCodesOf(modifier),
                        [&](auto keyCode) { return hasKeysym(keyCode, keysym); }))
                    return static_cast<std::uint16_t>(1 << modifier);
            }
        }
        return 0;
    }

private:
    std::span<const xcb_keycode_t> keyCodesOf(int modifier) const {
        if (!m_modifiers)
            return {};
        const std::size_t count = m_modifiers->keycodes_per_modifier;
        return {xcb_get_modifier_mapping_keycodes(m_modifiers.get()) + modifier * count, count};
    }

    bool hasKeysym(xcb_keycode_t keyCode, xcb_keysym_t keysym) const {
        if (!m_keysyms || keyCode < m_firstKeyCode) // an empty place in the mapping is key code 0
            return false;
        const std::size_t count = m_keysyms->keysyms_per_keycode;
        const std::span keysyms(
            xcb_get_keyboard_mapping_keysyms(m_keysyms.get()) + (keyCode - m_firstKeyCode) * count,
            count);
        return std::ranges::find(keysyms, keysym) != keysyms.end();
    }

    xcb_keycode_t m_firstKeyCode;
    XcbPointer<xcb_get_keyboard_mapping_reply_t> m_keysyms;
    XcbPointer<xcb_get_modifier_mapping_reply_t> m_modifiers;
};

} // namespace

X11Modifiers X11Modifiers::of(xcb_connection_t* connection) {
    const ModifierKeys keys(connection);
    X11Modifiers modifiers;
    if (const auto bit = keys.bitOf({XKB_KEY_Super_L, XKB_KEY_Super_R}))
        modifiers.command = bit;
    if (const auto bit = keys.bitOf({XKB_KEY_Alt_L, XKB_KEY_Alt_R}))
        modifiers.option = bit;
    modifiers.locks |= keys.bitOf({XKB_KEY_Num_Lock}) | keys.bitOf({XKB_KEY_Scroll_Lock});
    modifiers.locks &= ~(modifiers.command | modifiers.option);
    return modifiers;
}

std::uint16_t X11Modifiers::bits(std::uint32_t hotkeyModifiers) const {
    return static_cast<std::uint16_t>((hotkeyModifiers & hotkeyCommandMask ? command : 0)
        | (hotkeyModifiers & hotkeyOptionMask ? option : 0)
        | (hotkeyModifiers & hotkeyControlMask ? XCB_MOD_MASK_CONTROL : 0)
        | (hotkeyModifiers & hotkeyShiftMask ? XCB_MOD_MASK_SHIFT : 0));
}

std::vector<std::uint16_t> X11Modifiers::bitsWithLocks(std::uint16_t bits) const {
    std::vector<std::uint16_t> all {bits};
    // Each subset of the locks, from the largest down.
    for (std::uint16_t subset = locks; subset != 0; subset = (subset - 1) & locks)
        all.push_back(bits | subset);
    return all;
}

} // namespace kw

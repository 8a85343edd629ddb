// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/x11/XkbKeyboardLayout.h>

#include <KWToolkit/platform/services/Clock.h>

#include <xkbcommon/xkbcommon-x11.h>

#include <utility>

namespace kw {

namespace {

constexpr double attemptInterval = 2; // seconds

} // namespace

XkbKeyboardLayout::XkbKeyboardLayout(std::string displayName)
    : m_displayName(std::move(displayName))
    , m_context(xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES)) { }

XkbKeyboardLayout::~XkbKeyboardLayout() = default;

char16_t XkbKeyboardLayout::characterForKeyCode(std::uint16_t keyCode, bool shift) {
    followServer();
    if (!m_state)
        return 0;
    xkb_keymap* const keymap = xkb_state_get_keymap(m_state.get());
    const xkb_mod_index_t shiftIndex = xkb_keymap_mod_get_index(keymap, XKB_MOD_NAME_SHIFT);
    const xkb_mod_mask_t held = shift && shiftIndex != XKB_MOD_INVALID ? 1u << shiftIndex : 0;
    xkb_state_update_mask(m_state.get(), held, 0, 0, 0, 0, m_group);
    const char32_t character = xkb_state_key_get_utf32(m_state.get(), keyCode);
    return character <= 0xFFFF ? static_cast<char16_t>(character) : 0;
}

void XkbKeyboardLayout::followServer() {
    if (!m_connection && SteadyClock().now() >= m_nextAttempt) {
        m_connection = X11Connection::open(m_displayName);
        m_nextAttempt = SteadyClock().now() + attemptInterval;
    }
    if (!m_connection)
        return;
    while (const auto event = m_connection->nextEvent()) {
        if (m_connection->isMappingChange(*event))
            m_state.reset();
        else if (const auto* change = m_connection->groupChange(*event))
            m_group = change->group;
    }
    if (!m_state)
        readLayout();
    if (m_connection->isLost()) {
        m_connection.reset();
        m_state.reset();
    }
}

void XkbKeyboardLayout::readLayout() {
    const std::unique_ptr<xkb_keymap, Release<xkb_keymap_unref>> keymap(
        xkb_x11_keymap_new_from_device(
            m_context.get(), *m_connection, m_connection->keyboard(), XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!keymap)
        return;
    m_state.reset(
        xkb_x11_state_new_from_device(keymap.get(), *m_connection, m_connection->keyboard()));
    if (m_state)
        m_group = xkb_state_serialize_layout(m_state.get(), XKB_STATE_LAYOUT_EFFECTIVE);
}

} // namespace kw

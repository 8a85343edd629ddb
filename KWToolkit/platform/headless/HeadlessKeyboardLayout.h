// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/KeyboardLayout.h>

#include <map>

namespace kw {

/// A layout given as a table.
class KW_EXPORT HeadlessKeyboardLayout final : public KeyboardLayout {
public:
    struct Key {
        char16_t plain = 0;
        char16_t shifted = 0;
    };

    explicit HeadlessKeyboardLayout(std::map<std::uint16_t, Key> keys = {})
        : m_keys(std::move(keys)) { }

    void setKey(std::uint16_t keyCode, Key key) { m_keys[keyCode] = key; }

    char16_t characterForKeyCode(std::uint16_t keyCode, bool shift = false) override;

private:
    std::map<std::uint16_t, Key> m_keys;
};

} // namespace kw

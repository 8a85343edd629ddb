// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstring>
#include <memory>
#include <string_view>

namespace kw {

/// A line put together for one message: on the stack unless it is long.
class LogLine {
public:
    LogLine() = default;
    LogLine(const LogLine&) = delete;
    LogLine& operator=(const LogLine&) = delete;

    LogLine& operator<<(std::string_view text) {
        if (m_capacity - m_size < text.size())
            grow(text.size());
        std::memcpy(m_text + m_size, text.data(), text.size());
        m_size += text.size();
        return *this;
    }
    LogLine& operator<<(char character) { return *this << std::string_view(&character, 1); }

    operator std::string_view() const { return {m_text, m_size}; }

private:
    void grow(std::size_t count) {
        const std::size_t capacity = m_size + count + m_capacity;
        auto room = std::make_unique_for_overwrite<char[]>(capacity);
        std::memcpy(room.get(), m_text, m_size);
        m_text = room.get();
        m_capacity = capacity;
        m_longRoom = std::move(room);
    }

    std::array<char, 1024> m_room;
    std::unique_ptr<char[]> m_longRoom;
    char* m_text = m_room.data();
    std::size_t m_size = 0;
    std::size_t m_capacity = m_room.size();
};

} // namespace kw

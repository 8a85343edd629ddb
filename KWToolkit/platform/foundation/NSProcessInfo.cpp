// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSProcessInfo.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <exception>
#include <random>

namespace kw {

namespace {

std::uint64_t drawn() {
    try {
        std::random_device random;
        return std::uint64_t {random()} << 32 | random();
    } catch (const std::exception&) {
        // Without random numbers: the place that the system gave the process in its memory.
        static const char place = 0;
        return reinterpret_cast<std::uintptr_t>(&place);
    }
}

void appendHex(std::string& text, std::uint64_t number) {
    for (int shift = 60; shift >= 0; shift -= 4)
        text += "0123456789ABCDEF"[number >> shift & 0xF];
}

} // namespace

std::string NSProcessInfo::globallyUniqueString() {
    static const std::uint64_t process = drawn();
    static std::atomic<std::uint64_t> count = 0;
    // The time is what tells a forked process from its parent.
    const auto time = std::chrono::system_clock::now().time_since_epoch().count();
    std::string text;
    text.reserve(50);
    appendHex(text, process);
    text += '-';
    appendHex(text, static_cast<std::uint64_t>(time));
    text += '-';
    appendHex(text, ++count);
    return text;
}

} // namespace kw

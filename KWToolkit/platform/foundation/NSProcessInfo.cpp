// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSProcessInfo.h>

#include <atomic>
#include <chrono>
#include <cstddef>
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

constexpr std::size_t digits = 16;

void writeHex(char* text, std::uint64_t number) {
    for (std::size_t i = digits; i-- > 0; number /= 16)
        text[i] = "0123456789ABCDEF"[number % 16];
}

} // namespace

std::string NSProcessInfo::globallyUniqueString() {
    static const std::uint64_t process = drawn();
    static std::atomic<std::uint64_t> count = 0;
    // The time is what tells a forked process from its parent.
    const auto time = std::chrono::system_clock::now().time_since_epoch().count();
    std::string text(3 * digits + 2, '-');
    writeHex(text.data(), process);
    writeHex(text.data() + digits + 1, static_cast<std::uint64_t>(time));
    writeHex(text.data() + 2 * (digits + 1), ++count);
    return text;
}

} // namespace kw

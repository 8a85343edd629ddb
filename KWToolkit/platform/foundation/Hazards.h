// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Reading without locks what others change: hazard pointers, after M. M. Michael, "Hazard Pointers:
// Safe Memory Reclamation for Lock-Free Objects" (IEEE TPDS 15, 2004). Private to the foundation.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace kw::detail {

/// What a thread has pinned. Records are never freed; a thread that ends leaves its to another.
struct HazardRecord {
    static constexpr std::size_t slotCount = 8;
    struct Slot {
        std::atomic<const void*> pinned = nullptr;
        std::atomic<std::uint64_t> endedPins = 0;
    };

    std::array<Slot, slotCount> slots;
    std::atomic<bool> isAsked = false; // to free what was retired, when it unpins something
    std::atomic<bool> isTaken = true;
    std::size_t depth = 0; // the thread's own
    HazardRecord* next = nullptr;

    /// The calling thread's.
    static HazardRecord& own();
};

/// Keeps what is reached from `what` while a thread walks through it. What is read there, and what
/// is changed there before something is retired, is sequentially consistent. Pins nest; those of a
/// thread end in reverse order.
class HazardPin {
public:
    explicit HazardPin(const void* what)
        : m_record(HazardRecord::own()) {
        const std::size_t depth = m_record.depth++;
        if (depth < HazardRecord::slotCount - 1) [[likely]]
            m_record.slots[depth].pinned.exchange(what);
        else
            pinEverything();
    }
    ~HazardPin() {
        const std::size_t depth = --m_record.depth;
        if (depth < HazardRecord::slotCount) {
            auto& [pinned, endedPins] = m_record.slots[depth];
            pinned.store(nullptr, std::memory_order_release);
            endedPins.store(
                endedPins.load(std::memory_order_relaxed) + 1, std::memory_order_release);
        }
        if (m_record.isAsked.load(std::memory_order_relaxed)) [[unlikely]]
            free();
    }
    HazardPin(const HazardPin&) = delete;
    HazardPin& operator=(const HazardPin&) = delete;

private:
    void pinEverything();
    void free();

    HazardRecord& m_record;
};

/// Whether some thread may have it pinned.
bool isPinned(const void* what);

/// Releases `item`, which cannot be reached from `what` any more, once no pin of that is left which
/// there is now; others may come and go.
/// No locks may be held that a destructor of the item's might take.
void retire(const void* what, std::shared_ptr<void> item);

} // namespace kw::detail

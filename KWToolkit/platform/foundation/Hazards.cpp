// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/Hazards.h>

#include <algorithm>
#include <iterator>
#include <mutex>
#include <utility>
#include <vector>

namespace kw::detail {

namespace {

/// How often one looks whether a thread that was asked was leaving: that is seen soon. Should it be
/// missed all the same, the next one that is asked frees what is left.
constexpr int looks = 16;

constinit std::atomic<HazardRecord*> newestRecord = nullptr;

// Pinned by a thread that has more pins than slots.
constexpr char everything = 0;

[[gnu::tls_model("initial-exec")]] constinit thread_local HazardRecord* ownRecord = nullptr;

/// Gives the record back when the thread ends.
struct RecordLease {
    ~RecordLease() {
        if (HazardRecord* const record = std::exchange(ownRecord, nullptr))
            record->isTaken.store(false, std::memory_order_release);
    }
};

HazardRecord& takeRecord() {
    for (auto* record = newestRecord.load(); record; record = record->next) {
        bool isTaken = false;
        if (record->isTaken.compare_exchange_strong(isTaken, true))
            return *record;
    }
    auto* const record = new HazardRecord;
    record->next = newestRecord.load();
    while (!newestRecord.compare_exchange_weak(record->next, record)) { }
    return *record;
}

/// A pin that was there when something was retired.
struct SeenPin {
    HazardRecord* record;
    const HazardRecord::Slot* slot;
    std::uint64_t endedPins;

    bool isOver() const { return slot->endedPins.load(std::memory_order_acquire) != endedPins; }
};
using SeenPins = std::vector<SeenPin>;

SeenPins pinsOf(const void* what) {
    SeenPins pins;
    for (auto* record = newestRecord.load(); record; record = record->next) {
        for (const auto& slot : record->slots) {
            const void* const pinned = slot.pinned.load();
            if (pinned == what || pinned == &everything)
                pins.push_back({record, &slot, slot.endedPins.load()});
        }
    }
    return pins;
}

bool areOver(const SeenPins& pins) { return std::ranges::all_of(pins, &SeenPin::isOver); }

/// Has the threads that still pin it free what is retired when they leave.
void ask(const SeenPins& pins) {
    for (const SeenPin& pin : pins) {
        if (!pin.isOver())
            pin.record->isAsked.store(true);
    }
}

struct Retired {
    SeenPins pins;
    std::shared_ptr<void> item;
};

struct RetiredItems {
    std::mutex mutex;
    std::vector<Retired> items;
};
RetiredItems& retired() {
    static auto& all = *new RetiredItems;
    return all;
}

void freeWhatCanBe() {
    std::vector<Retired> freed; // ends outside the lock: what dies may come back here
    const std::lock_guard lock(retired().mutex);
    auto& items = retired().items;
    const auto over = std::ranges::partition(items, [](const Retired& kept) {
        ask(kept.pins);
        return !areOver(kept.pins);
    });
    freed.assign(std::move_iterator(over.begin()), std::move_iterator(over.end()));
    items.erase(over.begin(), over.end());
}

} // namespace

HazardRecord& HazardRecord::own() {
    if (!ownRecord) [[unlikely]] {
        ownRecord = &takeRecord();
        thread_local const RecordLease lease;
    }
    return *ownRecord;
}

void HazardPin::pinEverything() {
    if (m_record.depth == HazardRecord::slotCount)
        m_record.slots.back().pinned.exchange(&everything);
}

void HazardPin::free() {
    if (m_record.isAsked.exchange(false))
        freeWhatCanBe();
}

bool isPinned(const void* what) {
    for (const auto* record = newestRecord.load(); record; record = record->next) {
        for (const auto& slot : record->slots) {
            const void* const pinned = slot.pinned.load();
            if (pinned == what || pinned == &everything)
                return true;
        }
    }
    return false;
}

void retire(const void* what, std::shared_ptr<void> item) {
    const SeenPins pins = pinsOf(what);
    ask(pins);
    {
        const std::lock_guard lock(retired().mutex);
        retired().items.push_back({pins, std::move(item)});
    }
    const bool isOwn =
        std::ranges::any_of(pins, [](const SeenPin& pin) { return pin.record == ownRecord; });
    for (int look = 0; look < looks && !isOwn; ++look) {
        if (areOver(pins)) {
            freeWhatCanBe();
            return;
        }
    }
}

} // namespace kw::detail

// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/Hazards.h>

#include <algorithm>
#include <mutex>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kw::detail {

namespace {

/// How often one looks whether a thread that was asked had left before: its leaving is seen soon.
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

template <class Call>
bool anyThatPins(const void* what, Call call) {
    bool isAny = false;
    for (auto* record = newestRecord.load(); record; record = record->next) {
        const bool pins = std::ranges::any_of(record->slots, [what](const auto& slot) {
            const void* const pinned = slot.load();
            return pinned == what || pinned == &everything;
        });
        if (pins) {
            call(*record);
            isAny = true;
        }
    }
    return isAny;
}

/// Has the threads that pin it free what is retired when they leave. Returns false where none does
/// any more.
bool ask(const void* what) {
    anyThatPins(what, [](HazardRecord& record) { record.isAsked.store(true); });
    bool isOwnAlone = false;
    for (int look = 0; look < looks && !isOwnAlone; ++look) {
        isOwnAlone = true;
        if (!anyThatPins(what, [&](const HazardRecord& record) {
                isOwnAlone = isOwnAlone && &record == ownRecord;
            }))
            return false;
    }
    return true;
}

using Items = std::vector<std::shared_ptr<void>>;

struct RetiredItems {
    std::mutex mutex;
    std::unordered_map<const void*, Items> items; // by what they were reached from
};
RetiredItems& retired() {
    static auto& all = *new RetiredItems;
    return all;
}

void freeWhatCanBe() {
    std::vector<Items> freed; // ends outside the lock: what dies may come back here
    const std::lock_guard lock(retired().mutex);
    std::erase_if(retired().items, [&](auto& entry) {
        if (ask(entry.first))
            return false;
        freed.push_back(std::move(entry.second));
        return true;
    });
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
        m_record.slots.back().exchange(&everything);
}

void HazardPin::free() {
    if (m_record.isAsked.exchange(false))
        freeWhatCanBe();
}

bool isPinned(const void* what) {
    return anyThatPins(what, [](const HazardRecord&) { });
}

void retire(const void* what, std::shared_ptr<void> item) {
    {
        const std::lock_guard lock(retired().mutex);
        retired().items[what].push_back(std::move(item));
    }
    if (!ask(what))
        freeWhatCanBe();
}

} // namespace kw::detail

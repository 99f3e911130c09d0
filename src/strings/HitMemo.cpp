// HitMemo.cpp: linear probing over slots that hold a fingerprint and a key's offset. No key
// is kept twice, found keys are at most one for each row and missed ones one for every
// sixteen rows, and there are five slots for every four rows, so every probe ends at an
// empty slot.
#include "strings/HitMemo.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace Framework::Internal {

void HitMemo::Prepare(const KeyRows& rows) {
    const std::size_t count = rows.size();
    if (count == 0 || count >= UINT32_MAX)
        return;
    const std::size_t wanted = count + count / 4 + 1;
    slots.reset(static_cast<Slot*>(std::calloc(wanted, sizeof(Slot))));
    if (!slots)
        return; // no memo: every look-up searches, as without one
    capacity = wanted;
    table = &rows;
    // Found keys fill at most four slots of five, missed ones at most a sixteenth more.
    missedLimit = count / 16;
}

bool HitMemo::SameKey(const char* at, QanStringViewT<char> key) {
    // The slot's key ends at the first comma from at, which the scan of the row found: the
    // search for it reads no further than that comma, and the bytes are compared only when
    // the two keys are of one length.
    return std::memchr(at, ',', key.size() + 1) == at + key.size() &&
           std::memcmp(at, key.data(), key.size()) == 0;
}

bool HitMemo::SameMissedKey(std::size_t offset, QanStringViewT<char> key) const {
    std::uint32_t length;
    std::memcpy(&length, missed.get() + offset, sizeof length);
    return length == key.size() &&
           std::memcmp(missed.get() + offset + sizeof length, key.data(), key.size()) == 0;
}

void HitMemo::RememberMiss(std::uint64_t hash, QanStringViewT<char> key) {
    if (!slots || !MayRememberMiss() || key.size() > UINT32_MAX)
        return;
    // The copies take at most 64 bytes a key on average; a longer key waits for room.
    const std::size_t need = sizeof(std::uint32_t) + key.size();
    if (!missed) {
        missedBytes = std::min<std::size_t>(missedLimit * 64, UINT32_MAX - 1);
        missed.reset(new (std::nothrow) char[missedBytes]);
        if (!missed) {
            missedLimit = 0;
            return;
        }
    }
    if (missedBytes - missedUsed < need)
        return;
    const auto fingerprint = static_cast<std::uint32_t>(hash >> 32);
    for (std::size_t at = First(hash);; at = at + 1 == capacity ? 0 : at + 1) {
        Slot& slot = slots[at];
        const std::uint64_t head = slot.Head(std::memory_order_relaxed);
        if (head != 0) {
            // Another look-up of the same key remembered it since this one's Find.
            if (static_cast<std::uint32_t>(head >> 32) == fingerprint && slot.Missed() &&
                SameMissedKey(static_cast<std::uint32_t>(head) - std::size_t{1}, key))
                return;
            continue;
        }
        const auto length = static_cast<std::uint32_t>(key.size());
        std::memcpy(missed.get() + missedUsed, &length, sizeof length);
        if (!key.empty())
            std::memcpy(missed.get() + missedUsed + sizeof length, key.data(), key.size());
        // The copy and the mark first, then the head that makes the slot found.
        slot.SetText(kMissed);
        std::atomic_ref<std::uint64_t>(slot.head).store(
            (hash >> 32) << 32 | (std::uint64_t{missedUsed} + 1), std::memory_order_release);
        missedUsed += need;
        missedCount.fetch_add(1, std::memory_order_relaxed);
        return;
    }
}

HitMemo::Slot* HitMemo::Remember(std::uint64_t hash, std::size_t row) {
    if (!slots)
        return nullptr;
    const std::uint64_t wanted = (hash >> 32) << 32 | (std::uint64_t{table->KeyOffset(row)} + 1);
    for (std::size_t at = First(hash);; at = at + 1 == capacity ? 0 : at + 1) {
        Slot& slot = slots[at];
        const std::uint64_t head = slot.Head(std::memory_order_relaxed);
        if (head == wanted)
            return &slot; // remembered by another look-up since this one's Find
        if (head != 0)
            continue;
        std::atomic_ref<std::uint64_t>(slot.head).store(wanted, std::memory_order_release);
        return &slot;
    }
}

} // namespace Framework::Internal

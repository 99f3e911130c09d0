// HitMemo.cpp: linear probing over slots that hold a fingerprint and a key's offset. No key
// is kept twice and there are five slots for every four rows, so every probe ends at an
// empty slot.
#include "strings/HitMemo.h"

#include <cstring>

namespace Framework::Internal {

HitMemo::HitMemo(const KeyRows& rows) {
    const std::size_t count = rows.size();
    if (count == 0 || count >= UINT32_MAX)
        return;
    const std::size_t wanted = count + count / 4 + 1;
    slots.reset(static_cast<Slot*>(std::calloc(wanted, sizeof(Slot))));
    if (!slots)
        return; // no memo: every look-up searches, as without one
    capacity = wanted;
    table = &rows;
}

bool HitMemo::SameKey(const char* at, QanStringViewT<char> key) {
    // The slot's key ends at the first comma from at, which the scan of the row found: the
    // search for it reads no further than that comma, and the bytes are compared only when
    // the two keys are of one length.
    return std::memchr(at, ',', key.size() + 1) == at + key.size() &&
           std::memcmp(at, key.data(), key.size()) == 0;
}

HitMemo::Slot* HitMemo::Remember(std::uint64_t hash, std::size_t row) {
    if (!slots)
        return nullptr;
    const std::uint64_t wanted = (hash >> 32) << 32 | (std::uint64_t{table->At(row).keyOffset} + 1);
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

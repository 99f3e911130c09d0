// HitMemo.cpp: linear probing over slots that hold a fingerprint, a row and where the row's
// key lies. No row is kept twice and there are at least four slots for every three rows,
// so every probe ends at an empty slot.
#include "strings/HitMemo.h"

#include "base/HashBytes.h"
#include "base/Prefetch.h"

#include <cstring>

namespace Framework::Internal {

HitMemo::HitMemo(const KeyRows& rows) {
    const std::size_t count = rows.size();
    if (count == 0 || count >= UINT32_MAX)
        return;
    std::size_t capacity = 8;
    while (capacity < count + count / 3)
        capacity *= 2;
    slots.reset(static_cast<Slot*>(std::calloc(capacity, sizeof(Slot))));
    if (!slots)
        return; // no memo: every look-up searches, as without one
    mask = capacity - 1;
    table = &rows;
}

HitMemo::Slot* HitMemo::Find(QanStringViewT<char> key, std::uint64_t hash) const {
    if (!slots)
        return nullptr;
    const std::uint32_t fingerprint = HashFingerprint(hash);
    const char* base = table->Bytes();
    for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
        Slot& slot = slots[at];
        const std::uint64_t head = slot.Head(std::memory_order_acquire);
        if (head == 0)
            return nullptr;
        if (static_cast<std::uint32_t>(head >> 32) != fingerprint || slot.keyLength != key.size())
            continue;
        Prefetch(slot.text.Bytes());
        // A slot holds the key its row was found by; another key with the same fingerprint
        // differs in its bytes.
        if (std::memcmp(base + slot.keyOffset, key.data(), key.size()) == 0)
            return &slot;
    }
}

HitMemo::Slot* HitMemo::Remember(std::uint64_t hash, std::size_t row) {
    if (!slots)
        return nullptr;
    const std::uint64_t wanted = static_cast<std::uint64_t>(HashFingerprint(hash)) << 32 |
                                 static_cast<std::uint64_t>(row + 1);
    for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
        Slot& slot = slots[at];
        const std::uint64_t head = slot.Head(std::memory_order_relaxed);
        if (head == wanted)
            return &slot; // remembered by another look-up since this one's Find
        if (head != 0)
            continue;
        slot.keyOffset = table->At(row).keyOffset;
        slot.keyLength = table->At(row).keyLength;
        std::atomic_ref<std::uint64_t>(slot.head).store(wanted, std::memory_order_release);
        return &slot;
    }
}

} // namespace Framework::Internal

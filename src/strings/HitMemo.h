// HitMemo.h: each hit key's place in a key table, remembered at the key's first hit
// together with its text, so that a later hit of that key reads one slot, the key's bytes
// and the text's bytes, and searches nothing.
#pragma once

#include "strings/KeyRows.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace Framework::Internal {

// A found key is remembered with the row the table's own search answered (by that row's key
// offset), so the memo can never answer differently from it: not for unsorted tables, not
// for equal keys.
//
// Keys the search misses are remembered too, up to a bound (one for every sixteen rows, with
// their bytes copied), since a host asks for the same missing key again and again (a button
// without a tooltip, a legacy text asked first as a plain string); past the bound a miss
// keeps costing a search. A remembered miss can never turn into a hit: the table never
// changes.
//
// A slot is 16 bytes. It names its key by offset only: a key table's key runs to the first
// comma of its row, so the wanted key is the slot's key exactly when the first comma from
// the offset lies the wanted key's length away and the bytes before it are the wanted key.
//
// Find may run on any thread without a lock, beside Remember; Remember calls must not
// overlap (the owner calls it under its lock). A slot's head is written once, from empty to
// its final value, with release ordering, and read with acquire ordering. The text word is
// the owner's, read and written under the owner's lock, except that Find reads it (atomically)
// to ask early for the text's bytes. The table's rows and bytes must not change while the
// memo lives.
//
// The slots are allocated zeroed and whole at the table's first look-up, but the system
// hands out their pages only as hits first write them, so a kind that is asked for a few
// keys holds a few pages, and the first look-up costs no pass over the slots.
class HitMemo {
public:
    // Plain data, so that zeroed memory is a table of empty slots.
    struct Slot {
        std::uint64_t head; // fingerprint << 32 | key offset + 1; 0 while empty; atomic
        std::uint64_t text; // the owner's word for the key's text; 0 when the slot is made;
                            // kMissed for a key the search missed (its offset is then into
                            // the memo's own copies)

        std::uint64_t Head(std::memory_order order) const {
            return std::atomic_ref<std::uint64_t>(const_cast<std::uint64_t&>(head)).load(order);
        }
        std::uint64_t Text() const {
            return std::atomic_ref<std::uint64_t>(const_cast<std::uint64_t&>(text))
                .load(std::memory_order_relaxed);
        }
        void SetText(std::uint64_t word) {
            std::atomic_ref<std::uint64_t>(text).store(word, std::memory_order_relaxed);
        }
        bool Missed() const { return Text() == kMissed; }
    };
    // The text word of a missed key's slot; the owner's words never set its top bit.
    static constexpr std::uint64_t kMissed = std::uint64_t{1} << 63;

    HitMemo() = default;
    HitMemo(const HitMemo&) = delete;
    HitMemo& operator=(const HitMemo&) = delete;

    // Makes room for every row of table, once, before any other call. A table of UINT32_MAX
    // rows or more gets no memo, and Find then always answers null.
    void Prepare(const KeyRows& table);

    // The slot remembered for key, whose hash is HashBytes over its bytes, or null. Before
    // a slot's key bytes are compared, onCandidate(slot) may ask for what the slot leads to.
    // Example: memo.Find(key, HashBytes(key.data(), key.size()), [](const Slot&) {}).
    template <class OnCandidate>
    Slot* Find(QanStringViewT<char> key, std::uint64_t hash, OnCandidate&& onCandidate) const;

    // The slot of row, found by the table's search for the key of that hash: the one made
    // earlier, or a new one. Null when there is no memo.
    Slot* Remember(std::uint64_t hash, std::size_t row);

    // Remembers that the table's search missed key, whose hash is given, while the bound
    // allows. Called under the owner's lock, like Remember.
    void RememberMiss(std::uint64_t hash, QanStringViewT<char> key);
    // Whether RememberMiss may still keep a key: a look-up asks before taking the lock.
    bool MayRememberMiss() const {
        return missedCount.load(std::memory_order_relaxed) < missedLimit;
    }

private:
    struct Free {
        void operator()(Slot* slots) const { std::free(slots); }
    };

    std::size_t First(std::uint64_t hash) const {
        // The hash's low half scaled to the slot count (which need not be a power of two).
        return static_cast<std::size_t>((hash & 0xFFFFFFFFu) * capacity >> 32);
    }
    static bool SameKey(const char* at, QanStringViewT<char> key);
    // A missed key's copy: its length (four bytes) and its bytes, from offset in missed.
    bool SameMissedKey(std::size_t offset, QanStringViewT<char> key) const;

    const KeyRows* table = nullptr;
    std::unique_ptr<Slot[], Free> slots;
    std::size_t capacity = 0;
    // Missed keys' copies, appended under the owner's lock and never moved.
    std::unique_ptr<char[]> missed;
    std::size_t missedUsed = 0;
    std::size_t missedBytes = 0;
    std::atomic<std::size_t> missedCount{0};
    std::size_t missedLimit = 0;
};

template <class OnCandidate>
HitMemo::Slot* HitMemo::Find(QanStringViewT<char> key, std::uint64_t hash,
                             OnCandidate&& onCandidate) const {
    if (!slots)
        return nullptr;
    const auto fingerprint = static_cast<std::uint32_t>(hash >> 32);
    for (std::size_t at = First(hash);; at = at + 1 == capacity ? 0 : at + 1) {
        Slot& slot = slots[at];
        const std::uint64_t head = slot.Head(std::memory_order_acquire);
        if (head == 0)
            return nullptr;
        if (static_cast<std::uint32_t>(head >> 32) != fingerprint)
            continue;
        const std::size_t offset = static_cast<std::uint32_t>(head) - std::size_t{1};
        if (slot.Missed()) {
            if (SameMissedKey(offset, key))
                return &slot;
            continue;
        }
        onCandidate(static_cast<const Slot&>(slot));
        if (SameKey(table->Bytes() + offset, key))
            return &slot;
    }
}

} // namespace Framework::Internal

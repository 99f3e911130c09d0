// HitMemo.h: each key's row in a key table, remembered at the key's first hit together
// with where its key and its text lie, so that a later hit of that key reads one slot, the
// key's bytes and the text's bytes, and searches nothing.
#pragma once

#include "strings/KeyRows.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace Framework::Internal {

// A key's text as last found, for its owner's use. The owner reads and writes it only under
// its own lock. The memo only asks for the bytes' cache line while it compares the key, so
// that the two misses overlap; that read is why bytes is atomic.
struct RememberedText {
    std::atomic<const char*> bytes{nullptr};
    std::uint32_t length = 0;
    std::uint32_t state = 0; // the owner's; 0 when the slot is made
};

// Only rows that the table's own search answered are remembered, each for the key it was
// found by, so the memo can never answer differently from that search: not for unsorted
// tables, not for equal keys (the row the search picked is the one kept). Keys the search
// misses are not remembered and keep costing a search.
//
// Find may run on any thread without a lock, beside Remember; Remember calls must not
// overlap (the owner calls it under its lock). A slot is filled once, its key first and then
// its row, which is published with release ordering and read with acquire ordering. The
// table's rows and bytes must not change while the memo lives.
class HitMemo {
public:
    struct Slot {
        std::atomic<std::uint64_t> head{0}; // fingerprint << 32 | row + 1; 0 while empty
        std::uint32_t keyOffset = 0;        // of the row's key in the table's bytes
        std::uint32_t keyLength = 0;
        RememberedText text;

        std::size_t Row() const {
            return static_cast<std::uint32_t>(head.load(std::memory_order_relaxed)) -
                   std::size_t{1};
        }
    };

    HitMemo() = default;
    // Room for every row of table; allocated now. A table of UINT32_MAX rows or more gets no
    // memo, and Find then always answers null.
    explicit HitMemo(const KeyRows& table);

    // The slot remembered for key, whose hash is HashBytes over its bytes, or null.
    // Example: memo.Find(key, HashBytes(key.data(), key.size())).
    Slot* Find(QanStringViewT<char> key, std::uint64_t hash) const;

    // The slot of row, found by the table's search for the key of that hash: the one made
    // earlier, or a new one. Null when there is no memo.
    Slot* Remember(std::uint64_t hash, std::size_t row);

private:
    const KeyRows* table = nullptr;
    std::unique_ptr<Slot[]> slots;
    std::size_t mask = 0;
};

} // namespace Framework::Internal

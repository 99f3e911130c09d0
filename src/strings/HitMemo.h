// HitMemo.h: each key's row in a key table, remembered at the key's first hit together
// with where its key and its text lie, so that a later hit of that key reads one slot, the
// key's bytes and the text's bytes, and searches nothing.
#pragma once

#include "strings/KeyRows.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace Framework::Internal {

// A key's text as last found, for its owner's use. The owner reads and writes it only under
// its own lock. The memo only asks for the bytes' cache line while it compares the key, so
// that the two misses overlap; that read is why bytes goes through an atomic reference.
struct RememberedText {
    const char* bytes;
    std::uint32_t length;
    std::uint32_t state; // the owner's; 0 when the slot is made

    const char* Bytes() const {
        return std::atomic_ref<const char*>(const_cast<const char*&>(bytes))
            .load(std::memory_order_relaxed);
    }
    void SetBytes(const char* at) {
        std::atomic_ref<const char*>(bytes).store(at, std::memory_order_relaxed);
    }
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
//
// The slots are allocated zeroed and whole at the table's first look-up, but the system
// hands out their pages only as hits first write them, so a kind that is asked for a few
// keys holds a few pages, and the first look-up costs no pass over the slots.
class HitMemo {
public:
    // Plain data, so that zeroed memory is a table of empty slots.
    struct Slot {
        std::uint64_t head;      // fingerprint << 32 | row + 1; 0 while empty; atomic
        std::uint32_t keyOffset; // of the row's key in the table's bytes
        std::uint32_t keyLength;
        RememberedText text;

        std::uint64_t Head(std::memory_order order) const {
            return std::atomic_ref<std::uint64_t>(const_cast<std::uint64_t&>(head)).load(order);
        }
        std::size_t Row() const {
            return static_cast<std::uint32_t>(Head(std::memory_order_relaxed)) - std::size_t{1};
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
    struct Free {
        void operator()(Slot* slots) const { std::free(slots); }
    };

    const KeyRows* table = nullptr;
    std::unique_ptr<Slot[], Free> slots;
    std::size_t mask = 0;
};

} // namespace Framework::Internal

// SnapshotReaders.cpp: the process-wide slot table. Slots sit on cache lines of their own,
// so that threads announcing their snapshots never contend.
#include "legacy/SnapshotReaders.h"

#include <cstddef>

namespace Framework::Internal::SnapshotSlots {
namespace {

struct alignas(64) Slot {
    std::atomic<bool> owned{false};
    std::atomic<const void*> reading{nullptr};
};

// More threads than this looking up at once read under the registrations' lock.
constexpr std::size_t kSlots = 256;
Slot slots[kSlots];

// A thread's claim on its slot. A thread that ends gives the slot back (where the
// runtime runs thread-exit destructors; where it does not, the slot stays claimed and
// idle, which costs a slot, never correctness: an idle slot announces nothing).
struct Claim {
    Slot* slot = nullptr;
    ~Claim() {
        if (slot) {
            slot->reading.store(nullptr, std::memory_order_release);
            slot->owned.store(false, std::memory_order_release);
        }
    }
};

} // namespace

std::atomic<const void*>* ThreadSlot() {
    thread_local Claim claim;
    if (!claim.slot) {
        for (Slot& slot : slots) {
            bool expected = false;
            if (!slot.owned.load(std::memory_order_relaxed) &&
                slot.owned.compare_exchange_strong(expected, true, std::memory_order_acquire)) {
                claim.slot = &slot;
                break;
            }
        }
        if (!claim.slot)
            return nullptr;
    }
    return &claim.slot->reading;
}

bool IsRead(const void* snapshot) {
    for (const Slot& slot : slots)
        if (slot.reading.load(std::memory_order_seq_cst) == snapshot)
            return true;
    return false;
}

} // namespace Framework::Internal::SnapshotSlots

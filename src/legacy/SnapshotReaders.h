// SnapshotReaders.h: lets a look-up read an immutable snapshot that registrations replace,
// without a lock or a shared reference count, and lets the registration that replaced a
// snapshot free it as soon as no look-up reads it any more.
//
// Each looking-up thread owns a slot in a process-wide table and announces in it the
// snapshot it reads (the classic hazard pointer). A registration publishes its new
// snapshot first and then frees every retired one that no slot announces. Both sides use
// sequentially consistent operations: a look-up announces, then checks that the snapshot
// is still the current one; a registration publishes, then reads the slots. So either
// the registration sees the announcement, or the look-up sees the new snapshot and
// announces that one instead. A look-up costs one store to its own slot and one load
// more than an unguarded read; threads that look up write nothing they share.
#pragma once

#include <atomic>
#include <mutex>

namespace Framework::Internal {

namespace SnapshotSlots {

// The calling thread's slot, claimed at its first look-up and given back when the thread
// ends; null when every slot is taken (the look-up then reads under the registrations'
// lock instead).
std::atomic<const void*>* ThreadSlot();

// Whether any thread announces that it reads snapshot.
bool IsRead(const void* snapshot);

} // namespace SnapshotSlots

// The current snapshot, safe to read for the life of this object. A thread reads one
// snapshot at a time: pins do not nest.
template <class T>
class PinnedSnapshot {
public:
    PinnedSnapshot(const std::atomic<const T*>& current, std::mutex& registrations)
        : slot(SnapshotSlots::ThreadSlot()) {
        if (!slot) {
            lock = std::unique_lock(registrations);
            snapshot = current.load(std::memory_order_acquire);
            return;
        }
        const T* announced = current.load(std::memory_order_seq_cst);
        for (;;) {
            slot->store(announced, std::memory_order_seq_cst);
            const T* now = current.load(std::memory_order_seq_cst);
            if (now == announced)
                break;
            announced = now;
        }
        snapshot = announced;
    }
    ~PinnedSnapshot() {
        if (slot)
            slot->store(nullptr, std::memory_order_release);
    }
    PinnedSnapshot(const PinnedSnapshot&) = delete;
    PinnedSnapshot& operator=(const PinnedSnapshot&) = delete;

    const T& operator*() const { return *snapshot; }

private:
    std::atomic<const void*>* slot;
    std::unique_lock<std::mutex> lock;
    const T* snapshot = nullptr;
};

} // namespace Framework::Internal

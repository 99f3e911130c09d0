// LegacyResourceCollection.h: the registry of legacy components' modules and registrar
// tables, and the operating system's stock icons under fixed keys.
#pragma once

#include "base/Collections.h"

#include <atomic>
#include <memory>

namespace Framework::Internal {

// Look-ups may run on any number of threads while one registers: each look-up reads one
// published state of the tables and modules, from before or after any registration, and
// takes no lock. Registrations take turns on a lock of their own, and free each replaced
// state as soon as no look-up reads it.
class LegacyResourceCollection final : public LegacyCollection {
public:
    LegacyResourceCollection();
    // Never frees a module: hosts own theirs, and stock-icon modules stay loaded.
    ~LegacyResourceCollection() override;
    LegacyResourceCollection(const LegacyResourceCollection&) = delete;
    LegacyResourceCollection& operator=(const LegacyResourceCollection&) = delete;

    std::optional<Resources::ResourceID> GetResource(const QanStringT<wchar_t>& key,
                                                     Resources::ResourceType type) const override;
    void AddResources(const wchar_t* component, const Resources::RegistrarMapEntry* entries,
                      int count, Resources::ResourceType type) override;
    void AddComponent(const wchar_t* component, HINSTANCE module) override;
    void RemoveComponent(const wchar_t* component) override;

    // Registers the shell's stock icon stockIconId under key; nothing when the system
    // cannot describe it.
    void AddStockIcon(int stockIconId, const wchar_t* key);

private:
    struct Snapshot;
    struct Registry;
    // What look-ups read: the latest published snapshot, never null.
    std::atomic<const Snapshot*> current;
    // What registrations write, under its lock; owns the snapshots.
    std::unique_ptr<Registry> registry;
};

} // namespace Framework::Internal

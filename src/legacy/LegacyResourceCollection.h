// LegacyResourceCollection.h: the registry of legacy components' modules and registrar
// tables, and the operating system's stock icons under fixed keys.
#pragma once

#include "base/Collections.h"

#include <memory>

namespace Framework::Internal {

class LegacyResourceCollection final : public LegacyCollection {
public:
    LegacyResourceCollection();
    // Never frees a module: hosts own theirs, and stock-icon modules stay loaded.
    ~LegacyResourceCollection() override;

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
    struct Tables;
    std::unique_ptr<Tables> tables;
};

} // namespace Framework::Internal

// IconResourceCollection.h: icon keys to icon and PNG paths through "icons.map.xml".
#pragma once

#include "base/Collections.h"
#include "icons/IconMapScan.h"

#include <framework/LoadReport.h>

#include <memory>
#include <vector>

namespace Framework::Internal {

class IconResourceCollection final : public IdCollection {
public:
    IconResourceCollection();
    ~IconResourceCollection() override;

    std::optional<Resources::ResourceID> GetResource(const QanStringT<wchar_t>& key) const override;
    // GetResource writing the fields of a hit into hit, a default ResourceID that a miss
    // leaves untouched; answers whether the key was found.
    bool Find(const QanStringT<wchar_t>& key, Resources::ResourceID& hit) const;

    // The map in file order.
    const std::vector<IconMapEntry>& Entries() const;
    // Replaces the map; set once at service construction, before any look-up.
    void SetEntries(std::vector<IconMapEntry> entries);

private:
    struct State;
    std::unique_ptr<State> state;
};

// Replaces entries with the map read from path (through ScanIconMap); a missing file or
// a rejected map leaves entries as they were. When record is given it receives what was
// read, for the load report.
void LoadIconMap(std::vector<IconMapEntry>& entries, const wchar_t* path,
                 LoadReport::FileRecord* record = nullptr);

// The platform's own icon collection: always empty, and still asked by GetIcon.
std::unique_ptr<IdCollection> LoadPlatformIconResourceCollection();

} // namespace Framework::Internal

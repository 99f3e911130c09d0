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

    // The map in file order; filled once by LoadIconMap at service construction.
    std::vector<IconMapEntry>& Entries() { return *entries; }

private:
    std::unique_ptr<std::vector<IconMapEntry>> entries;
};

// Replaces entries with the map read from path (through ScanIconMap); a missing file or
// a rejected map leaves entries as they were. When record is given it receives what was
// read, for the load report.
void LoadIconMap(std::vector<IconMapEntry>& entries, const wchar_t* path,
                 LoadReport::FileRecord* record = nullptr);

// The platform's own icon collection: always empty, and still asked by GetIcon.
std::unique_ptr<IdCollection> LoadPlatformIconResourceCollection();

} // namespace Framework::Internal

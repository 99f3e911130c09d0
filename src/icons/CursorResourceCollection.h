// CursorResourceCollection.h: cursor keys to (module, resource id) through the cursor
// table stored as raw-data resource 2 of the platform icon library "QanIcons.dll".
#pragma once

#include "base/Collections.h"

#include <framework/LoadReport.h>

#include <memory>

namespace Framework::Internal {

class CursorResourceCollection final : public IdCollection {
public:
    CursorResourceCollection();
    // Releases the platform icon library if one was loaded.
    ~CursorResourceCollection() override;

    std::optional<Resources::ResourceID> GetResource(const QanStringT<wchar_t>& key) const override;
    // GetResource writing the fields of a hit into hit, a default ResourceID that a miss
    // leaves untouched; answers whether the key was found.
    bool Find(const QanStringT<wchar_t>& key, Resources::ResourceID& hit) const;

    // Takes ownership of module (may be null) and, when it is loaded, reads its cursor
    // table. A negative stored count throws std::length_error, as sizing a vector does.
    // When record is given it receives what was read, for the load report.
    void LoadFromModule(HINSTANCE module, LoadReport::FileRecord* record = nullptr);

private:
    struct Record;
    std::unique_ptr<Record> record;
};

} // namespace Framework::Internal

#include "icons/CursorResourceCollection.h"

#include "platform/Platform.h"

// Placeholder until the cursor table lands: owns the module, knows no cursor.
namespace Framework::Internal {

struct CursorResourceCollection::Record {
    HINSTANCE module = nullptr;
    std::vector<CursorEntry> entries;
};

CursorResourceCollection::CursorResourceCollection() : record(std::make_unique<Record>()) {}

CursorResourceCollection::~CursorResourceCollection() {
    if (record->module)
        Platform::CurrentPlatform().FreeModule(record->module);
}

std::optional<Resources::ResourceID>
CursorResourceCollection::GetResource(const QanStringT<wchar_t>&) const {
    return std::nullopt;
}

void CursorResourceCollection::LoadFromModule(HINSTANCE module) { record->module = module; }

} // namespace Framework::Internal

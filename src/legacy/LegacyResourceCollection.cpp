#include "legacy/LegacyResourceCollection.h"

// Placeholder until the legacy registry lands.
namespace Framework::Internal {

struct LegacyResourceCollection::Tables {};

LegacyResourceCollection::LegacyResourceCollection() : tables(std::make_unique<Tables>()) {}
LegacyResourceCollection::~LegacyResourceCollection() = default;

void LegacyResourceCollection::GetResource(std::optional<Resources::ResourceID>& out,
                                           const QanStringT<wchar_t>&,
                                           Resources::ResourceType) const {
    out.reset();
}
void LegacyResourceCollection::AddResources(const wchar_t*, const Resources::RegistrarMapEntry*,
                                            int, Resources::ResourceType) {}
void LegacyResourceCollection::AddComponent(const wchar_t*, HINSTANCE) {}
void LegacyResourceCollection::RemoveComponent(const wchar_t*) {}
void LegacyResourceCollection::AddStockIcon(int, const wchar_t*) {}

} // namespace Framework::Internal

#include "icons/IconResourceCollection.h"

// Placeholder until the icon map lands.
namespace Framework::Internal {

IconResourceCollection::IconResourceCollection()
    : entries(std::make_unique<std::vector<IconMapEntry>>()) {}
IconResourceCollection::~IconResourceCollection() = default;

std::optional<Resources::ResourceID>
IconResourceCollection::GetResource(const QanStringT<wchar_t>&) const {
    return std::nullopt;
}

void LoadIconMap(std::vector<IconMapEntry>&, const wchar_t*) {}

std::unique_ptr<IdCollection> LoadPlatformIconResourceCollection() {
    class EmptyCollection final : public IdCollection {
    public:
        std::optional<Resources::ResourceID> GetResource(const QanStringT<wchar_t>&) const override {
            return std::nullopt;
        }
    };
    return std::make_unique<EmptyCollection>();
}

} // namespace Framework::Internal

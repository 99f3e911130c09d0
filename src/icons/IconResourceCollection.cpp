// IconResourceCollection.cpp: icon keys to paths through the icon map. The map is kept in
// file order and searched by bisection; it is never sorted here.
#include "icons/IconResourceCollection.h"

#include "base/Settings.h"
#include "icons/PathKind.h"
#include "platform/Path.h"

#include <algorithm>
#include <cwctype>

namespace Framework::Internal {
namespace {

// ".png.png" at the end, in any case: the file is a single PNG image whose real name
// keeps one ".png".
bool EndsWithDoublePng(const QanStringT<wchar_t>& name) {
    static constexpr QanStringViewT<wchar_t> suffix = L".png.png";
    if (name.size() < suffix.size())
        return false;
    const auto tail = QanStringViewT<wchar_t>(name).substr(name.size() - suffix.size());
    return std::equal(tail.begin(), tail.end(), suffix.begin(), [](wchar_t a, wchar_t b) {
        return std::towlower(static_cast<std::wint_t>(a)) == static_cast<std::wint_t>(b);
    });
}

// Exact order of keys, between entries and a searched key.
struct KeyOrder {
    bool operator()(const IconMapEntry& entry, const QanStringT<wchar_t>& key) const {
        return entry.key < key;
    }
    bool operator()(const QanStringT<wchar_t>& key, const IconMapEntry& entry) const {
        return key < entry.key;
    }
};

} // namespace

IconResourceCollection::IconResourceCollection()
    : entries(std::make_unique<std::vector<IconMapEntry>>()) {}
IconResourceCollection::~IconResourceCollection() = default;

std::optional<Resources::ResourceID>
IconResourceCollection::GetResource(const QanStringT<wchar_t>& key) const {
    const auto range = std::equal_range(entries->begin(), entries->end(), key, KeyOrder{});
    if (range.first == range.second)
        return std::nullopt;
    const QanStringT<wchar_t>& fileName = range.first->fileName;

    // The settings are read at look-up time, so a host that changes its directories
    // after construction sees new locations.
    const Settings& settings = ProcessSettings();
    const QanStringT<wchar_t> location =
        Path::Combine(settings.iconDirectory, settings.iconSubdirectory);
    const PathKind kind = GetPathKind(location);

    // A key in the map is a hit even when the location is neither file nor folder: the
    // caller then gets every field empty and no other collection is asked. Intended.
    Resources::ResourceID hit;
    if (!EndsWithDoublePng(fileName)) {
        if (kind == PathKind::File) {
            hit.containerPath = location;
            hit.iconPath = fileName;
        } else if (kind == PathKind::Folder) {
            hit.iconPath = Path::AddBackslash(Path::Combine(location, fileName));
        }
    } else {
        const auto shortName = QanStringViewT<wchar_t>(fileName).substr(0, fileName.size() - 4);
        if (kind == PathKind::File) {
            hit.containerPath = location;
            hit.pngPath = QanStringT<wchar_t>(shortName);
        } else if (kind == PathKind::Folder) {
            hit.pngPath = Path::Combine(location, shortName);
        }
    }
    return hit;
}

std::unique_ptr<IdCollection> LoadPlatformIconResourceCollection() {
    // The platform's own icons would be answered here; there are none, yet the service
    // still asks this collection, which is intended.
    class EmptyCollection final : public IdCollection {
    public:
        std::optional<Resources::ResourceID>
        GetResource(const QanStringT<wchar_t>&) const override {
            return std::nullopt;
        }
    };
    return std::make_unique<EmptyCollection>();
}

} // namespace Framework::Internal

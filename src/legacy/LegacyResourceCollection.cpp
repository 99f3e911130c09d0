// LegacyResourceCollection.cpp: the registrar tables of legacy components (sorted by key
// after every registration), their module handles, and the shell's stock icons.
#include "legacy/LegacyResourceCollection.h"

#include "platform/Platform.h"

#include <algorithm>
#include <map>
#include <vector>

namespace Framework::Internal {
namespace {

// One registered key: the id inside the component's module, or for workspace icons the
// icon file path in text.
struct LegacyEntry {
    QanStringT<wchar_t> key;
    int id = 0;
    QanStringT<wchar_t> component;
    QanStringT<wchar_t> text;
};

// useCount and loadedHere are recorded for stock-icon modules but read by nothing:
// modules stay loaded for the life of the process.
struct LegacyModule {
    HINSTANCE module = nullptr;
    std::uint64_t useCount = 0;
    bool loadedHere = false;
};

struct KeyOrder {
    bool operator()(const LegacyEntry& a, const LegacyEntry& b) const { return a.key < b.key; }
    bool operator()(const LegacyEntry& a, const QanStringT<wchar_t>& key) const {
        return a.key < key;
    }
    bool operator()(const QanStringT<wchar_t>& key, const LegacyEntry& b) const {
        return key < b.key;
    }
};

// Hosts may pass null where a name is expected; it reads as the empty name.
QanStringT<wchar_t> TextOf(const wchar_t* text) {
    return text ? QanStringT<wchar_t>(text) : QanStringT<wchar_t>();
}

// Workspace icons are registered under this component with id 0 and their file path.
constexpr QanStringViewT<wchar_t> kWorkspaceIconComponent = L"wkspIcon";

} // namespace

struct LegacyResourceCollection::Tables {
    std::vector<LegacyEntry> stringEntries;
    std::vector<LegacyEntry> iconEntries;
    std::vector<LegacyEntry> cursorEntries;
    std::map<QanStringT<wchar_t>, LegacyModule> modules;

    // The table of a resource type; none for values outside Icon, Cursor and String.
    std::vector<LegacyEntry>* Select(Resources::ResourceType type) {
        switch (type) {
        case Resources::Icon:
            return &iconEntries;
        case Resources::Cursor:
            return &cursorEntries;
        case Resources::String:
            return &stringEntries;
        }
        return nullptr;
    }
    const std::vector<LegacyEntry>* Select(Resources::ResourceType type) const {
        return const_cast<Tables*>(this)->Select(type);
    }
};

LegacyResourceCollection::LegacyResourceCollection() : tables(std::make_unique<Tables>()) {}

// Deliberately frees no module: hosts own theirs, and stock-icon modules stay loaded.
LegacyResourceCollection::~LegacyResourceCollection() = default;

std::optional<Resources::ResourceID>
LegacyResourceCollection::GetResource(const QanStringT<wchar_t>& key,
                                      Resources::ResourceType type) const {
    const std::vector<LegacyEntry>* table = tables->Select(type);
    if (!table)
        return std::nullopt;
    const auto range = std::equal_range(table->begin(), table->end(), key, KeyOrder{});
    if (range.first == range.second)
        return std::nullopt;
    // A key registered more than once answers with whichever entry the sort left first.
    const LegacyEntry& entry = *range.first;
    Resources::ResourceID result;
    if (entry.id == 0) {
        // Workspace icons carry their path; id 0 under any other component is a present,
        // empty answer. The rule holds in every table.
        if (entry.component == kWorkspaceIconComponent)
            result.pngPath = entry.text;
        return result;
    }
    result.id = entry.id;
    if (entry.component.empty())
        return result;
    // A component never added, or removed since, leaves the module null.
    const auto module = tables->modules.find(entry.component);
    if (module != tables->modules.end())
        result.module = module->second.module;
    return result;
}

void LegacyResourceCollection::AddResources(const wchar_t* component,
                                            const Resources::RegistrarMapEntry* entries, int count,
                                            Resources::ResourceType type) {
    std::vector<LegacyEntry>* table = tables->Select(type);
    if (!table)
        return;
    // No check for duplicate keys or unregistered components: hosts register what they
    // have, and look-ups take the first entry of a key.
    if (entries && count > 0) {
        const QanStringT<wchar_t> name = TextOf(component);
        table->reserve(table->size() + static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i)
            table->push_back({TextOf(entries[i].key), entries[i].id, name, entries[i].text});
    }
    // Sorted after every call, also when nothing was added.
    std::sort(table->begin(), table->end(), KeyOrder{});
}

void LegacyResourceCollection::AddComponent(const wchar_t* component, HINSTANCE module) {
    LegacyModule& record = tables->modules[TextOf(component)];
    // Registering again replaces the handle; the use count means nothing here.
    record.module = module;
    record.loadedHere = false;
}

void LegacyResourceCollection::RemoveComponent(const wchar_t* component) {
    // The component's entries stay registered and answer with a null module from now on;
    // its module is the caller's to free.
    tables->modules.erase(TextOf(component));
}

void LegacyResourceCollection::AddStockIcon(int stockIconId, const wchar_t* key) {
    const Platform::IPlatform& platform = Platform::CurrentPlatform();
    Platform::StockIconLocation location;
    if (!platform.GetStockIconLocation(stockIconId, location))
        return;
    LegacyModule& record = tables->modules[location.modulePath];
    if (!record.module) {
        // A module that fails to load stays null; the icon is registered all the same.
        record.module = platform.LoadModule(location.modulePath.c_str());
        record.useCount = 0;
        record.loadedHere = true;
    }
    ++record.useCount;
    // The shell reports a resource id as a negative index; negated, it is the id.
    // Negated in unsigned arithmetic so that no index can overflow.
    const int id = static_cast<int>(0u - static_cast<unsigned>(location.iconIndex));
    const Resources::RegistrarMapEntry entry{key, id, {}};
    AddResources(location.modulePath.c_str(), &entry, 1, Resources::Icon);
}

} // namespace Framework::Internal

// LegacyResourceCollection.cpp: the registrar tables of legacy components (sorted by key
// after every registration), their module handles, and the shell's stock icons.
//
// Registrations may come while other threads look up (hosts load plug-ins late, with
// windows already asking for tooltips). A look-up therefore reads an immutable snapshot
// of the three tables and the module map, found through one atomic pointer; a
// registration copies what it changes into a new snapshot and publishes it with one
// store, under a lock that serialises registrations against each other. A look-up pins
// the snapshot it reads (SnapshotReaders.h), and a registration frees each replaced
// snapshot once no look-up pins it, so memory stays that of the current tables plus the
// few snapshots still being read. The entries themselves are stored once and never move
// (a deque only grows at its end); a snapshot holds an index of key views and entry
// pointers per table, and shares the tables it leaves unchanged with the one before.
#include "legacy/LegacyResourceCollection.h"

#include "base/KeyIndex.h"
#include "legacy/SnapshotReaders.h"

#include "platform/Platform.h"

#include <algorithm>
#include <deque>
#include <map>
#include <mutex>
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

// A table row as the index holds it: the entry's key (viewing the stored entry's own
// string) beside the entry, so that the search reads the index and the key texts only.
struct IndexEntry {
    QanStringViewT<wchar_t> key;
    const LegacyEntry* entry;
};

// A table: its rows sorted by key, and each distinct key's first row in that order (the
// entry a look-up answers with) found by hash. Both are made at the registration that
// changes the table; a look-up probes the hash only.
struct Index {
    std::vector<IndexEntry> rows;
    KeyIndex<const LegacyEntry*> firstOfKey;
};
using ModuleMap = std::map<QanStringT<wchar_t>, LegacyModule>;

struct KeyOrder {
    bool operator()(const IndexEntry& a, const IndexEntry& b) const { return a.key < b.key; }
};

// Hosts may pass null where a name is expected; it reads as the empty name.
QanStringT<wchar_t> TextOf(const wchar_t* text) {
    return text ? QanStringT<wchar_t>(text) : QanStringT<wchar_t>();
}

// Workspace icons are registered under this component with id 0 and their file path.
constexpr QanStringViewT<wchar_t> kWorkspaceIconComponent = L"wkspIcon";

} // namespace

// One state of the collection. Published snapshots are never changed; a registration
// shares the parts it leaves alone with the snapshot before it.
struct LegacyResourceCollection::Snapshot {
    std::shared_ptr<const Index> stringEntries = std::make_shared<const Index>();
    std::shared_ptr<const Index> iconEntries = std::make_shared<const Index>();
    std::shared_ptr<const Index> cursorEntries = std::make_shared<const Index>();
    std::shared_ptr<const ModuleMap> modules = std::make_shared<const ModuleMap>();

    // The table of a resource type; none for values outside Icon, Cursor and String.
    std::shared_ptr<const Index>* Select(Resources::ResourceType type) {
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
    const Index* Select(Resources::ResourceType type) const {
        const std::shared_ptr<const Index>* table = const_cast<Snapshot*>(this)->Select(type);
        return table ? table->get() : nullptr;
    }
};

struct LegacyResourceCollection::Registry {
    std::mutex lock; // held by every registration, never by a look-up
    // Every entry ever registered, in registration order; a deque never moves its
    // elements as it grows, so the indexes' pointers and key views stay valid.
    std::deque<LegacyEntry> entries;
    // The current snapshot, and those replaced while a look-up still pinned them.
    std::unique_ptr<const Snapshot> latest;
    std::vector<std::unique_ptr<const Snapshot>> retired;

    // Makes next the state every later look-up reads, then frees every replaced snapshot
    // that no look-up pins. The sequentially consistent store orders the publication
    // before the scan of the pins (see SnapshotReaders.h), and like a release store lets
    // whoever finds the pointer see everything it points to.
    void Publish(Snapshot next, std::atomic<const Snapshot*>& current) {
        auto published = std::make_unique<const Snapshot>(std::move(next));
        current.store(published.get(), std::memory_order_seq_cst);
        if (latest)
            retired.push_back(std::move(latest));
        latest = std::move(published);
        std::erase_if(retired, [](const std::unique_ptr<const Snapshot>& snapshot) {
            return !SnapshotSlots::IsRead(snapshot.get());
        });
    }

    // Appends the entries to the table of next. A table is sorted after every call, also
    // when nothing was added: the sort may reorder equal keys, so this decides which of
    // them a look-up answers with. False when the table came out unchanged.
    bool AddEntries(Snapshot& next, const wchar_t* component,
                    const Resources::RegistrarMapEntry* added, int count,
                    Resources::ResourceType type) {
        std::shared_ptr<const Index>* table = next.Select(type);
        if (!table)
            return false;
        std::vector<IndexEntry> index;
        const std::size_t adding = added && count > 0 ? static_cast<std::size_t>(count) : 0;
        index.reserve((*table)->rows.size() + adding);
        index.assign((*table)->rows.begin(), (*table)->rows.end());
        // No check for duplicate keys or unregistered components: hosts register what
        // they have, and look-ups take the first entry of a key.
        if (adding > 0) {
            const QanStringT<wchar_t> name = TextOf(component);
            for (std::size_t i = 0; i < adding; ++i) {
                const LegacyEntry& entry = entries.emplace_back(
                    LegacyEntry{TextOf(added[i].key), added[i].id, name, added[i].text});
                index.push_back({entry.key, &entry});
            }
        }
        std::sort(index.begin(), index.end(), KeyOrder{});
        const auto sameEntry = [](const IndexEntry& a, const IndexEntry& b) {
            return a.entry == b.entry;
        };
        if (adding == 0 && std::equal(index.begin(), index.end(), (*table)->rows.begin(),
                                      (*table)->rows.end(), sameEntry))
            return false;
        std::vector<std::pair<QanStringViewT<wchar_t>, const LegacyEntry*>> firsts;
        for (std::size_t i = 0; i < index.size(); ++i)
            if (i == 0 || index[i].key != index[i - 1].key)
                firsts.emplace_back(index[i].key, index[i].entry);
        *table = std::make_shared<const Index>(
            Index{std::move(index), KeyIndex<const LegacyEntry*>(firsts)});
        return true;
    }
};

LegacyResourceCollection::LegacyResourceCollection() : registry(std::make_unique<Registry>()) {
    registry->Publish(Snapshot{}, current);
}

// Deliberately frees no module: hosts own theirs, and stock-icon modules stay loaded.
LegacyResourceCollection::~LegacyResourceCollection() = default;

std::optional<Resources::ResourceID>
LegacyResourceCollection::GetResource(const QanStringT<wchar_t>& key,
                                      Resources::ResourceType type) const {
    // One snapshot: the table and the module map below belong to the same registration,
    // and no registration frees them before this look-up ends.
    const PinnedSnapshot<Snapshot> pinned(current, registry->lock);
    const Snapshot& snapshot = *pinned;
    const Index* table = snapshot.Select(type);
    if (!table)
        return std::nullopt;
    // A key registered more than once answers with whichever entry the sort left first.
    const LegacyEntry* const* first = table->firstOfKey.Find(key);
    if (!first)
        return std::nullopt;
    const LegacyEntry& entry = **first;
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
    const auto module = snapshot.modules->find(entry.component);
    if (module != snapshot.modules->end())
        result.module = module->second.module;
    return result;
}

void LegacyResourceCollection::AddResources(const wchar_t* component,
                                            const Resources::RegistrarMapEntry* entries, int count,
                                            Resources::ResourceType type) {
    const std::lock_guard guard(registry->lock);
    // The lock orders this after the last publication, so a relaxed load finds it.
    Snapshot next = *current.load(std::memory_order_relaxed);
    if (registry->AddEntries(next, component, entries, count, type))
        registry->Publish(std::move(next), current);
}

void LegacyResourceCollection::AddComponent(const wchar_t* component, HINSTANCE module) {
    const std::lock_guard guard(registry->lock);
    Snapshot next = *current.load(std::memory_order_relaxed);
    const QanStringT<wchar_t> name = TextOf(component);
    const auto known = next.modules->find(name);
    if (known != next.modules->end() && known->second.module == module && !known->second.loadedHere)
        return;
    ModuleMap modules = *next.modules;
    LegacyModule& record = modules[name];
    // Registering again replaces the handle; the use count means nothing here.
    record.module = module;
    record.loadedHere = false;
    next.modules = std::make_shared<const ModuleMap>(std::move(modules));
    registry->Publish(std::move(next), current);
}

void LegacyResourceCollection::RemoveComponent(const wchar_t* component) {
    const std::lock_guard guard(registry->lock);
    Snapshot next = *current.load(std::memory_order_relaxed);
    // The component's entries stay registered and answer with a null module from now on;
    // its module is the caller's to free. A look-up that began before the removal may
    // still answer with the module, as it would had it run a moment earlier.
    const QanStringT<wchar_t> name = TextOf(component);
    if (!next.modules->contains(name))
        return;
    ModuleMap modules = *next.modules;
    modules.erase(name);
    next.modules = std::make_shared<const ModuleMap>(std::move(modules));
    registry->Publish(std::move(next), current);
}

void LegacyResourceCollection::AddStockIcon(int stockIconId, const wchar_t* key) {
    const Platform::IPlatform& platform = Platform::CurrentPlatform();
    Platform::StockIconLocation location;
    if (!platform.GetStockIconLocation(stockIconId, location))
        return;
    const std::lock_guard guard(registry->lock);
    Snapshot next = *current.load(std::memory_order_relaxed);
    ModuleMap modules = *next.modules;
    LegacyModule& record = modules[location.modulePath];
    if (!record.module) {
        // A module that fails to load stays null; the icon is registered all the same.
        record.module = platform.LoadModule(location.modulePath.c_str());
        record.useCount = 0;
        record.loadedHere = true;
    }
    ++record.useCount;
    next.modules = std::make_shared<const ModuleMap>(std::move(modules));
    // The shell reports a resource id as a negative index; negated, it is the id.
    // Negated in unsigned arithmetic so that no index can overflow.
    const int id = static_cast<int>(0u - static_cast<unsigned>(location.iconIndex));
    const Resources::RegistrarMapEntry entry{key, id, {}};
    registry->AddEntries(next, location.modulePath.c_str(), &entry, 1, Resources::Icon);
    // The module and its icon appear together.
    registry->Publish(std::move(next), current);
}

} // namespace Framework::Internal

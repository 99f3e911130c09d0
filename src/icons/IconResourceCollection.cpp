// IconResourceCollection.cpp: icon keys to paths through the icon map. The map is kept in
// file order and answers as a bisection over it does; it is never sorted here.
#include "icons/IconResourceCollection.h"

#include "base/KeyIndex.h"
#include "base/Settings.h"
#include "icons/PathKind.h"
#include "platform/Path.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <cwctype>
#include <mutex>
#include <unordered_set>

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

// What the bisection over the map answers for one key of the map.
struct Answer {
    static constexpr std::size_t kMiss = SIZE_MAX;
    std::size_t entry = kMiss; // the first entry of the equal range, or kMiss
    bool doublePng = false;    // that entry's file name ends with ".png.png"
};

// Path::AddBackslash(Path::Combine(base, name)), built in one allocation.
QanStringT<wchar_t> FolderPath(QanStringViewT<wchar_t> base, QanStringViewT<wchar_t> name) {
    QanStringT<wchar_t> path;
    path.reserve(base.size() + name.size() + 2);
    if (!base.empty()) {
        path.append(base);
        const bool baseEnds = Path::IsSeparator(base.back());
        const bool nameStarts = !name.empty() && Path::IsSeparator(name.front());
        if (baseEnds && nameStarts)
            name.remove_prefix(1);
        else if (!baseEnds && !nameStarts)
            path.push_back(Path::kSeparator);
    }
    path.append(name);
    if (!path.empty() && !Path::IsSeparator(path.back()))
        path.push_back(Path::kSeparator);
    return path;
}

// Equal texts, compared as bytes: cheaper than a character comparison that orders.
bool SameText(const QanStringT<wchar_t>& a, const QanStringT<wchar_t>& b) {
    return a.size() == b.size() &&
           (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(wchar_t)) == 0);
}

} // namespace

// The icon location as the settings gave it at some look-up, with its kind.
struct IconLocation {
    QanStringT<wchar_t> directory;
    QanStringT<wchar_t> subdirectory;
    QanStringT<wchar_t> path; // Path::Combine(directory, subdirectory)
    PathKind kind = PathKind::None;
};

struct IconResourceCollection::State {
    std::vector<IconMapEntry> entries;
    // Every key of the map to what the bisection over the map answers for it. A key that
    // is not in the map can never compare equal during the bisection, so it misses; for
    // the keys that are, the answer is computed at SetEntries by the same bisection, so
    // an unsorted map keeps missing the keys it missed and of equal keys the same entry
    // answers.
    KeyIndex<Answer> answers;

    // The location of the latest look-up. Readers only load the pointer, so look-ups on
    // several threads share no written memory; a changed setting publishes another one.
    std::atomic<const IconLocation*> current{nullptr};
    std::mutex locationsLock;
    // Every location published, kept until the collection goes: a reader may still hold
    // one. One per distinct pair of settings, as the path-kind cache keeps one per path.
    std::vector<std::unique_ptr<IconLocation>> locations;

    const IconLocation& Location();
};

// The kind is the path-kind cache's answer, which never changes once given (an empty
// path is always None), so keeping it here answers as asking the cache every time would.
const IconLocation& IconResourceCollection::State::Location() {
    // The settings are read at look-up time, so a host that changes its directories
    // after construction sees new locations.
    const Settings& settings = ProcessSettings();
    const IconLocation* latest = current.load(std::memory_order_acquire);
    if (latest && SameText(latest->directory, settings.iconDirectory) &&
        SameText(latest->subdirectory, settings.iconSubdirectory))
        return *latest;
    // The file system is asked outside the lock, as the path-kind cache asks it; of two
    // threads that race here the first to store wins and both answer what it stored.
    auto made = std::make_unique<IconLocation>();
    made->directory = settings.iconDirectory;
    made->subdirectory = settings.iconSubdirectory;
    made->path = Path::Combine(made->directory, made->subdirectory);
    made->kind = GetPathKind(made->path);
    std::lock_guard guard(locationsLock);
    for (const auto& known : locations)
        if (SameText(known->directory, made->directory) &&
            SameText(known->subdirectory, made->subdirectory)) {
            current.store(known.get(), std::memory_order_release);
            return *known;
        }
    current.store(made.get(), std::memory_order_release);
    locations.push_back(std::move(made));
    return *locations.back();
}

IconResourceCollection::IconResourceCollection() : state(std::make_unique<State>()) {}
IconResourceCollection::~IconResourceCollection() = default;

const std::vector<IconMapEntry>& IconResourceCollection::Entries() const {
    return state->entries;
}

void IconResourceCollection::SetEntries(std::vector<IconMapEntry> entries) {
    State& s = *state;
    s.entries = std::move(entries);
    std::unordered_set<QanStringViewT<wchar_t>> seen;
    std::vector<std::pair<QanStringViewT<wchar_t>, Answer>> keys;
    for (const IconMapEntry& entry : s.entries) {
        if (!seen.insert(entry.key).second)
            continue;
        const auto range =
            std::equal_range(s.entries.begin(), s.entries.end(), entry.key, KeyOrder{});
        Answer answer;
        if (range.first != range.second) {
            answer.entry = static_cast<std::size_t>(range.first - s.entries.begin());
            answer.doublePng = EndsWithDoublePng(range.first->fileName);
        }
        keys.emplace_back(entry.key, answer);
    }
    s.answers = KeyIndex<Answer>(keys);
}

std::optional<Resources::ResourceID>
IconResourceCollection::GetResource(const QanStringT<wchar_t>& key) const {
    std::optional<Resources::ResourceID> hit(std::in_place);
    if (!Find(key, *hit))
        return std::nullopt;
    return hit;
}

bool IconResourceCollection::Find(const QanStringT<wchar_t>& key,
                                  Resources::ResourceID& hit) const {
    const Answer* found = state->answers.Find(key);
    if (!found || found->entry == Answer::kMiss)
        return false;
    const QanStringT<wchar_t>& fileName = state->entries[found->entry].fileName;
    const IconLocation& location = state->Location();

    // A key in the map is a hit even when the location is neither file nor folder: the
    // caller then gets every field empty and no other collection is asked. Intended.
    if (!found->doublePng) {
        if (location.kind == PathKind::File) {
            hit.containerPath = location.path;
            hit.iconPath = fileName;
        } else if (location.kind == PathKind::Folder) {
            hit.iconPath = FolderPath(location.path, fileName);
        }
    } else {
        const auto shortName = QanStringViewT<wchar_t>(fileName).substr(0, fileName.size() - 4);
        if (location.kind == PathKind::File) {
            hit.containerPath = location.path;
            hit.pngPath = QanStringT<wchar_t>(shortName);
        } else if (location.kind == PathKind::Folder) {
            hit.pngPath = Path::Combine(location.path, shortName);
        }
    }
    return true;
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

// LegacyGuidIndex.cpp: builds the sorted index over the compiled-in legacy GUID table and
// answers (component, id) and id look-ups by binary search.
#include "legacy/LegacyGuidIndex.h"

#include "legacy/LegacyGuidTable.h"

#include <algorithm>
#include <cstring>
#include <cwchar>

namespace Framework::Internal {
namespace {

// Room for every row with some to spare, so the build never reallocates.
constexpr std::size_t kReservedRecords = 22000;

// By id (signed), then component in exact byte order. The GUID takes no part.
struct LegacyGuidOrder {
    bool operator()(const LegacyGuidRecord& a, const LegacyGuidRecord& b) const {
        if (a.id != b.id)
            return a.id < b.id;
        return a.component.compare(b.component) < 0;
    }
};

// Ids only: the equal range of one id covers all its components.
struct IdOrder {
    bool operator()(const LegacyGuidRecord& a, int id) const { return a.id < id; }
    bool operator()(int id, const LegacyGuidRecord& b) const { return id < b.id; }
};

} // namespace

LegacyGuidIndex BuildLegacyGuidIndex() {
    LegacyGuidIndex index;
    index.reserve(std::max(kReservedRecords, kLegacyGuidTableSize));
    for (std::size_t row = 0; row < kLegacyGuidTableSize; ++row) {
        const LegacyGuidEntry& entry = kLegacyGuidTable[row];
        index.push_back({static_cast<int>(entry.id),
                         QanStringViewT<char>(entry.component, std::strlen(entry.component)),
                         QanStringViewT<wchar_t>(entry.guid, std::wcslen(entry.guid))});
    }
    // Unstable on purpose: of two rows for the same pair, whichever lands first answers.
    std::sort(index.begin(), index.end(), LegacyGuidOrder{});
    return index;
}

std::optional<QanStringViewT<wchar_t>> FindLegacyGuid(const LegacyGuidIndex& index, int id,
                                                      QanStringViewT<char> component) {
    const LegacyGuidRecord key{id, component, {}};
    const auto range = std::equal_range(index.begin(), index.end(), key, LegacyGuidOrder{});
    if (range.first == range.second)
        return std::nullopt;
    // A row without a key is a present, empty answer, not a miss.
    return range.first->guid;
}

std::vector<QanStringViewT<char>> ComponentsWithId(const LegacyGuidIndex& index, int id) {
    const auto range = std::equal_range(index.begin(), index.end(), id, IdOrder{});
    std::vector<QanStringViewT<char>> components;
    components.reserve(static_cast<std::size_t>(range.second - range.first));
    for (auto it = range.first; it != range.second; ++it)
        components.push_back(it->component);
    return components;
}

} // namespace Framework::Internal

// LegacyGuidIndex.cpp: builds the sorted index over the compiled-in legacy GUID table and
// answers (component, id) and id look-ups: an id goes through a hash table to its run of
// records, a component by binary search within that run.
#include "legacy/LegacyGuidIndex.h"

#include "legacy/LegacyGuidTable.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <tuple>

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

// The slot an id's probe starts at, for a table of mask + 1 slots.
std::size_t IdHome(int id, std::size_t mask) {
    return static_cast<std::size_t>((static_cast<std::uint32_t>(id) * 0x9E3779B1u) >> 7) & mask;
}

} // namespace

LegacyGuidIndex::LegacyGuidIndex(std::vector<LegacyGuidRecord> sortedRecords)
    : records(std::move(sortedRecords)) {
    // An unsorted list keeps only the bisection, whose answers the table could not match;
    // so does a list too long for the table's record numbers.
    if (records.empty() || records.size() >= kEmpty ||
        !std::is_sorted(records.begin(), records.end(), LegacyGuidOrder{}))
        return;
    std::size_t ids = 1;
    for (std::size_t i = 1; i < records.size(); ++i)
        ids += records[i - 1].id != records[i].id;
    std::size_t slots = 2;
    while (slots < 2 * ids)
        slots *= 2;
    byId.resize(slots);
    const std::size_t mask = slots - 1;
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (i > 0 && records[i - 1].id == records[i].id)
            continue;
        std::size_t slot = IdHome(records[i].id, mask);
        while (byId[slot].first != kEmpty)
            slot = (slot + 1) & mask;
        byId[slot] = {records[i].id, static_cast<std::uint32_t>(i)};
    }
}

std::pair<const LegacyGuidRecord*, const LegacyGuidRecord*> LegacyGuidIndex::IdRange(int id) const {
    if (byId.empty()) {
        const auto range = std::equal_range(records.begin(), records.end(), id, IdOrder{});
        return {records.data() + (range.first - records.begin()),
                records.data() + (range.second - records.begin())};
    }
    const std::size_t mask = byId.size() - 1;
    for (std::size_t slot = IdHome(id, mask);; slot = (slot + 1) & mask) {
        const IdSlot& probe = byId[slot];
        if (probe.first == kEmpty)
            return {nullptr, nullptr};
        if (probe.id == id) {
            const LegacyGuidRecord* first = records.data() + probe.first;
            const LegacyGuidRecord* last = first + 1;
            const LegacyGuidRecord* end = records.data() + records.size();
            while (last != end && last->id == id)
                ++last;
            return {first, last};
        }
    }
}

LegacyGuidIndex BuildLegacyGuidIndex() {
    std::vector<LegacyGuidRecord> index;
    index.reserve(std::max(kReservedRecords, kLegacyGuidTableSize));
    for (std::size_t row = 0; row < kLegacyGuidTableSize; ++row) {
        const LegacyGuidEntry& entry = kLegacyGuidTable[row];
        index.push_back({static_cast<int>(entry.id),
                         QanStringViewT<char>(entry.component, std::strlen(entry.component)),
                         QanStringViewT<wchar_t>(entry.guid, std::wcslen(entry.guid))});
    }
    // Unstable on purpose: of two rows for the same pair, whichever lands first answers.
    std::sort(index.begin(), index.end(), LegacyGuidOrder{});
    return LegacyGuidIndex(std::move(index));
}

std::optional<QanStringViewT<wchar_t>> FindLegacyGuid(const LegacyGuidIndex& index, int id,
                                                      QanStringViewT<char> component) {
    // Within the records of the id, the bisection by component finds what the bisection
    // by (id, component) over all records finds: both are over sorted records.
    // Unsorted records keep the one bisection over them all.
    const LegacyGuidRecord* first = index.Records().data();
    const LegacyGuidRecord* last = first + index.size();
    if (index.Indexed())
        std::tie(first, last) = index.IdRange(id);
    const LegacyGuidRecord key{id, component, {}};
    const auto range = std::equal_range(first, last, key, LegacyGuidOrder{});
    if (range.first == range.second)
        return std::nullopt;
    // A row without a key is a present, empty answer, not a miss.
    return range.first->guid;
}

std::vector<QanStringViewT<char>> ComponentsWithId(const LegacyGuidIndex& index, int id) {
    const auto [first, last] = index.IdRange(id);
    std::vector<QanStringViewT<char>> components;
    components.reserve(static_cast<std::size_t>(last - first));
    for (auto it = first; it != last; ++it)
        components.push_back(it->component);
    return components;
}

} // namespace Framework::Internal

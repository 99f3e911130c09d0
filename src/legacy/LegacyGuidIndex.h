// LegacyGuidIndex.h: the sorted index over the compiled-in table that maps a legacy
// (component, integer id) pair to the GUID key under which its text now lives.
#pragma once

#include <framework/QanString.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <utility>
#include <vector>

namespace Framework::Internal {

// Views into the compiled-in table; nothing is copied.
struct LegacyGuidRecord {
    int id = 0;
    QanStringViewT<char> component;
    QanStringViewT<wchar_t> guid;
};

// Records sorted by id, then component (exact byte order). Answers as a bisection over
// the records does; when they are sorted, each id also leads straight to its records.
class LegacyGuidIndex {
public:
    LegacyGuidIndex() = default;
    LegacyGuidIndex(std::vector<LegacyGuidRecord> records);
    LegacyGuidIndex(std::initializer_list<LegacyGuidRecord> records)
        : LegacyGuidIndex(std::vector<LegacyGuidRecord>(records)) {}

    const std::vector<LegacyGuidRecord>& Records() const { return records; }
    std::size_t size() const { return records.size(); }
    std::size_t capacity() const { return records.capacity(); }
    const LegacyGuidRecord& operator[](std::size_t i) const { return records[i]; }

    // Whether the records are sorted, so that each id leads straight to its records.
    bool Indexed() const { return !byId.empty(); }
    // The records with this id, as the bisection by id over all records finds them.
    std::pair<const LegacyGuidRecord*, const LegacyGuidRecord*> IdRange(int id) const;

private:
    // One slot of the open-addressed table from an id to its first record.
    struct IdSlot {
        int id = 0;
        std::uint32_t first = kEmpty;
    };
    static constexpr std::uint32_t kEmpty = UINT32_MAX;

    std::vector<LegacyGuidRecord> records;
    // Filled only when the records are sorted, where the equal range of an id is exactly
    // the run of its records; a power of two of slots, at most half of them used.
    std::vector<IdSlot> byId;
};

// One record per table row, sorted by id, then component (exact byte order).
LegacyGuidIndex BuildLegacyGuidIndex();

// The GUID of the first record for (id, component); a row without a key gives a present,
// empty view.
std::optional<QanStringViewT<wchar_t>> FindLegacyGuid(const LegacyGuidIndex& index, int id,
                                                      QanStringViewT<char> component);
// Components of every record with this id, ascending; duplicated rows appear twice.
std::vector<QanStringViewT<char>> ComponentsWithId(const LegacyGuidIndex& index, int id);

} // namespace Framework::Internal

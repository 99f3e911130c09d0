// LegacyGuidIndex.h: the sorted index over the compiled-in table that maps a legacy
// (component, integer id) pair to the GUID key under which its text now lives.
#pragma once

#include <framework/QanString.h>

#include <optional>
#include <vector>

namespace Framework::Internal {

// Views into the compiled-in table; nothing is copied.
struct LegacyGuidRecord {
    int id = 0;
    QanStringViewT<char> component;
    QanStringViewT<wchar_t> guid;
};

using LegacyGuidIndex = std::vector<LegacyGuidRecord>;

// One record per table row, sorted by id, then component (exact byte order).
LegacyGuidIndex BuildLegacyGuidIndex();

// The GUID of the first record for (id, component); a row without a key gives a present,
// empty view.
std::optional<QanStringViewT<wchar_t>> FindLegacyGuid(const LegacyGuidIndex& index, int id,
                                                      QanStringViewT<char> component);
// Components of every record with this id, ascending; duplicated rows appear twice.
std::vector<QanStringViewT<char>> ComponentsWithId(const LegacyGuidIndex& index, int id);

} // namespace Framework::Internal

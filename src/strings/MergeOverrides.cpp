// MergeOverrides.cpp: one forward pass over both sorted tables. The cursor gallops
// (1, 2, 4 ... rows ahead) because overrides are few and far apart in a large table.
#include "strings/MergeOverrides.h"

#include <algorithm>
#include <cstddef>

namespace Framework::Internal {
namespace {

// Moves the cursor, whose id is less than key, to the first row whose id is not less.
// Probes never pass the last row; when the last row is still less, the cursor stays on it
// and no row matches.
std::size_t GallopToLowerBound(const std::vector<StringTableEntry>& rows, std::size_t cursor,
                               QanStringViewT<char> key) {
    const std::size_t last = rows.size() - 1;
    std::size_t step = 1;
    while (cursor < last) {
        const std::size_t probe = std::min(cursor + step, last);
        if (CompareKeys(rows[probe].key, key) >= 0) {
            const auto found = std::lower_bound(
                rows.begin() + static_cast<std::ptrdiff_t>(cursor) + 1,
                rows.begin() + static_cast<std::ptrdiff_t>(probe), key, EntryKeyLess{});
            return static_cast<std::size_t>(found - rows.begin());
        }
        cursor = probe;
        step *= 2;
    }
    return cursor;
}

} // namespace

void MergeOverrides(StringTable& strings, StringTable& overrides) {
    // Loaded sorted already; sorted again so that the pass can rely on it.
    std::sort(overrides.entries.begin(), overrides.entries.end(), EntryKeyLess{});

    auto& rows = strings.entries;
    std::size_t cursor = 0;
    for (const StringTableEntry& override : overrides.entries) {
        if (cursor == rows.size())
            break;
        if (CompareKeys(rows[cursor].key, override.key) < 0)
            cursor = GallopToLowerBound(rows, cursor, override.key);
        // Equal ids among the overrides leave the cursor in place: the last one wins.
        if (CompareKeys(rows[cursor].key, override.key) == 0)
            rows[cursor].text = override.text;
    }
}

} // namespace Framework::Internal

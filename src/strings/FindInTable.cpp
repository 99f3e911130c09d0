// FindInTable.cpp: the lower bound of the key is the first row of its equal range, so one
// bound and one comparison answer the look-up.
#include "strings/FindInTable.h"

#include <algorithm>

namespace Framework::Internal {

std::optional<QanStringViewT<char>> FindInTable(const StringTable& table,
                                                QanStringViewT<char> key) {
    const auto& rows = table.entries;
    const auto first = std::lower_bound(rows.begin(), rows.end(), key, EntryKeyLess{});
    if (first == rows.end() || CompareKeys(first->key, key) != 0)
        return std::nullopt;
    return first->text;
}

} // namespace Framework::Internal

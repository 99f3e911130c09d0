// TableIndex.h: the upper levels of a table's binary search, laid out compactly, so that a
// look-up walks them in cache instead of touching a row and its key bytes at each step.
#pragma once

#include "strings/StringTable.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Framework::Internal {

// The search makes exactly the decisions of FindInTable's lower bound: each node stands for
// the row that the lower bound would compare at that step, whatever the row order. A table
// that is unsorted or holds equal keys is therefore answered as the plain search answers
// it. A node keeps the eight key bytes after the prefix that all node keys share; only when
// those bytes equal the wanted key's are the row's key bytes compared.
class TableIndex {
public:
    TableIndex() = default;
    // Built over the rows as they are now; the rows' keys must not change afterwards
    // (their texts may, as the merge of the overrides changes them).
    explicit TableIndex(const std::vector<StringTableEntry>& rows);

    // The row FindInTable would answer with, as an index into the rows.
    std::optional<std::size_t> Find(const std::vector<StringTableEntry>& rows,
                                    QanStringViewT<char> key) const;

private:
    std::vector<std::uint64_t> nodes; // breadth-first, the root at 1; slot 0 unused
    std::string prefix;               // shared by every node's key
    unsigned levels = 0;
};

} // namespace Framework::Internal

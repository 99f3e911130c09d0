// TableIndex.h: the upper levels of a table's binary search, laid out compactly, so that a
// look-up walks them in cache instead of touching a row and its key bytes at each step.
#pragma once

#include "strings/KeyRows.h"
#include "strings/StringTable.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Framework::Internal {

// A text table's entries as rows to index.
struct EntryKeys {
    const std::vector<StringTableEntry>& rows;

    std::size_t size() const { return rows.size(); }
    QanStringViewT<char> Key(std::size_t row) const { return rows[row].key; }
    const void* RowAddress(std::size_t row) const { return &rows[row]; }
};

// The search makes exactly the decisions of FindInTable's lower bound: each node stands for
// the row that the lower bound would compare at that step, whatever the row order. A table
// that is unsorted or holds equal keys is therefore answered as the plain search answers
// it. A node keeps eight of its key's bytes; only when they equal the wanted key's bytes
// at the same place are the row's key bytes compared.
//
// Which eight: when the node keys are in order (checked as the index is built), the walk
// keeps how many leading bytes the wanted key shares with the last node it passed on each
// side, and each node keeps how many it shares with those two bounding nodes and its eight
// bytes after each of those prefixes. Comparing those counts decides most steps without a
// byte of the node's key (the search of sorted strings by longest common prefixes), and the
// rest from the eight bytes past what the keys are known to share. Otherwise every node
// keeps the eight bytes after the prefix that all node keys share.
//
// Rows are a text table's entries, seen through EntryKeys, or a key table's KeyRows: both
// say how many rows there are, the key of each and where a row lies (to ask for it early).
class TableIndex {
public:
    TableIndex() = default;
    // Built over the rows as they are now; the rows' keys must not change afterwards
    // (their texts may, as the merge of the overrides changes them).
    template <class Rows>
    explicit TableIndex(const Rows& rows);
    explicit TableIndex(const std::vector<StringTableEntry>& rows) : TableIndex(EntryKeys{rows}) {}

    // The row FindInTable would answer with, as an index into the rows.
    // Example: index.Find(table.entries, "CAP_OPEN") is 3 when row 3 holds that key first.
    template <class Rows>
    std::optional<std::size_t> Find(const Rows& rows, QanStringViewT<char> key) const;
    std::optional<std::size_t> Find(const std::vector<StringTableEntry>& rows,
                                    QanStringViewT<char> key) const {
        return Find(EntryKeys{rows}, key);
    }

private:
    struct Node {
        std::uint64_t lowBits;    // eight key bytes from lowCommon, big-endian, zero-filled
        std::uint64_t highBits;   // eight key bytes from highCommon
        std::uint32_t lowCommon;  // prefix shared with the bounding node below (0: none)
        std::uint32_t highCommon; // prefix shared with the bounding node above (0: none)
        std::uint32_t length;     // of the key
    };
    std::vector<Node> nodes; // breadth-first, the root at 1; slot 0 unused
    std::string prefix;      // shared by every node's key, when the node keys are unordered
    bool ordered = false;
    unsigned levels = 0;
};

} // namespace Framework::Internal

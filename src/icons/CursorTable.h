// CursorTable.h: reads the cursor table archive (a count, then name and id pairs) out of
// the bytes of raw-data resource 2 of the platform icon library.
#pragma once

#include <framework/QanString.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace Framework::Internal {

// One row of the table: a cursor's key and its resource number in the module.
struct CursorEntry {
    QanStringT<wchar_t> name;
    std::uint32_t id = 0;
};

// The table as the archive describes it: the entries read, followed by blankCount
// entries with an empty name and id 0 (those after the first failed read). The blank
// tail is counted rather than stored, so a stored count larger than the data costs no
// memory.
struct CursorTable {
    std::vector<CursorEntry> entries;
    std::uint64_t blankCount = 0;

    std::uint64_t Size() const { return entries.size() + blankCount; }
};

// A missing or short count gives an empty table. A negative count throws
// std::length_error("vector too long"), as sizing a vector to it would.
CursorTable ReadCursorTable(std::span<const std::byte> bytes);

} // namespace Framework::Internal

// CursorTable.h: reads the cursor table archive (a count, then name and id pairs) out of
// the bytes of raw-data resource 2 of the platform icon library.
#pragma once

#include <framework/QanString.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace Framework::Internal {

// One row of the table: a cursor's key and its resource number in the module.
struct CursorEntry {
    QanStringT<wchar_t> name;
    std::uint32_t id = 0;
};

// Where and why the reading of a table stopped.
enum class CursorTableStop {
    Complete,      // every entry the count names was read, and nothing follows
    TrailingBytes, // every entry was read; the bytes after the last one are never read
    NoCount,       // fewer than four bytes: no count, so an empty table
    NoNameLength,  // the data ends inside (or before) the length of a name
    NameTooLong,   // a name's length runs past the end of the data
    NoId,          // the data ends inside (or before) the id after a name
};

// The table as the archive describes it: the entries read, followed by blankCount
// entries with an empty name and id 0 (those after the first failed read). The blank
// tail is counted rather than stored, so a stored count larger than the data costs no
// memory.
struct CursorTable {
    std::vector<CursorEntry> entries;
    std::uint64_t blankCount = 0;
    CursorTableStop stop = CursorTableStop::Complete;
    // The first byte of the failed read, or of the bytes left over.
    std::size_t stopOffset = 0;

    std::uint64_t Size() const { return entries.size() + blankCount; }
};

// The stored count, or nothing when the bytes are too few to hold one.
std::optional<std::int32_t> ReadCursorCount(std::span<const std::byte> bytes);

// A missing or short count gives an empty table. A negative count throws
// std::length_error("vector too long"), as sizing a vector to it would.
CursorTable ReadCursorTable(std::span<const std::byte> bytes);

} // namespace Framework::Internal

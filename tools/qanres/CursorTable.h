// CursorTable.h: the tool's side of the cursor table that "QanIcons.dll" carries as
// raw-data resource 2: name/id lists in, table bytes out (through the shared cursor-table
// writer), and the table read back, by the library's own reader, for dumps and checks.
#pragma once

#include "icons/CursorTable.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace QanTool {

struct CursorEntry {
    std::u16string name;
    std::uint32_t id = 0;
    int line = 0; // line of the list it came from (0 when read from bytes)
};

struct CursorListProblem {
    int line = 0;
    std::string message;
};

// Parses a list, one "name<TAB>id" or "name id" per line (the last tab or space splits);
// blank lines and lines starting with '#' are skipped.
std::vector<CursorEntry> ParseCursorList(std::string_view text,
                                         std::vector<CursorListProblem>& problems);

// Sorts by name in UTF-16 code-unit order (the library's binary search order), keeping
// duplicates in list order, and encodes the table.
std::string EncodeCursorTable(std::vector<CursorEntry> entries);

// The library's reading of table bytes (its own ReadCursorTable), with the negative count
// that makes it refuse to start turned into a value, and the names as UTF-16 code units
// for the order checks.
struct CursorTableReport {
    std::optional<std::int32_t> negativeCount; // set: the library throws, nothing else is read
    Framework::Internal::CursorTable table;
    std::vector<std::u16string> names; // one per table entry
};
CursorTableReport ReadCursorTableBytes(std::string_view bytes);

// Why the library stopped reading the table, in words, and the number of the entry it was
// reading then (1 for the count).
std::string StopMessage(const Framework::Internal::CursorTable& table);
int StopEntry(const Framework::Internal::CursorTable& table);
// What the library makes of a table cut short: how many entries it reads, and the rest.
std::string WhatIsRead(const Framework::Internal::CursorTable& table);

// "cursor-table dump": the count and the entries as the library reads them to out, what
// went wrong to err; returns the exit status (1 when the table is cut short or empty).
int DumpCursorTable(std::string_view bytes, std::ostream& out, std::ostream& err);

// Reads raw-data resource 2 of the PE file at path; nothing when the file is not a
// module or holds no such resource.
std::optional<std::string> ReadCursorResource(const std::string& path);
// The table of a module file, or the file itself when it is not a module (table bytes as
// "cursor-table write" makes them); nothing when a module holds no table.
std::optional<std::string> ReadCursorTableFile(const std::string& path);

} // namespace QanTool

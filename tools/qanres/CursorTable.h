// CursorTable.h: the tool's side of the cursor table that "QanIcons.dll" carries as
// raw-data resource 2: name/id lists in, table bytes out (through the shared cursor-table
// writer), and the table read back out of a module file for dumps and checks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
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

struct DecodedCursorTable {
    std::int32_t count = 0;           // as stored
    std::vector<CursorEntry> entries; // those that could be read
    bool truncated = false;           // the bytes ended before count entries were read
    bool lastIdMissing = false;       // the last entry's name was read but not its id: the library
                                      // keeps it, with id 0
    bool trailingBytes = false;       // bytes left after the last entry
};
DecodedCursorTable DecodeCursorTable(std::string_view bytes);

// Reads raw-data resource 2 of the PE file at path; nothing when the file is not a
// module or holds no such resource.
std::optional<std::string> ReadCursorResource(const std::string& path);
// The table of a module file, or the file itself when it is not a module (table bytes as
// "cursor-table write" makes them); nothing when a module holds no table.
std::optional<std::string> ReadCursorTableFile(const std::string& path);

} // namespace QanTool

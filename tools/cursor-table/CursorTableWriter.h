// CursorTableWriter.h: writes the cursor table that "QanIcons.dll" carries as raw-data
// resource 2, for tools that build the platform icon library. Tables are read back only
// with the library's own reader (icons/CursorTable.h), so that no tool disagrees with it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace QanTool::CursorTable {

// One cursor: its key as UTF-16 code units and its cursor resource number.
struct Entry {
    std::u16string name;
    std::uint32_t id = 0;

    friend bool operator==(const Entry&, const Entry&) = default;
};

// The archive bytes: a signed 32-bit count, then per entry a 32-bit count of UTF-16
// code units, the units (UTF-16LE, no terminator) and a 32-bit id; all little-endian.
std::vector<std::byte> Write(std::span<const Entry> entries);

// A resource script holding the table inline as resource resourceId of type RCDATA,
// every value spelled as a number (32-bit with "L", UTF-16 units as 16-bit words), so
// that any name survives the resource compiler byte for byte.
std::string WriteRcScript(std::span<const Entry> entries, int resourceId = 2);

// A resource script that pulls the table from a binary file written with Write.
std::string WriteRcScriptForBinary(std::string_view binaryPath, int resourceId = 2);

} // namespace QanTool::CursorTable

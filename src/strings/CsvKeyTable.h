// CsvKeyTable.h: reads a key table ("string.csv", "caption.csv", "tooltipHeader.csv",
// "tooltipBody.csv") into rows of resource key to string id.
#pragma once

#include "strings/StringTable.h"

#include <framework/LoadReport.h>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace Framework::Internal {

// Why the scan of a key table read no further.
enum class KeyScanEnd : std::uint8_t {
    EndOfBytes,   // the last row's line feed was the last byte (or the file is empty)
    KeyWithoutId, // no comma follows droppedOffset: the bytes from there on are dropped
    NoLineFeed,   // the last line, from droppedOffset, has no line feed and is dropped
};

// What the library reads from a key table: rows of key (text before the comma) and id,
// views into the scanned bytes, in file order, exactly as the loader keeps them.
struct KeyTableScan {
    std::vector<StringTableEntry> rows;
    KeyScanEnd end = KeyScanEnd::EndOfBytes;
    std::size_t droppedOffset = 0; // first byte that no row holds, when end says so
};

// The byte scan of a key table; the only one, shared by the loader and the tool.
KeyTableScan ScanKeyTable(std::string_view bytes);

// Fills table from the file at path. The rows are not sorted: the file must be in key
// order. A file that cannot be read leaves the table as it was. When record is given it
// receives what was read, for the load report (its file is the caller's).
void LoadCsvKeyTable(StringTable& table, const QanStringT<wchar_t>& path,
                     LoadReport::FileRecord* record = nullptr);

} // namespace Framework::Internal

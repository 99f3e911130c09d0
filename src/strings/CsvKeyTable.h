// CsvKeyTable.h: reads a key table ("string.csv", "caption.csv", "tooltipHeader.csv",
// "tooltipBody.csv") into rows of resource key to string id.
#pragma once

#include "strings/ByteSearch.h"
#include "strings/KeyRows.h"
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

// The byte scan of a key table; the only one, shared by the loaders and the tool. Calls
// onRow(key, id) for each row, in file order, with views into bytes, and says why it read
// no further (and from where, in droppedOffset, when it dropped bytes).
//
// Two states: the key runs to the first comma, the id to the next line feed. The key
// search looks past line feeds, so a line without a comma joins the next line's key;
// further commas belong to the id and a carriage return stays at its end. Intended: the
// files come from the suite's build, which writes exactly this shape.
template <class OnRow>
KeyScanEnd ScanKeyRows(std::string_view bytes, std::size_t& droppedOffset, OnRow&& onRow) {
    const char* const start = bytes.data();
    const char* const end = start + bytes.size();
    bool readingKey = true;
    QanStringViewT<char> key;
    const char* pos = start;
    while (pos < end) {
        const char* const found = FindByte(pos, readingKey ? ',' : '\n', end - pos);
        if (!found) {
            // A key without its id, or a last line without a line feed, is dropped; why is
            // noted here, once, so that a row costs nothing more.
            droppedOffset = static_cast<std::size_t>((readingKey ? pos : key.data()) - start);
            return readingKey ? KeyScanEnd::KeyWithoutId : KeyScanEnd::NoLineFeed;
        }
        const QanStringViewT<char> field(pos, static_cast<std::size_t>(found - pos));
        if (readingKey)
            key = field;
        else
            onRow(key, field);
        pos = found + 1;
        readingKey = !readingKey;
    }
    // A comma as the last byte ends the loop with a key whose id was never searched for:
    // that key is dropped like any last line without a line feed, and said so.
    if (!readingKey) {
        droppedOffset = static_cast<std::size_t>(key.data() - start);
        return KeyScanEnd::NoLineFeed;
    }
    return KeyScanEnd::EndOfBytes;
}

// The same scan, its rows gathered. Example: ScanKeyTable("k,ID\n").rows[0].text == "ID".
KeyTableScan ScanKeyTable(std::string_view bytes);

// Fills table from the file at path. The rows are not sorted: the file must be in key
// order. A file that cannot be read leaves the table as it was. When record is given it
// receives what was read, for the load report (its file is the caller's).
void LoadCsvKeyTable(StringTable& table, const QanStringT<wchar_t>& path,
                     LoadReport::FileRecord* record = nullptr);
// The same, into the compact rows the string collection keeps.
void LoadCsvKeyTable(KeyRows& table, const QanStringT<wchar_t>& path,
                     LoadReport::FileRecord* record = nullptr);

} // namespace Framework::Internal

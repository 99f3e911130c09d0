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
#include <utility>
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
// onRow(key, id) for each row, in file order, with views into the bytes, and says why it
// read no further (and from where, in droppedOffset, when it dropped bytes). It can take
// the bytes as a file's read brings them in, so that they are scanned while in cache.
//
// Two states: the key runs to the first comma, the id to the next line feed. The key
// search looks past line feeds, so a line without a comma joins the next line's key;
// further commas belong to the id and a carriage return stays at its end. Intended: the
// files come from the suite's build, which writes exactly this shape.
template <class OnRow>
class KeyRowScanner {
public:
    explicit KeyRowScanner(OnRow onRow) : onRow(std::forward<OnRow>(onRow)) {}

    // Scans what bytes adds to what was fed before: bytes must begin with everything fed so
    // far (a file's first bytes, more of them each time). Rows are views into bytes.
    void Feed(std::string_view bytes) {
        const std::size_t from = scanned;
        // Every comma and line feed in order; the state says which of them ends a field.
        ForEachByteOf(bytes.substr(from), ',', '\n', [&](std::size_t offset) {
            const std::size_t at = from + offset;
            if (readingKey) {
                if (bytes[at] != ',')
                    return;
                keyStart = fieldStart;
                keyLength = at - fieldStart;
            } else {
                if (bytes[at] != '\n')
                    return;
                onRow(bytes.substr(keyStart, keyLength), bytes.substr(fieldStart, at - fieldStart));
            }
            readingKey = !readingKey;
            fieldStart = at + 1;
        });
        scanned = bytes.size();
    }

    // Why the scan read no further, once all of the bytes were fed; droppedOffset receives
    // the first byte no row holds when the end says so. A key without its id, or a last
    // line without a line feed (a comma as the last byte included), is dropped; why is
    // noted here, once, so that a row costs nothing more.
    KeyScanEnd End(std::size_t& droppedOffset) const {
        if (!readingKey) {
            droppedOffset = keyStart;
            return KeyScanEnd::NoLineFeed;
        }
        if (fieldStart < scanned) {
            droppedOffset = fieldStart;
            return KeyScanEnd::KeyWithoutId;
        }
        return KeyScanEnd::EndOfBytes;
    }

private:
    OnRow onRow;
    std::size_t scanned = 0;
    bool readingKey = true;
    std::size_t fieldStart = 0; // of the key or id being read
    std::size_t keyStart = 0, keyLength = 0;
};

// The whole scan over bytes at once.
template <class OnRow>
KeyScanEnd ScanKeyRows(std::string_view bytes, std::size_t& droppedOffset, OnRow&& onRow) {
    KeyRowScanner<OnRow&> scanner(onRow);
    scanner.Feed(bytes);
    return scanner.End(droppedOffset);
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

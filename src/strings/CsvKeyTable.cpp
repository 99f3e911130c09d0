// CsvKeyTable.cpp: the byte scan of key tables: "key,id" lines ended by a line feed, with
// no header, quoting, escapes or trimming.
#include "strings/CsvKeyTable.h"

#include "platform/Platform.h"
#include "platform/UnreadFile.h"
#include "strings/ByteSearch.h"

#include <cstdint>

namespace Framework::Internal {

KeyTableScan ScanKeyTable(std::string_view bytes) {
    KeyTableScan scan;
    const char* const start = bytes.data();
    const char* const end = start + bytes.size();
    // The rows are gathered in a local vector and handed over at the end.
    std::vector<StringTableEntry> rows;
    rows.reserve(EstimateLines(start, bytes.size()));

    // Two states: the key runs to the first comma, the id to the next line feed. The key
    // search looks past line feeds, so a line without a comma joins the next line's key;
    // further commas belong to the id and a carriage return stays at its end. Intended:
    // the files come from the suite's build, which writes exactly this shape.
    bool readingKey = true;
    QanStringViewT<char> key;
    const char* pos = start;
    while (pos < end) {
        const char* const found = FindByte(pos, readingKey ? ',' : '\n', end - pos);
        if (!found) {
            // A key without its id, or a last line without a line feed, is dropped; why is
            // noted here, once, so that a row costs nothing more.
            scan.end = readingKey ? KeyScanEnd::KeyWithoutId : KeyScanEnd::NoLineFeed;
            scan.droppedOffset = static_cast<std::size_t>((readingKey ? pos : key.data()) - start);
            break;
        }
        const QanStringViewT<char> field(pos, static_cast<std::size_t>(found - pos));
        if (readingKey)
            key = field;
        else
            rows.push_back({key, field});
        pos = found + 1;
        readingKey = !readingKey;
    }
    // A comma as the last byte ends the loop with a key whose id was never searched for:
    // that key is dropped like any last line without a line feed, and said so.
    if (!readingKey && scan.end == KeyScanEnd::EndOfBytes) {
        scan.end = KeyScanEnd::NoLineFeed;
        scan.droppedOffset = static_cast<std::size_t>(key.data() - start);
    }
    scan.rows = std::move(rows);
    return scan;
}

void LoadCsvKeyTable(StringTable& table, const QanStringT<wchar_t>& path,
                     LoadReport::FileRecord* record) {
    std::uint64_t size = 0;
    std::unique_ptr<char[]> data = Platform::ReadRecordedFile(path.c_str(), size, record);
    // An unreadable file keeps the rows the table had, with the buffer they point into.
    if (!data)
        return;

    KeyTableScan scan = ScanKeyTable(std::string_view(data.get(), static_cast<std::size_t>(size)));
    if (record) {
        record->outcome = LoadReport::Outcome::Read;
        record->bytes = size;
        record->rows = scan.rows.size();
        if (scan.end == KeyScanEnd::KeyWithoutId)
            record->reason = L"a key without a comma: it and the rest are dropped";
        else if (scan.end == KeyScanEnd::NoLineFeed)
            record->reason = L"the last line has no line feed and is dropped";
        if (scan.end != KeyScanEnd::EndOfBytes)
            record->offset = scan.droppedOffset;
    }
    // A table lives as long as its collection: rows reserved far beyond the estimate are
    // given back (a copy, only when the estimate was well off).
    if (scan.rows.capacity() > scan.rows.size() + scan.rows.size() / 8 + 64)
        scan.rows.shrink_to_fit();
    table.entries = std::move(scan.rows);
    table.buffer = std::move(data);
}

} // namespace Framework::Internal

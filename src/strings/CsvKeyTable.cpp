// CsvKeyTable.cpp: the byte scan of key tables: "key,id" lines ended by a line feed, with
// no header, quoting, escapes or trimming.
#include "strings/CsvKeyTable.h"

#include "platform/Platform.h"
#include "platform/UnreadFile.h"

#include <cstdint>

namespace Framework::Internal {

namespace {

// Reads the file at path whole and fills its record's outcome, size, rows and where the
// scan dropped bytes. Null when the file cannot be read: the caller's table stays as it was.
template <class Scan>
std::unique_ptr<char[]> ReadAndScan(const QanStringT<wchar_t>& path, LoadReport::FileRecord* record,
                                    std::uint64_t& size, Scan&& scan) {
    std::unique_ptr<char[]> data = Platform::ReadRecordedFile(path.c_str(), size, record);
    if (!data)
        return nullptr;
    std::size_t dropped = 0;
    std::size_t rows = 0;
    const KeyScanEnd end =
        scan(std::string_view(data.get(), static_cast<std::size_t>(size)), dropped, rows);
    if (record) {
        record->outcome = LoadReport::Outcome::Read;
        record->bytes = size;
        record->rows = rows;
        if (end == KeyScanEnd::KeyWithoutId)
            record->reason = L"a key without a comma: it and the rest are dropped";
        else if (end == KeyScanEnd::NoLineFeed)
            record->reason = L"the last line has no line feed and is dropped";
        if (end != KeyScanEnd::EndOfBytes)
            record->offset = dropped;
    }
    return data;
}

// A table lives as long as its collection: rows reserved far beyond the estimate are given
// back (a copy, only when the estimate was well off).
template <class Rows>
void FitRows(Rows& rows) {
    if (rows.capacity() > rows.size() + rows.size() / 8 + 64)
        rows.shrink_to_fit();
}

} // namespace

KeyTableScan ScanKeyTable(std::string_view bytes) {
    KeyTableScan scan;
    scan.rows.reserve(EstimateLines(bytes.data(), bytes.size()));
    scan.end = ScanKeyRows(bytes, scan.droppedOffset,
                           [&rows = scan.rows](QanStringViewT<char> key, QanStringViewT<char> id) {
                               rows.push_back({key, id});
                           });
    return scan;
}

void LoadCsvKeyTable(StringTable& table, const QanStringT<wchar_t>& path,
                     LoadReport::FileRecord* record) {
    std::vector<StringTableEntry> rows;
    std::uint64_t size = 0;
    std::unique_ptr<char[]> data =
        ReadAndScan(path, record, size,
                    [&rows](std::string_view bytes, std::size_t& dropped, std::size_t& count) {
                        KeyTableScan scan = ScanKeyTable(bytes);
                        dropped = scan.droppedOffset;
                        count = scan.rows.size();
                        rows = std::move(scan.rows);
                        return scan.end;
                    });
    // An unreadable file keeps the rows the table had, with the buffer they point into.
    if (!data)
        return;
    FitRows(rows);
    table.entries = std::move(rows);
    table.buffer = std::move(data);
    table.size = static_cast<std::size_t>(size);
}

void LoadCsvKeyTable(KeyRows& table, const QanStringT<wchar_t>& path,
                     LoadReport::FileRecord* record) {
    std::vector<KeyRows::Row> rows;
    std::uint64_t size = 0;
    std::unique_ptr<char[]> data = ReadAndScan(
        path, record, size,
        [&rows](std::string_view bytes, std::size_t& dropped, std::size_t& count) {
            rows.reserve(EstimateLines(bytes.data(), bytes.size()));
            const char* const start = bytes.data();
            // Offsets from the start of a file below 4 GiB fit 32 bits.
            auto offset = [start](const char* at) {
                return static_cast<std::uint32_t>(at - start);
            };
            const KeyScanEnd end = ScanKeyRows(
                bytes, dropped, [&rows, offset](QanStringViewT<char> key, QanStringViewT<char> id) {
                    rows.push_back({offset(key.data()), static_cast<std::uint32_t>(key.size()),
                                    offset(id.data()), static_cast<std::uint32_t>(id.size())});
                });
            count = rows.size();
            return end;
        });
    if (!data)
        return;
    FitRows(rows);
    table.rows = std::move(rows);
    table.bytes = std::move(data);
}

} // namespace Framework::Internal

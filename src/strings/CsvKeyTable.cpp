// CsvKeyTable.cpp: the byte scan of key tables: "key,id" lines ended by a line feed, with
// no header, quoting, escapes or trimming.
#include "strings/CsvKeyTable.h"

#include "platform/Platform.h"
#include "platform/UnreadFile.h"

#include <cstdint>

namespace Framework::Internal {

namespace {

// Fills a read file's record: its size, rows and where the scan dropped bytes.
void Describe(LoadReport::FileRecord* record, std::uint64_t size, std::size_t rows, KeyScanEnd end,
              std::size_t dropped) {
    if (!record)
        return;
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
    std::uint64_t size = 0;
    std::unique_ptr<char[]> data = Platform::ReadRecordedFile(path.c_str(), size, record);
    // An unreadable file keeps the rows the table had, with the buffer they point into.
    if (!data)
        return;
    KeyTableScan scan = ScanKeyTable(std::string_view(data.get(), static_cast<std::size_t>(size)));
    Describe(record, size, scan.rows.size(), scan.end, scan.droppedOffset);
    GiveBackSpareRows(scan.rows);
    table.entries = std::move(scan.rows);
    table.buffer = std::move(data);
    table.size = static_cast<std::size_t>(size);
}

void LoadCsvKeyTable(KeyRows& table, const QanStringT<wchar_t>& path,
                     LoadReport::FileRecord* record) {
    std::vector<KeyRows::Row> rows;
    const char* start = nullptr;
    std::size_t end = 0; // one past the last row's line feed
    // Offsets from the start of a file below 4 GiB fit 32 bits.
    const auto keep = [&rows, &start, &end](QanStringViewT<char> key, QanStringViewT<char> id) {
        rows.push_back({static_cast<std::uint32_t>(key.data() - start),
                        static_cast<std::uint32_t>(id.data() - start)});
        end = static_cast<std::size_t>(id.data() + id.size() - start) + 1;
    };
    KeyRowScanner<decltype(keep)> scanner(keep);
    std::uint64_t size = 0;
    // Each piece is scanned as soon as it is read, while its bytes are still in cache.
    std::unique_ptr<char[]> data = Platform::ReadRecordedFile(
        path.c_str(), size, record, [&](const char* bytes, std::size_t count, std::size_t total) {
            if (!start) {
                start = bytes;
                rows.reserve(EstimateLines(bytes, count, total));
            }
            scanner.Feed(std::string_view(bytes, count));
        });
    // An unreadable file keeps the rows the table had, with the bytes they point into.
    if (!data)
        return;
    if (!start) // an empty file: nothing arrived
        start = data.get();
    std::size_t dropped = 0;
    const KeyScanEnd why = scanner.End(dropped);
    Describe(record, size, rows.size(), why, dropped);
    if (!rows.empty())
        rows.push_back({static_cast<std::uint32_t>(end), 0});
    GiveBackSpareRows(rows);
    table.rows = std::move(rows);
    table.bytes = std::move(data);
}

} // namespace Framework::Internal

// KeyTableFuzz.cpp: any bytes as a key table. Every row the scan keeps is a pair of views
// into the bytes, in file order, with exactly a comma between key and id and a line feed
// after the id; the reason the scan stopped is true of the bytes it left; the loader keeps
// exactly the scanned rows, as views and as compact rows; the scan fed in pieces, as a read
// brings them in, keeps the same rows and end; and the kept rows written back as "key,id"
// lines scan to the same rows, with nothing dropped.
#include "FuzzPlatform.h"
#include "strings/CsvKeyTable.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {
using namespace Framework::Internal;

void Check(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "violated: %s\n", what);
        std::abort();
    }
}

using Rows = std::vector<std::pair<std::string, std::string>>;

Rows Copy(const std::vector<StringTableEntry>& entries) {
    Rows rows;
    for (const auto& row : entries)
        rows.emplace_back(std::string(row.key), std::string(row.text));
    return rows;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const KeyTableScan scan = ScanKeyTable(input);

    const char* const begin = input.data();
    const char* next = begin; // where the next row may start
    for (const auto& row : scan.rows) {
        Check(row.key.data() == next, "a row starts where the previous one ended");
        Check(row.text.data() == row.key.data() + row.key.size() + 1, "a comma ends the key");
        Check(row.text.data() + row.text.size() < begin + size, "a row lies inside the bytes");
        Check(row.key.data()[row.key.size()] == ',', "a comma ends the key");
        Check(row.text.data()[row.text.size()] == '\n', "a line feed ends the id");
        Check(row.key.find(',') == std::string_view::npos, "a key holds no comma");
        Check(row.text.find('\n') == std::string_view::npos, "an id holds no line feed");
        next = row.text.data() + row.text.size() + 1;
    }
    const std::size_t consumed = static_cast<std::size_t>(next - begin);
    const std::string_view rest = input.substr(consumed);
    switch (scan.end) {
    case KeyScanEnd::EndOfBytes:
        Check(rest.empty(), "a scan that read to the end left nothing");
        break;
    case KeyScanEnd::KeyWithoutId:
        Check(scan.droppedOffset == consumed && rest.find(',') == std::string_view::npos,
              "a key without an id: no comma follows the last row");
        break;
    case KeyScanEnd::NoLineFeed:
        Check(scan.droppedOffset == consumed && rest.find(',') != std::string_view::npos &&
                  rest.find('\n', rest.find(',')) == std::string_view::npos,
              "a last line without a line feed: a comma but no line feed after it");
        break;
    }

    // The loader keeps the scan's rows.
    static QanFuzz::FuzzPlatform platform;
    Framework::Platform::SetPlatformForTests(&platform);
    platform.bytes = std::as_bytes(std::span(input.data(), input.size()));
    StringTable table;
    LoadCsvKeyTable(table, L"string.csv");
    const Rows rows = Copy(scan.rows);
    Check(Copy(table.entries) == rows, "the loader keeps the scanned rows");
    KeyRows compact;
    LoadCsvKeyTable(compact, L"string.csv");
    Rows compactRows;
    for (std::size_t row = 0; row < compact.size(); ++row)
        compactRows.emplace_back(std::string(compact.Key(row)), std::string(compact.Id(row)));
    Check(compactRows == rows, "the compact rows hold the scanned keys and ids");

    // In pieces: a split taken from the bytes themselves, then a byte at a time.
    Rows pieced;
    const auto keep = [&pieced](std::string_view key, std::string_view id) {
        pieced.emplace_back(key, id);
    };
    KeyRowScanner<decltype(keep)> scanner(keep);
    const std::size_t split = size > 0 ? data[0] % (size + 1) : 0;
    scanner.Feed(input.substr(0, split));
    for (std::size_t fed = split; fed < size;)
        scanner.Feed(input.substr(0, ++fed));
    std::size_t dropped = 0;
    const KeyScanEnd end = scanner.End(dropped);
    Check(pieced == rows && end == scan.end &&
              (end == KeyScanEnd::EndOfBytes || dropped == scan.droppedOffset),
          "the scan in pieces keeps the rows and the end of the whole");

    std::string written;
    for (const auto& [key, id] : rows)
        written += key + ',' + id + '\n';
    const KeyTableScan again = ScanKeyTable(written);
    Check(Copy(again.rows) == rows && again.end == KeyScanEnd::EndOfBytes,
          "the kept rows written back scan the same");
    return 0;
}

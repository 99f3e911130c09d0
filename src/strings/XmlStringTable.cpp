// XmlStringTable.cpp: the byte scan of string text files. The producer of these files is
// trusted, so the scan only looks for quotes and "<" and never examines names.
#include "strings/XmlStringTable.h"

#include "platform/Platform.h"
#include "platform/UnreadFile.h"
#include "strings/ByteSearch.h"

#include <algorithm>
#include <cstdint>

namespace Framework::Internal {

StringFileScan ScanStringTextFile(std::string_view bytes) {
    StringFileScan scan;
    const char* const start = bytes.data();
    const char* const end = start + bytes.size();
    const std::size_t size = bytes.size();
    // The rows are gathered in a local vector and handed over at the end.
    std::vector<StringTableEntry> rows;
    rows.reserve(EstimateLines(start, size));

    // Lines 1 and 2 (declaration and root start tag) hold quotes of their own and are
    // skipped unseen. The first search leaves out the last byte and the second ends one
    // byte before the end, so a second line feed as the very last byte finds no rows.
    scan.end = StringScanEnd::TooFewLines;
    if (size == 0)
        return scan;
    const char* const firstLf = FindByte(start, '\n', static_cast<std::ptrdiff_t>(size - 1));
    if (!firstLf)
        return scan;
    const char* const secondLf = FindByte(firstLf + 1, '\n', (end - 1) - (firstLf + 1));
    if (!secondLf)
        return scan;
    scan.rowsBegin = static_cast<std::size_t>(secondLf + 1 - start);
    scan.end = StringScanEnd::EndOfBytes;

    // Why the scan ends is noted once, when a search fails; a row costs nothing more.
    auto stop = [&](StringScanEnd why, const char* at) {
        scan.end = why;
        scan.endOffset = static_cast<std::size_t>(at - start);
    };
    const char* pos = secondLf + 1;
    while (pos < end) {
        // The opening quote is searched in all but the last byte.
        const char* const openQuote = FindByte(pos, '"', end - pos - 1);
        if (!openQuote) {
            stop(StringScanEnd::NoOpeningQuote, pos);
            break;
        }
        const char* const id = openQuote + 1;
        // The closing quote leaves room for the ">" and at least one byte after it.
        const char* const closeQuote = FindByte(id, '"', end - id - 2);
        if (!closeQuote) {
            stop(StringScanEnd::NoClosingQuote, openQuote);
            break;
        }
        // The byte after the closing quote is the ">" of the start tag; it is stepped over
        // without a look, which is why a self-closing element or a second attribute is
        // read wrongly. Intended: the producer writes exactly one attribute.
        const char* const text = closeQuote + 2;
        const char* const lt = FindByte(text, '<', end - text);
        if (!lt) {
            stop(StringScanEnd::NoTextEnd, openQuote);
            break;
        }
        rows.push_back({QanStringViewT<char>(id, static_cast<std::size_t>(closeQuote - id)),
                        QanStringViewT<char>(text, static_cast<std::size_t>(lt - text))});
        pos = lt + 1;
    }
    scan.rows = std::move(rows);
    return scan;
}

namespace {

void DescribeScan(LoadReport::FileRecord& record, const StringFileScan& scan, std::uint64_t size) {
    record.outcome = LoadReport::Outcome::Read;
    record.bytes = size;
    record.rows = scan.rows.size();
    switch (scan.end) {
    case StringScanEnd::EndOfBytes:
    case StringScanEnd::NoOpeningQuote: // the usual end, after the last element
        return;
    case StringScanEnd::TooFewLines:
        record.outcome = LoadReport::Outcome::Refused;
        record.rows = 0;
        record.reason = L"fewer than two lines";
        return;
    case StringScanEnd::NoClosingQuote:
        record.reason = L"a quote without its closing quote: it and the rest are dropped";
        break;
    case StringScanEnd::NoTextEnd:
        record.reason = L"a text without its closing '<': it and the rest are dropped";
        break;
    }
    record.offset = scan.endOffset;
}

} // namespace

void LoadXmlStringTable(StringTable& table, const QanStringT<wchar_t>& path, bool sort,
                        LoadReport::FileRecord* record) {
    std::uint64_t size = 0;
    std::unique_ptr<char[]> data = Platform::ReadRecordedFile(path.c_str(), size, record);
    // Whenever a load ends without new rows, the table keeps its rows together with the
    // buffer they point into, so that no row is ever left pointing at released bytes (a
    // full file that cannot be read keeps the start-up texts usable).
    if (!data)
        return;

    StringFileScan scan =
        ScanStringTextFile(std::string_view(data.get(), static_cast<std::size_t>(size)));
    if (record)
        DescribeScan(*record, scan, size);
    // Fewer than two lines: the table keeps what it had, as for an unreadable file.
    if (scan.end == StringScanEnd::TooFewLines)
        return;

    if (sort)
        std::sort(scan.rows.begin(), scan.rows.end(), EntryKeyLess{});
    // A table lives as long as its collection: rows reserved far beyond the estimate are
    // given back (a copy, only when the estimate was well off).
    if (scan.rows.capacity() > scan.rows.size() + scan.rows.size() / 8 + 64)
        scan.rows.shrink_to_fit();
    table.entries = std::move(scan.rows);
    table.buffer = std::move(data);
    table.size = static_cast<std::size_t>(size);
}

} // namespace Framework::Internal

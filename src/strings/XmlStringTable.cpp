// XmlStringTable.cpp: the byte scan of string text files. The producer of these files is
// trusted, so the scan only looks for quotes and "<" and never examines names.
#include "strings/XmlStringTable.h"

#include "platform/Platform.h"
#include "platform/UnreadFile.h"
#include "strings/ByteSearch.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace Framework::Internal {

StringFileScanner::StringFileScanner(std::size_t fileSize) : size(fileSize) {
    // Fewer than two lines until the two line feeds are found.
    scan.end = StringScanEnd::TooFewLines;
}

void StringFileScanner::Stop(StringScanEnd why, std::size_t at) {
    scan.end = why;
    scan.endOffset = at;
    step = Step::Done;
}

void StringFileScanner::Feed(std::string_view bytes) {
    const char* const start = bytes.data();
    const std::size_t fed = bytes.size();
    // The next byte from cursor that is wanted, searched up to limit (the bound that the
    // scan of the whole file sets); npos when it lies beyond the bytes fed so far.
    constexpr std::size_t kWait = std::string_view::npos;
    std::size_t found = 0;
    const auto search = [&](char wanted, std::size_t limit) -> bool {
        const std::size_t available = std::min(fed, limit);
        const char* const at =
            cursor < available
                ? FindByte(start + cursor, wanted, static_cast<std::ptrdiff_t>(available - cursor))
                : nullptr;
        if (at) {
            found = static_cast<std::size_t>(at - start);
            return true;
        }
        found = available < limit ? kWait : 0;
        if (found == kWait)
            cursor = std::max(cursor, available);
        return false;
    };
    // What each step searches for, and up to where, as the scan of the whole file bounds it:
    // the first line feed in all but the last byte and the second up to one byte before the
    // end, so a second line feed as the very last byte finds no rows; an opening quote in
    // all but the last byte; a closing quote only where it leaves room for the ">" and at
    // least one byte; a text's end anywhere.
    const std::size_t allButLast = size > 0 ? size - 1 : 0;
    const std::size_t allButTwo = size > 1 ? size - 2 : 0;
    for (;;) {
        char wanted = '\n';
        std::size_t limit = allButLast;
        switch (step) {
        case Step::FirstLineFeed:
        case Step::SecondLineFeed:
            break;
        case Step::OpeningQuote:
            if (rowStart >= size) {
                step = Step::Done; // the last row's '<' was the last byte
                return;
            }
            wanted = '"';
            break;
        case Step::ClosingQuote:
            wanted = '"';
            limit = allButTwo;
            break;
        case Step::TextEnd:
            wanted = '<';
            limit = size;
            break;
        case Step::Done:
            return;
        }
        if (!search(wanted, limit)) {
            if (found == kWait)
                return;
            // Not in the whole file: the scan ends here, and says why.
            if (step == Step::OpeningQuote)
                Stop(StringScanEnd::NoOpeningQuote, rowStart);
            else if (step == Step::ClosingQuote)
                Stop(StringScanEnd::NoClosingQuote, openQuote);
            else if (step == Step::TextEnd)
                Stop(StringScanEnd::NoTextEnd, openQuote);
            else
                step = Step::Done; // fewer than two lines
            return;
        }
        switch (step) {
        case Step::FirstLineFeed:
            cursor = found + 1;
            step = Step::SecondLineFeed;
            break;
        case Step::SecondLineFeed:
            scan.rowsBegin = found + 1;
            scan.end = StringScanEnd::EndOfBytes;
            rowStart = cursor = found + 1;
            step = Step::OpeningQuote;
            break;
        case Step::OpeningQuote:
            openQuote = found;
            cursor = found + 1;
            step = Step::ClosingQuote;
            break;
        case Step::ClosingQuote:
            closeQuote = found;
            // The byte after the closing quote is the ">" of the start tag; it is stepped
            // over without a look, which is why a self-closing element or a second attribute
            // is read wrongly. Intended: the producer writes exactly one attribute.
            cursor = found + 2;
            step = Step::TextEnd;
            break;
        case Step::TextEnd:
            scan.rows.push_back(
                {QanStringViewT<char>(start + openQuote + 1, closeQuote - openQuote - 1),
                 QanStringViewT<char>(start + closeQuote + 2, found - closeQuote - 2)});
            rowStart = cursor = found + 1;
            step = Step::OpeningQuote;
            break;
        case Step::Done:
            return;
        }
    }
}

StringFileScan ScanStringTextFile(std::string_view bytes) {
    StringFileScanner scanner(bytes.size());
    scanner.Reserve(EstimateLines(bytes.data(), bytes.size()));
    scanner.Feed(bytes);
    return scanner.Finish();
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
    std::optional<StringFileScanner> scanner;
    std::uint64_t size = 0;
    // Each piece is scanned as soon as it is read, while its bytes are still in cache.
    std::unique_ptr<char[]> data = Platform::ReadRecordedFile(
        path.c_str(), size, record,
        [&scanner](const char* bytes, std::size_t count, std::size_t total) {
            if (!scanner) {
                scanner.emplace(total);
                scanner->Reserve(EstimateLines(bytes, count, total));
            }
            scanner->Feed(std::string_view(bytes, count));
        });
    // Whenever a load ends without new rows, the table keeps its rows together with the
    // buffer they point into, so that no row is ever left pointing at released bytes (a
    // full file that cannot be read keeps the start-up texts usable).
    if (!data)
        return;
    if (!scanner) { // an empty file: nothing arrived
        scanner.emplace(0);
        scanner->Feed(std::string_view(data.get(), 0));
    }
    StringFileScan scan = scanner->Finish();
    if (record)
        DescribeScan(*record, scan, size);
    // Fewer than two lines: the table keeps what it had, as for an unreadable file.
    if (scan.end == StringScanEnd::TooFewLines)
        return;

    if (sort)
        std::sort(scan.rows.begin(), scan.rows.end(), EntryKeyLess{});
    GiveBackSpareRows(scan.rows);
    table.entries = std::move(scan.rows);
    table.buffer = std::move(data);
    table.size = static_cast<std::size_t>(size);
}

} // namespace Framework::Internal

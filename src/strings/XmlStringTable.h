// XmlStringTable.h: reads a string text file ("startupstrings.xml", "strings.xml" and the
// override file) into a table of id to text rows by a byte scan, not an XML parse.
#pragma once

#include "strings/StringTable.h"

#include <framework/LoadReport.h>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace Framework::Internal {

// Why the scan of a string text file read no further.
enum class StringScanEnd : std::uint8_t {
    EndOfBytes,     // the last row's '<' was the last byte
    TooFewLines,    // no line feed ends line 1 or line 2 before the last byte: no row is read
    NoOpeningQuote, // no '"' follows (the usual end, after the last element)
    NoClosingQuote, // the quote at endOffset has no closing quote: it and the rest are dropped
    NoTextEnd,      // the id at endOffset has no '<' after its text: it and the rest are dropped
};

// What the library reads from a string text file. The rows are views into the scanned
// bytes, in file order, exactly as the loader keeps them.
struct StringFileScan {
    std::vector<StringTableEntry> rows;
    // Where the rows begin (the start of line 3); npos when the scan is refused.
    std::size_t rowsBegin = std::string_view::npos;
    StringScanEnd end = StringScanEnd::EndOfBytes;
    // NoOpeningQuote: where the last search began; NoClosingQuote and NoTextEnd: the opening
    // quote of the row that is dropped; otherwise 0.
    std::size_t endOffset = 0;
};

// The byte scan of a string text file; the only one, shared by the loader and the tool. It
// can take the bytes as a file's read brings them in, so that they are scanned while in
// cache: made with the file's size, fed a longer prefix of the file each time (rows are
// views into it), and finished once the whole file was fed. Every search is bounded by the
// file's size as in a scan of the whole, and one that reaches past the bytes fed so far
// waits for more.
class StringFileScanner {
public:
    explicit StringFileScanner(std::size_t fileSize);

    void Reserve(std::size_t rows) { scan.rows.reserve(rows); }
    void Feed(std::string_view bytes);
    // What the scan read; call once, after the whole file was fed.
    StringFileScan Finish() { return std::move(scan); }

private:
    enum class Step : std::uint8_t {
        FirstLineFeed,
        SecondLineFeed,
        OpeningQuote,
        ClosingQuote,
        TextEnd,
        Done
    };

    void Stop(StringScanEnd why, std::size_t at);

    std::size_t size;
    Step step = Step::FirstLineFeed;
    std::size_t cursor = 0;     // where the search under way goes on
    std::size_t rowStart = 0;   // where the search for the row's opening quote began
    std::size_t openQuote = 0;  // of the row being read
    std::size_t closeQuote = 0; // of the row being read
    StringFileScan scan;
};

// The whole scan at once. Example: ScanStringTextFile(file).rows[0].key is the first id.
StringFileScan ScanStringTextFile(std::string_view bytes);

// Fills table from the file at path; sorts the rows by id when sort is set. A file that
// cannot be read, or holds fewer than two lines, leaves the table as it was. When record
// is given it receives what was read, for the load report (its file is the caller's).
void LoadXmlStringTable(StringTable& table, const QanStringT<wchar_t>& path, bool sort,
                        LoadReport::FileRecord* record = nullptr);

} // namespace Framework::Internal

// XmlStringTable.h: reads a string text file ("startupstrings.xml", "strings.xml" and the
// override file) into a table of id to text rows by a byte scan, not an XML parse.
#pragma once

#include "strings/StringTable.h"

#include <framework/LoadReport.h>

#include <cstddef>
#include <cstdint>
#include <string_view>
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

// The byte scan of a string text file; the only one, shared by the loader and the tool.
StringFileScan ScanStringTextFile(std::string_view bytes);

// Fills table from the file at path; sorts the rows by id when sort is set. A file that
// cannot be read, or holds fewer than two lines, leaves the table as it was. When record
// is given it receives what was read, for the load report (its file is the caller's).
void LoadXmlStringTable(StringTable& table, const QanStringT<wchar_t>& path, bool sort,
                        LoadReport::FileRecord* record = nullptr);

} // namespace Framework::Internal

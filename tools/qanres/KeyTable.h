// KeyTable.h: the four key tables (string.csv, caption.csv, tooltipHeader.csv,
// tooltipBody.csv) read line by line as their author wrote them. What the library reads
// from them is its own scan, ScanKeyTable.
#pragma once

#include "Reading.h"

#include "strings/CsvKeyTable.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace QanTool {

struct KeyLine {
    std::size_t offset = 0;
    std::string_view text; // without its line feed, with a carriage return if there is one
    bool lineFeed = false; // ends with a line feed (the last line may not)
    bool carriageReturn = false;
    std::size_t comma = std::string_view::npos; // offset within text of the first comma
    std::string_view key;                       // before the first comma
    std::string_view id;                        // after it, without a final carriage return
};
std::vector<KeyLine> ReadKeyLines(std::string_view bytes);

// What makes bytes look like a spreadsheet's CSV export rather than a key table: "a
// header row", "quoted fields" or both; null when nothing does. The library reads a
// header as one more key and quotes as part of keys and ids, and which rows were meant
// cannot be told without a guess.
const char* SpreadsheetExport(std::string_view bytes);

// One written line beside the library's row that starts where it does. A line without a
// comma is never Kept; the key of line 1 is meant without a byte-order mark.
struct KeyLineReading {
    Reading reading = Reading::NotRead;
    std::size_t row = std::string_view::npos; // index of the row starting at the line
};

struct KeyTableReadings {
    std::vector<KeyLine> lines;
    Framework::Internal::KeyTableScan scan; // the library's reading
    std::vector<KeyLineReading> readings;   // one per line, in the same order
};
KeyTableReadings CompareKeyTable(std::string_view bytes);

} // namespace QanTool

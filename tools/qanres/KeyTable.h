// KeyTable.h: the four key tables (string.csv, caption.csv, tooltipHeader.csv,
// tooltipBody.csv) read line by line as their author wrote them, and as the library's
// comma/line-feed scanner reads them.
#pragma once

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

struct KeyRow {
    std::size_t keyOffset = 0;
    std::string_view key;
    std::size_t idOffset = 0;
    std::string_view id;
};
// The library's reading: key up to a comma (looking past line feeds), id up to the next
// line feed; a key without its id at the end is dropped.
std::vector<KeyRow> ReadKeyTableAsLibrary(std::string_view bytes);

} // namespace QanTool

// KeyTable.cpp: the two readings of a key table.
#include "KeyTable.h"

#include <cstring>

namespace QanTool {

std::vector<KeyLine> ReadKeyLines(std::string_view bytes) {
    std::vector<KeyLine> lines;
    std::size_t pos = 0;
    while (pos < bytes.size()) {
        KeyLine line;
        line.offset = pos;
        const std::size_t lf = bytes.find('\n', pos);
        line.lineFeed = lf != std::string_view::npos;
        const std::size_t end = line.lineFeed ? lf : bytes.size();
        line.text = bytes.substr(pos, end - pos);
        line.carriageReturn = !line.text.empty() && line.text.back() == '\r';
        line.comma = line.text.find(',');
        if (line.comma != std::string_view::npos) {
            line.key = line.text.substr(0, line.comma);
            line.id = line.text.substr(line.comma + 1);
            if (line.carriageReturn)
                line.id.remove_suffix(1);
        }
        lines.push_back(line);
        pos = end + 1;
    }
    return lines;
}

std::vector<KeyRow> ReadKeyTableAsLibrary(std::string_view bytes) {
    std::vector<KeyRow> rows;
    const char* start = bytes.data();
    const char* end = start + bytes.size();
    const char* pos = start;
    bool keyState = true;
    KeyRow row;
    while (pos < end) {
        const auto left = static_cast<std::size_t>(end - pos);
        const char* found = static_cast<const char*>(std::memchr(pos, keyState ? ',' : '\n', left));
        if (!found)
            break;
        const std::string_view field(pos, static_cast<std::size_t>(found - pos));
        if (keyState) {
            row.keyOffset = static_cast<std::size_t>(pos - start);
            row.key = field;
        } else {
            row.idOffset = static_cast<std::size_t>(pos - start);
            row.id = field;
            rows.push_back(row);
        }
        pos = found + 1;
        keyState = !keyState;
    }
    return rows;
}

} // namespace QanTool

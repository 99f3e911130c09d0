// KeyTable.cpp: a key table read line by line, as its author wrote it, and set beside the
// library's own scan.
#include "KeyTable.h"

#include "Bytes.h"

#include <unordered_map>

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

KeyTableReadings CompareKeyTable(std::string_view bytes) {
    KeyTableReadings r;
    r.lines = ReadKeyLines(bytes);
    r.scan = Framework::Internal::ScanKeyTable(bytes);
    std::unordered_map<std::size_t, std::size_t> rowAt; // key offset to row index
    for (std::size_t i = 0; i < r.scan.rows.size(); ++i)
        rowAt.emplace(OffsetIn(bytes, r.scan.rows[i].key), i);
    r.readings.reserve(r.lines.size());
    for (const auto& line : r.lines) {
        KeyLineReading reading;
        if (const auto it = rowAt.find(line.offset); it != rowAt.end()) {
            const auto& row = r.scan.rows[it->second];
            std::string_view key = line.key;
            if (line.offset == 0 && key.substr(0, kByteOrderMark.size()) == kByteOrderMark)
                key.remove_prefix(kByteOrderMark.size());
            reading.row = it->second;
            reading.reading =
                line.comma != std::string_view::npos && row.key == key && row.text == line.id
                    ? Reading::Kept
                    : Reading::Misread;
        }
        r.readings.push_back(reading);
    }
    return r;
}

} // namespace QanTool

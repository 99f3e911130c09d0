// KeyTable.cpp: a key table read line by line, as its author wrote it, and set beside the
// library's own scan.
#include "KeyTable.h"

#include <algorithm>
#include <iterator>

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

const char* SpreadsheetExport(std::string_view bytes) {
    const auto lines = ReadKeyLines(bytes);
    if (lines.empty())
        return nullptr;
    const auto plain = [](std::string_view field) {
        std::string out;
        for (const char c : field)
            if (c != '"' && c != '\r')
                out += static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
        return out;
    };
    const KeyLine& first = lines.front();
    bool header = false;
    if (first.comma != std::string_view::npos) {
        static constexpr std::string_view keys[] = {"key", "keys", "resource key", "resourcekey",
                                                    "name"};
        static constexpr std::string_view ids[] = {"id",       "ids",   "string id",
                                                   "stringid", "value", "text"};
        const std::string key = plain(first.key), id = plain(first.id);
        header = std::find(std::begin(keys), std::end(keys), key) != std::end(keys) &&
                 std::find(std::begin(ids), std::end(ids), id) != std::end(ids);
    }
    bool quoted = false;
    for (const auto& line : lines) {
        std::string_view text = line.text;
        if (!text.empty() && text.back() == '\r')
            text.remove_suffix(1);
        if (text.size() >= 2 && text.front() == '"' &&
            (text.back() == '"' || text.find("\",") != std::string_view::npos))
            quoted = true;
    }
    if (header && quoted)
        return "a header row and quoted fields";
    return header ? "a header row" : quoted ? "quoted fields" : nullptr;
}

} // namespace QanTool

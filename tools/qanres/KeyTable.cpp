// KeyTable.cpp: a key table read line by line, as its author wrote it.
#include "KeyTable.h"

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

} // namespace QanTool

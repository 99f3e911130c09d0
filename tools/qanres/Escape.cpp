// Escape.cpp: visible control characters for the tool's --escape option.
#include "Escape.h"

#include <cstdio>

namespace QanTool {

std::string EscapeControls(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        switch (c) {
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\t':
            out += "\\t";
            break;
        case '\r':
            out += "\\r";
            break;
        default:
            if (byte < 0x20 || byte == 0x7F) {
                char hex[5];
                std::snprintf(hex, sizeof hex, "\\x%02X", static_cast<unsigned>(byte));
                out += hex;
            } else {
                out += c;
            }
        }
    }
    return out;
}

} // namespace QanTool

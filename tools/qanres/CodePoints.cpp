// CodePoints.cpp: the library's UTF-8 reader decides what a sequence is, so the tool and
// the library never disagree about a text's characters.
#include "CodePoints.h"

#include "base/Unicode.h"

namespace QanTool {

std::u32string ToCodePoints(std::string_view utf8) {
    std::u32string out;
    out.reserve(utf8.size());
    while (!utf8.empty()) {
        char32_t value = 0;
        std::size_t length = Framework::Unicode::ReadUtf8Sequence(utf8, value);
        if (length == 0) {
            value = Framework::Unicode::kReplacementCharacter;
            // One replacement per maximal subpart: skip the continuation bytes that a
            // valid lead byte promised, as far as they are there.
            length = 1;
            const auto lead = static_cast<unsigned char>(utf8[0]);
            const std::size_t expected = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 1;
            while (length < expected && length < utf8.size() &&
                   (static_cast<unsigned char>(utf8[length]) & 0xC0) == 0x80)
                ++length;
        }
        out += value;
        utf8.remove_prefix(length);
    }
    return out;
}

void AppendUtf8(std::string& out, char32_t value) {
    if (value < 0x80) {
        out += static_cast<char>(value);
    } else if (value < 0x800) {
        out += static_cast<char>(0xC0 | (value >> 6));
        out += static_cast<char>(0x80 | (value & 0x3F));
    } else if (value < 0x10000) {
        out += static_cast<char>(0xE0 | (value >> 12));
        out += static_cast<char>(0x80 | ((value >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (value & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (value >> 18));
        out += static_cast<char>(0x80 | ((value >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((value >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (value & 0x3F));
    }
}

std::string ToUtf8(std::u32string_view text) {
    std::string out;
    out.reserve(text.size());
    for (const char32_t c : text)
        AppendUtf8(out, c);
    return out;
}

} // namespace QanTool

// StoredText.cpp: the encoder mirrors the decoder's steps backwards. The decoder replaces
// entities first and then works on backslashes only, so a character written as a numeric
// reference never takes part in an escape: that is how a control character or an escape
// letter that follows a literal backslash is kept out of the pair look-behind.
#include "StoredText.h"

#include "base/Unicode.h"
#include "strings/DecodeStringText.h"

namespace QanTool {

std::string DecodeStoredText(std::string_view stored) {
    const auto wide = Framework::Internal::DecodeStringText(stored);
    return Framework::Utf8::Encode(wide);
}

std::optional<std::string> EncodeStoredText(std::string_view text) {
    if (Framework::Unicode::FindInvalidUtf8(text) != std::string_view::npos)
        return std::nullopt;
    std::string out;
    out.reserve(text.size() + text.size() / 8);
    // Whether the previous character was a backslash: the decoder would then see the
    // doubled backslash it was written as right before the next character.
    bool afterBackslash = false;
    for (const char c : text) {
        const bool wasAfterBackslash = afterBackslash;
        afterBackslash = false;
        switch (c) {
        case '\0':
            return std::nullopt;
        case '\\':
            out += "\\\\";
            afterBackslash = true;
            break;
        case '\n':
            out += wasAfterBackslash ? "&#10;" : "\\n";
            break;
        case '\r':
            out += wasAfterBackslash ? "&#13;" : "\\r";
            break;
        case '\t':
            out += wasAfterBackslash ? "&#9;" : "\\t";
            break;
        case 'n':
        case 'r':
        case 't':
            // Decoded the same either way; the reference keeps "\\n" out of the file, which
            // lint reports as a likely mistake.
            if (wasAfterBackslash)
                out += "&#" + std::to_string(static_cast<int>(c)) + ";";
            else
                out += c;
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '&':
            out += "&amp;";
            break;
        case '"':
            out += "&quot;";
            break;
        default: {
            const auto byte = static_cast<unsigned char>(c);
            if (byte < 0x20 || byte == 0x7F)
                out += "&#" + std::to_string(byte) + ";";
            else
                out += c;
        }
        }
    }
    return out;
}

} // namespace QanTool

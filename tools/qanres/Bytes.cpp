// Bytes.cpp: the checker's byte helpers, on the library's UTF-8 reader and surrogate
// arithmetic.
#include "Bytes.h"

#include "base/Unicode.h"

#include <cstdio>

namespace QanTool {

namespace Unicode = Framework::Unicode;

// The library decodes to wchar_t; a 32-bit wchar_t holds a code point beyond U+FFFF whole,
// which is split into its surrogate pair so that the order is UTF-16's on every system.
std::u16string ToUtf16(std::string_view utf8) {
    std::u16string out;
    for (const wchar_t unit : Framework::Utf8::Decode(utf8)) {
        const auto c = static_cast<char32_t>(unit);
        if (c >= 0x10000) {
            out.push_back(static_cast<char16_t>(Unicode::HighSurrogateOf(c)));
            out.push_back(static_cast<char16_t>(Unicode::LowSurrogateOf(c)));
        } else {
            out.push_back(static_cast<char16_t>(c));
        }
    }
    return out;
}

// Where wchar_t is 32 bits wide the pairs are joined first; the library's encoder turns
// unpaired surrogates into U+FFFD.
std::string FromUtf16(std::u16string_view text) {
    QanStringT<wchar_t> wide;
    if constexpr (sizeof(wchar_t) == sizeof(char16_t)) {
        wide.assign(text.begin(), text.end());
    } else {
        for (const char32_t c : ToCodePoints(text))
            wide.push_back(static_cast<wchar_t>(c));
    }
    return Framework::Utf8::Encode(wide);
}

std::u32string ToCodePoints(std::u16string_view text) {
    std::u32string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t c = text[i];
        if (Unicode::IsHighSurrogate(c) && i + 1 < text.size() &&
            Unicode::IsLowSurrogate(text[i + 1])) {
            c = Unicode::CombineSurrogates(c, text[i + 1]);
            ++i;
        }
        out.push_back(c);
    }
    return out;
}

std::string Quote(std::string_view bytes) {
    std::string out = "'";
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    std::size_t i = 0;
    while (i < bytes.size()) {
        char32_t c = 0;
        std::size_t n = Unicode::ReadUtf8Sequence(bytes.substr(i), c);
        if (n == 0 || c < 0x20 || c == 0x7F) {
            char hex[8];
            std::snprintf(hex, sizeof hex, "\\x%02X", static_cast<unsigned>(p[i]));
            out += hex;
            n = 1;
        } else {
            out.append(bytes.substr(i, n));
        }
        i += n;
    }
    return out + "'";
}

} // namespace QanTool

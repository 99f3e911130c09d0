// Bytes.cpp: UTF-8 validation for the checker, written independently of the library's
// decoder; conversions go through the library's converter, with surrogates split here.
#include "Bytes.h"

#include "platform/Utf8.h"

#include <cstdio>
#include <cstring>

namespace QanTool {
namespace {

// Length of the well-formed sequence at p (1 to 4), or 0 when the bytes there are not one.
std::size_t SequenceLength(const unsigned char* p, std::size_t left, char32_t& value) {
    const unsigned char b0 = p[0];
    if (b0 < 0x80) {
        value = b0;
        return 1;
    }
    std::size_t n = 0;
    unsigned char lo = 0x80, hi = 0xBF;
    if (b0 >= 0xC2 && b0 <= 0xDF) {
        n = 2;
        value = b0 & 0x1F;
    } else if (b0 >= 0xE0 && b0 <= 0xEF) {
        n = 3;
        value = b0 & 0x0F;
        if (b0 == 0xE0)
            lo = 0xA0;
        if (b0 == 0xED)
            hi = 0x9F;
    } else if (b0 >= 0xF0 && b0 <= 0xF4) {
        n = 4;
        value = b0 & 0x07;
        if (b0 == 0xF0)
            lo = 0x90;
        if (b0 == 0xF4)
            hi = 0x8F;
    } else {
        return 0;
    }
    if (left < n)
        return 0;
    for (std::size_t i = 1; i < n; ++i) {
        const unsigned char b = p[i];
        if (b < (i == 1 ? lo : 0x80) || b > (i == 1 ? hi : 0xBF))
            return 0;
        value = (value << 6) | (b & 0x3F);
    }
    return n;
}

} // namespace

std::size_t FindInvalidUtf8(std::string_view bytes) {
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    std::size_t i = 0;
    while (i < bytes.size()) {
        char32_t c = 0;
        const std::size_t n = SequenceLength(p + i, bytes.size() - i, c);
        if (n == 0)
            return i;
        i += n;
    }
    return std::string_view::npos;
}

int CompareKeyOrder(std::string_view a, std::string_view b) {
    const std::size_t n = a.size() < b.size() ? a.size() : b.size();
    if (n > 0)
        if (const int r = std::memcmp(a.data(), b.data(), n); r != 0)
            return r < 0 ? -1 : 1;
    if (a.size() == b.size())
        return 0;
    return a.size() < b.size() ? -1 : 1;
}

// The library decodes to wchar_t; a 32-bit wchar_t holds a code point beyond U+FFFF whole,
// which is split into its surrogate pair so that the order is UTF-16's on every system.
std::u16string ToUtf16(std::string_view utf8) {
    std::u16string out;
    for (const wchar_t unit : Framework::Utf8::Decode(utf8)) {
        const auto c = static_cast<char32_t>(unit);
        if (c >= 0x10000) {
            out.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
            out.push_back(static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF)));
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
        if (c >= 0xD800 && c <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
            text[i + 1] <= 0xDFFF) {
            c = 0x10000 + ((c - 0xD800) << 10) + (text[i + 1] - 0xDC00);
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
        std::size_t n = SequenceLength(p + i, bytes.size() - i, c);
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

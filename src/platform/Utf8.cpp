#include "platform/Utf8.h"

#include <cstdint>

namespace Framework::Utf8 {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

void AppendScalar(char32_t c, QanStringT<wchar_t>& out) {
    if constexpr (sizeof(wchar_t) == 2) {
        if (c >= 0x10000) {
            c -= 0x10000;
            out.push_back(static_cast<wchar_t>(0xD800 + (c >> 10)));
            out.push_back(static_cast<wchar_t>(0xDC00 + (c & 0x3FF)));
            return;
        }
    }
    out.push_back(static_cast<wchar_t>(c));
}

// Valid second-byte range for a lead byte (Unicode Table 3-7); the rest are 80..BF.
bool SecondByteFits(unsigned char lead, unsigned char b) {
    switch (lead) {
    case 0xE0:
        return b >= 0xA0 && b <= 0xBF;
    case 0xED:
        return b >= 0x80 && b <= 0x9F;
    case 0xF0:
        return b >= 0x90 && b <= 0xBF;
    case 0xF4:
        return b >= 0x80 && b <= 0x8F;
    default:
        return b >= 0x80 && b <= 0xBF;
    }
}

} // namespace

void DecodeAppend(QanStringViewT<char> bytes, QanStringT<wchar_t>& out) {
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    const auto* end = p + bytes.size();
    while (p < end) {
        const unsigned char lead = *p;
        if (lead < 0x80) {
            out.push_back(static_cast<wchar_t>(lead));
            ++p;
            continue;
        }
        int trail;
        char32_t c;
        if (lead >= 0xC2 && lead <= 0xDF) {
            trail = 1;
            c = lead & 0x1F;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            trail = 2;
            c = lead & 0x0F;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            trail = 3;
            c = lead & 0x07;
        } else {
            out.push_back(static_cast<wchar_t>(kReplacement));
            ++p;
            continue;
        }
        ++p;
        int taken = 0;
        bool ok = true;
        while (taken < trail) {
            if (p >= end) {
                ok = false;
                break;
            }
            const unsigned char b = *p;
            const bool fits = taken == 0 ? SecondByteFits(lead, b) : (b >= 0x80 && b <= 0xBF);
            if (!fits) {
                ok = false;
                break;
            }
            c = (c << 6) | (b & 0x3F);
            ++p;
            ++taken;
        }
        AppendScalar(ok ? c : kReplacement, out);
    }
}

QanStringT<wchar_t> Decode(QanStringViewT<char> bytes) {
    QanStringT<wchar_t> out;
    out.reserve(bytes.size());
    DecodeAppend(bytes, out);
    return out;
}

QanStringT<char> Encode(QanStringViewT<wchar_t> text) {
    QanStringT<char> out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t c = static_cast<char32_t>(text[i]);
        if constexpr (sizeof(wchar_t) == 2) {
            if (c >= 0xD800 && c <= 0xDBFF && i + 1 < text.size()) {
                const char32_t low = static_cast<char16_t>(text[i + 1]);
                if (low >= 0xDC00 && low <= 0xDFFF) {
                    c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
                    ++i;
                }
            }
        }
        if ((c >= 0xD800 && c <= 0xDFFF) || c > 0x10FFFF)
            c = kReplacement;
        if (c < 0x80) {
            out.push_back(static_cast<char>(c));
        } else if (c < 0x800) {
            out.push_back(static_cast<char>(0xC0 | (c >> 6)));
            out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        } else if (c < 0x10000) {
            out.push_back(static_cast<char>(0xE0 | (c >> 12)));
            out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        } else {
            out.push_back(static_cast<char>(0xF0 | (c >> 18)));
            out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        }
    }
    return out;
}

} // namespace Framework::Utf8

// Unicode.cpp: the UTF-8 decoder and encoder, and UTF-8 validation, all built on one
// table of well-formed byte sequences.
#include "base/Unicode.h"

#include <cstring>

#include <cstdint>

namespace Framework::Unicode {

void AppendWide(char32_t value, QanStringT<wchar_t>& out) {
    if constexpr (sizeof(wchar_t) == 2) {
        if (value >= 0x10000) {
            out.push_back(static_cast<wchar_t>(HighSurrogateOf(value)));
            out.push_back(static_cast<wchar_t>(LowSurrogateOf(value)));
            return;
        }
    }
    out.push_back(static_cast<wchar_t>(value));
}

namespace {

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

// Reads one sequence at p (before end): its length and scalar value, or a length of 0
// when p starts an ill-formed sequence; consumed then tells how many bytes form its
// maximal subpart.
std::size_t ReadSequence(const unsigned char* p, const unsigned char* end, char32_t& value,
                         std::size_t& consumed) {
    const unsigned char lead = *p;
    if (lead < 0x80) {
        value = lead;
        consumed = 1;
        return 1;
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
        consumed = 1;
        return 0;
    }
    const unsigned char* q = p + 1;
    for (int taken = 0; taken < trail; ++taken, ++q) {
        const bool fits =
            q < end && (taken == 0 ? SecondByteFits(lead, *q) : (*q >= 0x80 && *q <= 0xBF));
        if (!fits) {
            consumed = static_cast<std::size_t>(q - p);
            return 0;
        }
        c = (c << 6) | (*q & 0x3F);
    }
    value = c;
    consumed = static_cast<std::size_t>(q - p);
    return consumed;
}

} // namespace

void AppendUtf8(char32_t c, QanStringT<char>& out) {
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

std::u32string DecodeScalars(QanStringViewT<char> bytes) {
    std::u32string out;
    out.reserve(bytes.size());
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    const auto* end = p + bytes.size();
    while (p < end) {
        char32_t value = 0;
        std::size_t consumed = 0;
        const bool ok = ReadSequence(p, end, value, consumed) != 0;
        out.push_back(ok ? value : kReplacementCharacter);
        p += consumed;
    }
    return out;
}

std::size_t ReadUtf8Sequence(QanStringViewT<char> bytes, char32_t& value) noexcept {
    if (bytes.empty())
        return 0;
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    std::size_t consumed = 0;
    return ReadSequence(p, p + bytes.size(), value, consumed);
}

std::size_t FindInvalidUtf8(QanStringViewT<char> bytes) noexcept {
    const auto* start = reinterpret_cast<const unsigned char*>(bytes.data());
    const auto* end = start + bytes.size();
    for (const unsigned char* p = start; p < end;) {
        char32_t value = 0;
        std::size_t consumed = 0;
        if (ReadSequence(p, end, value, consumed) == 0)
            return static_cast<std::size_t>(p - start);
        p += consumed;
    }
    return QanStringViewT<char>::npos;
}

} // namespace Framework::Unicode

namespace Framework::Utf8 {

using Unicode::kReplacementCharacter;

void DecodeAppend(QanStringViewT<char> bytes, QanStringT<wchar_t>& out) {
    // Never more wide units than bytes (a sequence of n bytes makes at most two units, and a
    // refused byte one), so the room is made once and written through a pointer.
    const std::size_t start = out.size();
    out.resize(start + bytes.size());
    wchar_t* write = out.data() + start;
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    const auto* end = p + bytes.size();
    while (p < end) {
        // Plain ASCII, the common case, without a call.
        if (*p < 0x80) {
            *write++ = static_cast<wchar_t>(*p++);
            continue;
        }
        // Well-formed two-byte sequences (Latin, Greek, Cyrillic, Hebrew, Arabic and more)
        // and three-byte ones whose lead allows any second byte (most of the rest of the
        // Basic Multilingual Plane) are taken here; everything else by the full rules.
        if (*p >= 0xC2 && *p <= 0xDF && end - p >= 2 && (p[1] & 0xC0) == 0x80) {
            *write++ = static_cast<wchar_t>((p[0] & 0x1F) << 6 | (p[1] & 0x3F));
            p += 2;
            continue;
        }
        if (*p >= 0xE1 && *p <= 0xEF && *p != 0xED && end - p >= 3 && (p[1] & 0xC0) == 0x80 &&
            (p[2] & 0xC0) == 0x80) {
            *write++ =
                static_cast<wchar_t>((p[0] & 0x0F) << 12 | (p[1] & 0x3F) << 6 | (p[2] & 0x3F));
            p += 3;
            continue;
        }
        char32_t value = 0;
        std::size_t consumed = 0;
        if (Framework::Unicode::ReadSequence(p, end, value, consumed) == 0)
            value = kReplacementCharacter;
        p += consumed;
        if constexpr (sizeof(wchar_t) == 2) {
            if (value >= 0x10000) {
                *write++ = static_cast<wchar_t>(Unicode::HighSurrogateOf(value));
                *write++ = static_cast<wchar_t>(Unicode::LowSurrogateOf(value));
                continue;
            }
        }
        *write++ = static_cast<wchar_t>(value);
    }
    out.resize(static_cast<std::size_t>(write - out.data()));
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
            if (Unicode::IsHighSurrogate(c) && i + 1 < text.size()) {
                const char32_t low = static_cast<char16_t>(text[i + 1]);
                if (Unicode::IsLowSurrogate(low)) {
                    c = Unicode::CombineSurrogates(c, low);
                    ++i;
                }
            }
        }
        if (Unicode::IsSurrogate(c) || c > 0x10FFFF)
            c = kReplacementCharacter;
        Unicode::AppendUtf8(c, out);
    }
    return out;
}

} // namespace Framework::Utf8

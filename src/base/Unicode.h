// Unicode.h: UTF-8 to wchar_t and back, and the surrogate arithmetic that every UTF-16
// reader and writer of the library and its tool shares. wchar_t is UTF-16 on Windows and
// UTF-32 elsewhere; both directions handle every Unicode scalar value, and bytes that are
// not UTF-8 become U+FFFD, one per maximal subpart of an ill-formed sequence.
#pragma once

#include <framework/QanString.h>

#include <cstddef>
#include <string>

namespace Framework::Unicode {

inline constexpr char32_t kReplacementCharacter = 0xFFFD;

constexpr bool IsHighSurrogate(char32_t unit) noexcept {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool IsLowSurrogate(char32_t unit) noexcept {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}
constexpr bool IsSurrogate(char32_t unit) noexcept {
    return unit >= 0xD800 && unit <= 0xDFFF;
}
// The scalar value of a high and a low surrogate, e.g. (0xD83D, 0xDE00) gives U+1F600.
constexpr char32_t CombineSurrogates(char32_t high, char32_t low) noexcept {
    return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
}
// The two halves of a value above U+FFFF, e.g. U+1F600 gives 0xD83D and 0xDE00.
constexpr char32_t HighSurrogateOf(char32_t value) noexcept {
    return 0xD800 + ((value - 0x10000) >> 10);
}
constexpr char32_t LowSurrogateOf(char32_t value) noexcept {
    return 0xDC00 + ((value - 0x10000) & 0x3FF);
}

// Appends one scalar value as wchar_t: two units where wchar_t is 16 bits wide and the
// value is above U+FFFF, one otherwise.
void AppendWide(char32_t value, QanStringT<wchar_t>& out);

// Appends the UTF-8 form of one scalar value: AppendUtf8(U'\u00E9', s) appends "\xC3\xA9".
void AppendUtf8(char32_t value, QanStringT<char>& out);

// The scalar values of UTF-8 bytes, each ill-formed maximal subpart as one U+FFFD: the
// characters a decoded text holds, whatever the width of wchar_t.
std::u32string DecodeScalars(QanStringViewT<char> bytes);

// Length (1 to 4) of the well-formed UTF-8 sequence that starts bytes, with its scalar
// value; 0 when bytes is empty or starts an ill-formed sequence.
// ReadUtf8Sequence("\xC3\xA9x", v) is 2 with v == U+00E9.
std::size_t ReadUtf8Sequence(QanStringViewT<char> bytes, char32_t& value) noexcept;

// Offset of the first byte that does not start or continue a well-formed UTF-8 sequence,
// or npos when all of bytes is UTF-8. FindInvalidUtf8("a\xC3\xA9") is npos.
std::size_t FindInvalidUtf8(QanStringViewT<char> bytes) noexcept;

} // namespace Framework::Unicode

namespace Framework::Utf8 {

// Decodes bytes; a zero byte is decoded like any other character.
QanStringT<wchar_t> Decode(QanStringViewT<char> bytes);
// Appends the decoding of bytes to out (no allocation when out has room).
void DecodeAppend(QanStringViewT<char> bytes, QanStringT<wchar_t>& out);
// Encodes wide text. Unpaired surrogates (and values beyond U+10FFFF) become U+FFFD.
QanStringT<char> Encode(QanStringViewT<wchar_t> text);

} // namespace Framework::Utf8

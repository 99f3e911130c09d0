// Utf8.h: UTF-8 to wchar_t and back. wchar_t is UTF-16 on Windows and UTF-32 elsewhere;
// both directions handle every Unicode scalar value, and bytes that are not UTF-8 become
// U+FFFD, one per maximal subpart of an ill-formed sequence.
#pragma once

#include <framework/QanString.h>

namespace Framework::Utf8 {

// Decodes bytes; a zero byte is decoded like any other character.
QanStringT<wchar_t> Decode(QanStringViewT<char> bytes);
// Appends the decoding of bytes to out (no allocation when out has room).
void DecodeAppend(QanStringViewT<char> bytes, QanStringT<wchar_t>& out);
// Encodes wide text. Unpaired surrogates (and values beyond U+10FFFF) become U+FFFD.
QanStringT<char> Encode(QanStringViewT<wchar_t> text);

} // namespace Framework::Utf8

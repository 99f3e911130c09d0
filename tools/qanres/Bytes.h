// Bytes.h: small byte-level helpers shared by the file checkers: UTF-8 validation, the
// byte-order mark, key order of the string tables and UTF-16 order of the icon files.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace QanTool {

inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Offset of the first byte that does not start or continue a well-formed UTF-8 sequence,
// or npos when all of bytes is UTF-8.
std::size_t FindInvalidUtf8(std::string_view bytes);

// The string tables' key order: a three-way comparison of unsigned bytes, shorter first
// on a common prefix.
int CompareKeyOrder(std::string_view a, std::string_view b);

// UTF-16 code units of UTF-8 text (ill-formed bytes become U+FFFD), the order in which
// the icon map and cursor table are searched on Windows.
std::u16string ToUtf16(std::string_view utf8);
std::string FromUtf16(std::u16string_view text);
// Code points of UTF-16 text (unpaired surrogates kept as they are): the order of wide
// strings where wchar_t is 32 bits wide.
std::u32string ToCodePoints(std::u16string_view text);

// Text shown in a message: quoted, with control bytes and non-UTF-8 bytes escaped.
std::string Quote(std::string_view bytes);

} // namespace QanTool

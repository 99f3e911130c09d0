// Bytes.h: small byte-level helpers shared by the file checkers: the byte-order mark,
// UTF-16 order of the icon files and quoting for messages.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace QanTool {

inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

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

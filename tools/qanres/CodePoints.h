// CodePoints.h: UTF-8 to code points and back, for the tool's text rewrites that work
// character by character (pseudo-localisation, XML character references).
#pragma once

#include <string>
#include <string_view>

namespace QanTool {

// Bytes that are not UTF-8 become U+FFFD, one per maximal ill-formed subpart.
std::u32string ToCodePoints(std::string_view utf8);
void AppendUtf8(std::string& out, char32_t value);
std::string ToUtf8(std::u32string_view text);

} // namespace QanTool

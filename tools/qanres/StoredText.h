// StoredText.h: the stored form of a string text and back. Decoding is the library's own
// (DecodeStringText); encoding is its exact inverse, so that a text written by the tool is
// handed out by the library character for character.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace QanTool {

// The text that the library hands out for a stored text, as UTF-8.
std::string DecodeStoredText(std::string_view stored);

// The stored form of a handed-out text (UTF-8): "<", ">", "&" and '"' as entities, a
// backslash doubled, line feed, carriage return and tab as \n, \r, \t (as &#10;, &#13;, &#9;
// right after a backslash, where the pair would not be converted), the letters n, r and t
// right after a backslash as numeric references (so that lint sees no surprise), and the
// other C0 controls and DEL as numeric references. Nothing when the text holds a zero
// character, which no stored text can carry, or is not UTF-8.
std::optional<std::string> EncodeStoredText(std::string_view text);

} // namespace QanTool

// Tokenize.h: splits a text into tokens the way the platform string class's Tokenize does,
// returning views into the text and reporting the end by a negative position.
#pragma once

#include <framework/QanString.h>

#include <cstddef>

namespace Framework::Internal {

// Returns the next token at or after pos. Delimiters before the token are skipped, so a
// text that starts with a delimiter loses it and a run of adjacent delimiters separates
// like a single one: no empty token is ever returned while tokens remain. pos moves past
// the delimiter that ends the token (to text.size() + 1 when the token ends the text).
// When nothing but delimiters remains, or pos is negative or past the end, the result is
// empty and pos becomes -1.
QanStringViewT<wchar_t> Tokenize(QanStringViewT<wchar_t> text, QanStringViewT<wchar_t> delims,
                                 std::ptrdiff_t& pos);

} // namespace Framework::Internal

// DecodeStringText.h: turns a stored UTF-8 text into the wide text that callers receive:
// decoding, entity reversal, then the backslash escapes.
#pragma once

#include <framework/QanString.h>

namespace Framework::Internal {

// A zero byte ends the text; bytes that are not UTF-8 become U+FFFD.
QanStringT<wchar_t> DecodeStringText(QanStringViewT<char> text);

} // namespace Framework::Internal

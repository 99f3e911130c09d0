// DecodeStringText.h: turns a stored UTF-8 text into the wide text that callers receive:
// decoding, entity reversal, then the backslash escapes.
#pragma once

#include <framework/QanString.h>

namespace Framework::Internal {

// A zero byte ends the text; bytes that are not UTF-8 become U+FFFD.
QanStringT<wchar_t> DecodeStringText(QanStringViewT<char> text);

// Whether a text holds no zero byte, no '&' and no backslash: then DecodeStringText only
// decodes its UTF-8, and DecodePlainText, which skips the looking, answers the same. A
// look-up that remembers a text remembers this too. Example: IsPlainText("Open") is true.
bool IsPlainText(QanStringViewT<char> text);
QanStringT<wchar_t> DecodePlainText(QanStringViewT<char> text);

} // namespace Framework::Internal

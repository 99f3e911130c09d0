// UnescapeControl.h: turns a backslash escape ("\n", "\r" or "\t") into its control
// character, leaving a pair alone when a backslash stands right before it.
#pragma once

#include <framework/QanString.h>

namespace Framework::Internal {

// Rewrites text in place (it only ever shrinks). The escape letter is "t" for ch 9, "r"
// for ch 13 and "n" for any other ch: UnescapeControlInPlace(t, 9) turns "a\\tb" into
// "a<TAB>b" and leaves "\\\\t" as it is.
void UnescapeControlInPlace(QanStringT<wchar_t>& text, wchar_t ch);

} // namespace Framework::Internal

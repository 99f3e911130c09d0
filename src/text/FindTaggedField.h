// FindTaggedField.h: the one reader beneath every TextParser getter. Finds the field with
// a two-letter tag in a tagged text, or the line for "LP", "TT" or "CT" in an untagged one.
#pragma once

#include "text/TaggedText.h"

#include <framework/QanString.h>

namespace Framework::Internal {

// Empties out, then fills it with the field named by tag and returns whether it was found.
// Tagged text (first code unit U+0001): the first field whose first two code units equal
// tag; the code unit after them (normally "=") is skipped unchecked. Untagged text: lines
// "LP" 1, "TT" 2, "CT" 3 (falling back to line 2, then line 1), true even when empty. An
// empty text or a null tag gives false.
bool FindTaggedField(const QanStringT<wchar_t>& text, const wchar_t* tag, QanStringT<wchar_t>& out);

// The same on a view, so that the getters need not copy their text first.
bool FindTaggedFieldIn(QanStringViewT<wchar_t> text, const wchar_t* tag, QanStringT<wchar_t>& out);

} // namespace Framework::Internal

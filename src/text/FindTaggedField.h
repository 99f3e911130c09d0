// FindTaggedField.h: the one reader beneath every TextParser getter. Finds the field with
// a two-letter tag in a tagged text, or the line for "LP", "TT" or "CT" in an untagged one.
#pragma once

#include <framework/QanString.h>

namespace Framework::Internal {

bool FindTaggedField(const QanStringT<wchar_t>& text, const wchar_t* tag,
                     QanStringT<wchar_t>& out);

} // namespace Framework::Internal

// Backslashes.h: the collapse of doubled backslashes, shared by the string texts' decoding
// and the composed legacy texts.
#pragma once

#include <framework/QanString.h>

namespace Framework::Internal {

// Every pair of backslashes becomes one, left to right: three become two, four become
// two. CollapseBackslashPairs(L"a\\\\\\b") leaves L"a\\\\b".
void CollapseBackslashPairs(QanStringT<wchar_t>& text);

} // namespace Framework::Internal

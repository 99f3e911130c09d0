// StripMenuText.h: removes mnemonic ampersands (1), accelerator text after a tab (2),
// printf conversions (4) and hyphens (8) from a menu text, in place.
#pragma once

#include <framework/Export.h>
#include <framework/QanString.h>

QANRESOURCES_API void StripMenuText(QanStringT<wchar_t>& text, unsigned flags);

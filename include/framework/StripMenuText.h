// StripMenuText.h: removes the decorations of a menu text, in place.
#pragma once

#include <framework/Export.h>
#include <framework/QanString.h>

// StripMenuText()
//
// Removes from text, in one left-to-right pass, the decorations that flags selects
// (other bits are ignored; 0 changes nothing):
//   1  a mnemonic "&" ("&&" becomes one "&");
//   2  the first tab and everything after it (the accelerator text);
//   4  "%" with the letter right after it when that is one of cCdiouxeEfgGnsS ("%5d",
//      "%ls" and "100%" keep their "%");
//   8  every "-".
// Any thread. Example: L"&Open...\tCtrl+O" with flags 3 becomes L"Open...".
QANRESOURCES_API void StripMenuText(QanStringT<wchar_t>& text, unsigned flags);

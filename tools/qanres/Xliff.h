// Xliff.h: XLIFF 2.0 documents: writing a catalogue and reading one back.
#pragma once

#include "Catalogue.h"

#include <string>
#include <string_view>

namespace QanTool {

// One <unit> per string, id and name the string id (the id only when it is an XML name
// token, else "u" and a number), the keys as <note category="KIND">KEY</note>, and a
// <segment> with <source> and, when translated, <target>. Characters that XML 1.0 cannot
// carry (C0 controls but tab, line feed and carriage return; U+FFFE, U+FFFF) are written
// as <cp hex="XXXX"/>, a carriage return as &#13; so that no parser turns it into a line
// feed. srcLang is "und" when unknown.
std::string WriteXliff(const Catalogue& catalogue);

struct XliffFile {
    Catalogue catalogue;
    std::string error; // "line N: what", empty when the file was read
};
// Reads units (string id from "name", else "id"), the text of their segments (joined in
// order, <cp/> decoded) and whether a target is present. Inline markup that stands for
// something else than text (<ph>, <sc>, <ec>) is refused: its meaning would be lost.
XliffFile ReadXliff(std::string_view bytes);

} // namespace QanTool

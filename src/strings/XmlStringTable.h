// XmlStringTable.h: reads a string text file ("startupstrings.xml", "strings.xml" and the
// override file) into a table of id to text rows by a byte scan, not an XML parse.
#pragma once

#include "strings/StringTable.h"

namespace Framework::Internal {

// Fills table from the file at path; sorts the rows by id when sort is set. A file that
// cannot be read, or holds fewer than two lines, leaves the table as it was.
void LoadXmlStringTable(StringTable& table, const QanStringT<wchar_t>& path, bool sort);

} // namespace Framework::Internal

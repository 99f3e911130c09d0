// CsvKeyTable.h: reads a key table ("string.csv", "caption.csv", "tooltipHeader.csv",
// "tooltipBody.csv") into rows of resource key to string id.
#pragma once

#include "strings/StringTable.h"

namespace Framework::Internal {

// Fills table from the file at path. The rows are not sorted: the file must be in key
// order. A file that cannot be read leaves the table as it was.
void LoadCsvKeyTable(StringTable& table, const QanStringT<wchar_t>& path);

} // namespace Framework::Internal

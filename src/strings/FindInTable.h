// FindInTable.h: binary search of a sorted table by key; the text of the first row whose
// key equals the wanted one.
#pragma once

#include "strings/StringTable.h"

#include <optional>

namespace Framework::Internal {

// Of equal keys the first row in table order wins (the first in file order for a file
// loaded unsorted). Nothing is found in an empty table.
std::optional<QanStringViewT<char>> FindInTable(const StringTable& table, QanStringViewT<char> key);

} // namespace Framework::Internal

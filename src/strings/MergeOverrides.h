// MergeOverrides.h: lays the override texts over the full text table once, when the full
// file has been read.
#pragma once

#include "strings/StringTable.h"

namespace Framework::Internal {

// Sorts overrides by id, then replaces the text of each row of strings whose id has an
// override. Overrides for ids that strings lacks are dropped; nothing is inserted. The
// replaced texts point into the buffer of overrides, which must outlive strings' use.
void MergeOverrides(StringTable& strings, StringTable& overrides);

} // namespace Framework::Internal

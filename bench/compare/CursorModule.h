// CursorModule.h: writes the smallest PE file that carries a cursor table as raw-data
// resource 2, standing in for the platform icon library QanIcons.dll.
#pragma once

#include "Corpus.h"

#include <filesystem>
#include <vector>

namespace Compare {

// Writes the table of rows (sorted by name) as QanIcons.dll at path.
void WriteCursorModule(const std::filesystem::path& path, const std::vector<CursorRow>& rows);

} // namespace Compare

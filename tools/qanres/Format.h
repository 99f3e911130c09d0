// Format.h: rewrites a resource directory's files into the form the library's readers
// need (sorted, line feeds only, a final line feed), without losing a byte of content.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace QanTool {

struct FileChange {
    std::string name;  // relative to the directory
    std::string bytes; // the new content
};

struct FormatPlan {
    std::vector<FileChange> changes; // only files whose bytes change
    std::string refusal;             // non-empty: nothing may be written
};

// Works out the new content of every file; refuses the whole directory when any one file
// cannot be repaired without guessing what its author meant.
FormatPlan PlanFormat(const std::filesystem::path& dir);

// Writes each change to a new file beside the old one and renames it into place.
// Returns an error message, empty on success.
std::string ApplyFormat(const std::filesystem::path& dir, const FormatPlan& plan);

// The single-file rewrites, exposed for tests; each returns false with a reason (the
// position as "line:column: ") when it refuses.
bool FormatTextFile(std::string_view bytes, std::string& out, std::string& reason);
bool FormatKeyTable(std::string_view bytes, std::string& out, std::string& reason);
bool FormatIconMap(std::string_view bytes, std::string& out, std::string& reason);

} // namespace QanTool

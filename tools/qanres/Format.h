// Format.h: rewrites a resource directory's files into the form the library's readers
// need (sorted, line feeds only, a final line feed), without losing a byte of content.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace QanTool {

struct FileChange {
    std::string name;     // relative to the directory
    std::string bytes;    // the new content
    std::string original; // the content as read, to notice an edit made in the meantime
};

struct FormatPlan {
    std::vector<FileChange> changes; // only files whose bytes change
    std::string refusal;             // non-empty: nothing may be written
};

// Works out the new content of every file; refuses the whole directory when any one file
// cannot be repaired without guessing what its author meant.
FormatPlan PlanFormat(const std::filesystem::path& dir);

struct FormatResult {
    std::vector<std::string> replaced; // the files replaced, in the order of the plan
    std::string error;                 // empty on success
};

// Writes every change to a new file of its own beside the old one (created exclusively,
// with the old one's mode, flushed to the disk), and only when all are written and no
// original changed since it was read, renames them into place. Any failure before the
// first rename leaves every original as it was and no new file behind.
FormatResult ApplyFormat(const std::filesystem::path& dir, const FormatPlan& plan);

// The single-file rewrites, exposed for tests; each returns false with a reason (the
// position as "line:column: ") when it refuses.
bool FormatTextFile(std::string_view bytes, std::string& out, std::string& reason);
bool FormatKeyTable(std::string_view bytes, std::string& out, std::string& reason);
bool FormatIconMap(std::string_view bytes, std::string& out, std::string& reason);

} // namespace QanTool

// StringFileWriter.h: string text files in the canonical stored form (the form fmt
// leaves unchanged) and their safe writing into a master string directory.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace QanTool {

struct StoredString {
    std::string id;
    std::string stored; // already encoded (EncodeStoredText)
};

// Declaration on line 1, root start tag on line 2, one "  <s id="ID">TEXT</s>" a line in
// byte order of the ids, the root end tag, line feeds only and a final one.
std::string CanonicalStringFile(std::vector<StoredString> strings);

// Whether id can stand between the double quotes of a string element: not empty, valid
// UTF-8, and no double quote, "<", ">", "&" or control character.
bool IsWritableId(const std::string& id);

struct NewFile {
    std::string name; // relative to the directory
    std::string bytes;
};

// Writes every file beside its target first (created exclusively, flushed), then moves them
// into place: an existing file through the formatter's all-or-nothing replacement, a new
// one by a link that fails if the name appeared meanwhile. Returns "" or what failed.
std::string WriteFilesSafely(const std::filesystem::path& dir, const std::vector<NewFile>& files);

} // namespace QanTool

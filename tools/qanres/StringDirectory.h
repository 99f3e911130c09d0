// StringDirectory.h: a master string directory and the key tables of a resource directory
// read with the library's own readers, as the texts a host would be handed.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace QanTool {

struct DirectoryString {
    std::string id;
    std::string text; // as handed out, UTF-8
};

struct MasterStrings {
    // Every id of startupstrings.xml and strings.xml, in byte order, with the text the
    // library hands out for it: the override if there is one, else strings.xml, else the
    // start-up file. Of duplicate ids the first in the file counts, as in the library.
    std::vector<DirectoryString> strings;
    std::vector<std::string> startupIds;   // the ids of startupstrings.xml, in byte order
    std::vector<std::string> overrideOnly; // override ids that no text file has: never shown
    bool hasOverrides = false;
};
MasterStrings ReadMasterStrings(const std::filesystem::path& dir);

// The stored texts of one text file as the library reads it (first of duplicates), by id.
std::map<std::string, std::string> ReadStoredTexts(const std::filesystem::path& file);

struct KeyReference {
    std::string kind; // "string", "caption", "tooltip-header" or "tooltip-body"
    std::string key;
};
// For every string id, the resource keys of the four key tables that lead to it.
std::map<std::string, std::vector<KeyReference>>
ReadKeyReferences(const std::filesystem::path& resourceDir);

} // namespace QanTool

// Product.h: a product's strings as the library hands them out: the key tables of its
// resource directory and, per language, the text of every string id after the full load
// (strings.xml, or the start-up texts where it cannot be read, with the overrides laid
// over). Read with the library's own loaders, search and decoding.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace QanTool {

// The four kinds of text, in the order of the library's StringKind.
inline constexpr const char* kKindNames[] = {"string", "caption", "tooltip-header", "tooltip-body"};

struct KeyRow {
    std::string key;
    std::string id;
};

// Rows of string.csv, caption.csv, tooltipHeader.csv and tooltipBody.csv, by kind; a
// missing table has no rows.
struct KeyTables {
    std::vector<KeyRow> kinds[4];
};
KeyTables ReadKeyTables(const std::filesystem::path& resourceDirectory);

// One language: its master string directory and, by id, the texts the library hands out
// (UTF-8). Of duplicate ids the one the library finds wins.
struct Language {
    std::string name; // the directory as given
    std::map<std::string, std::string> texts;
};
Language ReadLanguage(const std::filesystem::path& masterStringDirectory, std::string name);

} // namespace QanTool

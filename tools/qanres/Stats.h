// Stats.h: `qanres stats` and `qanres compare`: how complete each language is, and where a
// translation differs from its source in what code and the library interpret.
#pragma once

#include <filesystem>
#include <map>
#include <ostream>
#include <string>
#include <utility>
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
// (UTF-8), as ReadMasterStrings chooses them.
struct Language {
    std::string name; // the directory as given
    std::map<std::string, std::string> texts;
};
Language ReadLanguage(const std::filesystem::path& masterStringDirectory, std::string name);

struct KindStats {
    std::size_t keys = 0;      // rows of the kind's key table
    std::size_t answered = 0;  // whose id has a text in the language
    std::size_t missing = 0;   // whose id has none: the key answers an empty text
    std::size_t identical = 0; // answered with the source language's text (not counted for
                               // the source itself)
};

struct LanguageStats {
    std::string name;
    std::size_t texts = 0;
    KindStats kinds[4];
};

// languages[0] is the source language.
std::vector<LanguageStats> ComputeStats(const KeyTables& keys,
                                        const std::vector<Language>& languages);
void PrintStats(const std::vector<LanguageStats>& stats, bool json, std::ostream& out);

struct Comparison {
    std::string source, target;
    std::vector<std::string> missing;   // ids with a source text and no target text
    std::vector<std::string> extra;     // ids with a target text and no source text
    std::vector<std::string> identical; // non-empty texts that were not translated
    std::vector<std::pair<std::string, std::vector<std::string>>> differing; // id, what
};

Comparison Compare(const Language& source, const Language& target);
// Returns the exit status: 1 when ids are missing or interpreted parts differ, else 0.
int PrintComparison(const Comparison& comparison, bool json, std::ostream& out);

} // namespace QanTool

// Lint.h: checks a resource directory against every rule the library's readers rely on.
#pragma once

#include "Diagnostics.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace QanTool {

// The files a resource directory may hold, as the library looks for them.
inline constexpr const char* kStartupStrings = "startupstrings.xml";
inline constexpr const char* kFullStrings = "strings.xml";
inline constexpr const char* kOverrideStrings = "override/strings.xml";
inline constexpr const char* kKeyTables[] = {"string.csv", "caption.csv", "tooltipHeader.csv",
                                             "tooltipBody.csv"};
inline constexpr const char* kIconMap = "icons.map.xml";
inline constexpr const char* kIconLibrary = "QanIcons.dll";
inline constexpr const char* kCursorTable = "cursors.bin";

// Where a string id is used: the text file and line that hold it, or the key-table row
// (file, line and column of the id) that names it.
struct TextUse {
    std::string file;
    int line = 0;
};
struct KeyUse {
    std::string file;
    Position at;
    std::string id;
};

// What one directory holds, as the checks of its files read it.
struct DirectoryContents {
    std::size_t files = 0;              // resource files found (read or not)
    std::vector<std::string> textFiles; // the string text files among them
    std::map<std::string, TextUse> ids; // ids of startupstrings.xml and strings.xml
    std::vector<KeyUse> keyUses;        // the ids that the key-table rows name
};

// Checks every resource file of dir on its own and together with the other text files
// of dir; findings go to findings, file names prefixed with displayDir (the directory as
// the user typed it). Whether ids have texts is the product's check (LintProduct).
DirectoryContents LintFiles(const std::filesystem::path& dir, const std::string& displayDir,
                            DiagnosticList& findings);

// A directory of a product as given on the command line.
struct LintDirectoryRef {
    std::filesystem::path path;
    std::string display;
};

struct LintRequest {
    std::vector<LintDirectoryRef> directories; // each recognised by what it holds
    std::optional<LintDirectoryRef> resources; // --resources: the key tables and icon map
    std::vector<LintDirectoryRef> languages;   // --master-strings, the source language first
};

struct LintOutcome {
    DiagnosticList findings;
    std::size_t files = 0;
    std::size_t directories = 0;
    std::string sourceLanguage; // as displayed; empty without languages
};

// Checks a product the way the library reads it: every file of every directory; every
// key-table id against every language's texts; texts that no key reaches; misnamed and
// unknown files. A directory that holds no resource file is searched for the directories
// below it that do (a tree of a resource directory and language directories).
// Example: Lint({.resources = {{"res", "res"}}, .languages = {{"en", "en"}, {"de", "de"}}})
LintOutcome Lint(const LintRequest& request);

// The checks of one directory alone: its files, and its key tables' ids against its own
// text files where it has any.
DiagnosticList LintDirectory(const std::filesystem::path& dir, const std::string& displayDir);

// "checked 7 files in 2 directories: 1 error, 0 warnings (source language: en)"
std::string Summary(const LintOutcome& outcome);
// The same findings and counts as one JSON object, for CI.
std::string FindingsAsJson(const LintOutcome& outcome);

} // namespace QanTool

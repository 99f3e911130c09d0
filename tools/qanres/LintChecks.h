// LintChecks.h: every check of `qanres lint`, with what it finds and how to repair it: the
// list that `qanres lint --help` prints and docs/formats.md describes.
#pragma once

#include <string>

namespace QanTool {

struct LintCheck {
    const char* files;   // which files it reads
    const char* level;   // "error" or "warning"
    const char* finding; // what it reports
    const char* fix;     // what repairs it ("fmt" where qanres fmt does)
};

inline constexpr LintCheck kLintCheckList[] = {
    {"any resource file", "error", "not a regular file, or larger than 4 GiB",
     "replace it with a regular file; the library reads it as missing"},
    {"any resource file", "error", "UTF-16 encoding", "convert to UTF-8 (fmt does not guess)"},
    {"directory", "error", "no resource file in it or below", "point lint at the right directory"},
    {"directory", "warning", "unknown or misnamed file (wrong case, misspelt)",
     "rename it to the name the library reads"},
    {"string text files", "error", "string element on line 1 or 2",
     "fmt moves it below the root start tag"},
    {"string text files", "error", "too few lines", "fmt writes the declaration and root"},
    {"string text files", "error",
     "element the library reads otherwise than written (a second quoted attribute, '>' not "
     "right after the id, self-closing, quotes that pair otherwise)",
     "write <s id=\"ID\">TEXT</s>; fmt refuses, as it would have to guess"},
    {"string text files", "error", "'<' inside a text, unclosed element",
     "write &lt; for '<'; close the element"},
    {"string text files", "error", "comment or stray text with a double quote after line 2",
     "remove the double quote"},
    {"string text files", "error", "invalid UTF-8", "re-save the file as UTF-8"},
    {"string text files", "error", "ids out of order (not for overrides)", "fmt sorts them"},
    {"string text files", "error", "duplicate override ids", "keep one of them"},
    {"string text files", "warning", "duplicate id (the first is used)", "remove the others"},
    {"string text files", "warning", "backslash sequence handed out otherwise than a C reading",
     "write \\\\ for a backslash, \\n for a line feed"},
    {"string text files", "warning",
     "malformed character reference (no semicolon, bad digits, out of range, surrogate, zero)",
     "write &#xHEX; or &#DECIMAL; of a Unicode scalar value other than zero"},
    {"string text files", "warning", "unknown named entity ('&nbsp;', misspelt '&qout;')",
     "use &lt; &gt; &amp; &quot; &apos; or a numeric reference"},
    {"string text files", "warning", "'&' that starts no reference", "write &amp;"},
    {"string text files", "warning", "carriage return or zero byte inside a text; empty id",
     "remove it if it is not meant"},
    {"across text files", "error", "start-up id missing from, or with another text in, strings.xml",
     "copy the start-up text into strings.xml"},
    {"across text files", "warning", "override id missing from strings.xml",
     "remove the override or add the id"},
    {"key tables", "error", "CR LF line ends (reported once for the file)", "fmt"},
    {"key tables", "error", "byte-order mark", "fmt"},
    {"key tables", "error", "spreadsheet export (header row, quoted fields)",
     "write plain key,id rows (fmt refuses: it would have to guess)"},
    {"key tables", "error", "last line without a line feed", "fmt"},
    {"key tables", "error", "line without a comma; a key joined with such lines",
     "write key,id (fmt refuses)"},
    {"key tables", "error", "keys out of order", "fmt sorts them"},
    {"key tables", "error", "invalid UTF-8", "re-save the file as UTF-8"},
    {"key tables", "warning",
     "duplicate key (the first is used); empty key or id; space beside "
     "the comma",
     "remove or correct the row"},
    {"key tables and languages", "error", "id with no text in a language (or in none)",
     "add the text, or correct the id"},
    {"key tables and languages", "warning",
     "text that no key reaches; source text a "
     "translation lacks",
     "remove the text or add a key"},
    {"icon map", "error", "whatever makes the library reject the map, once, where it stopped",
     "repair the XML at that place"},
    {"icon map", "error", "keys out of UTF-16 or code-point order", "fmt sorts them"},
    {"icon map", "warning",
     "duplicate key; file name with white space at its ends; a map with "
     "an empty key holding another",
     "remove or correct the entry"},
    {"QanIcons.dll, cursors.bin", "error",
     "not a module with a table; table ends early; negative count; names out of order",
     "write the table again with qanres cursor-table write"},
    {"QanIcons.dll, cursors.bin", "warning", "duplicate or empty names; bytes after the table",
     "write the table again with qanres cursor-table write"},
};

// The list as lint's help prints it: one check a line, "files: level: finding (fix)".
inline std::string LintChecksHelp() {
    std::string help = "Checks (files: level: finding -> repair):\n";
    for (const LintCheck& check : kLintCheckList)
        help += std::string("  ") + check.files + ": " + check.level + ": " + check.finding +
                " -> " + check.fix + "\n";
    return help;
}

} // namespace QanTool

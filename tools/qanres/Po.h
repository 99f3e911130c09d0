// Po.h: gettext PO files: writing a catalogue, and reading any PO file into its entries.
#pragma once

#include "Catalogue.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace QanTool {

// The header field that marks a PO file written by export: its msgctxt are string ids.
inline constexpr std::string_view kPoIdsField = "X-Qanres-Ids";

// One message: msgid, msgstr, translation with a context of the id and the keys as
// extracted comments. A translation that is present but empty, for a non-empty source,
// is written as an empty msgstr with the extracted comment kPoEmptyNote, so that it is
// told apart from an untranslated message when read back.
std::string WritePo(const Catalogue& catalogue);
inline constexpr std::string_view kPoEmptyNote = "qanres: the translation is empty";

// C-style escaping as PO strings need it: \n \t \r \" \\, other control characters as
// three-digit octal escapes.
std::string EscapePoString(std::string_view text);

struct PoEntry {
    int line = 0; // of its first keyword
    std::optional<std::string> context;
    std::string id;
    std::optional<std::string> idPlural;
    std::map<int, std::string> translations; // msgstr (index 0) or msgstr[N]
    std::vector<std::string> flags;          // from "#," lines
    std::vector<std::string> extracted;      // "#." lines
    int translatorComments = 0;              // "# " lines
    int references = 0;                      // "#:" lines
    bool obsolete = false;                   // "#~" entries
    bool IsHeader() const { return !context && id.empty() && !obsolete; }
    bool HasFlag(std::string_view flag) const;
};

struct PoFile {
    std::vector<PoEntry> entries; // obsolete entries included, marked
    std::string error;            // "line N: what", empty when the file was read
};
PoFile ReadPo(std::string_view bytes);

// The value of a header field ("Language") from the header entry's text, or "".
std::string PoHeaderField(std::string_view header, std::string_view field);

} // namespace QanTool

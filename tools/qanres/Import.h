// Import.h: the strings that a translated catalogue gives a master string directory, by
// the stated rules for ids, plural forms, fuzzy and untranslated messages.
#pragma once

#include "Catalogue.h"
#include "Po.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace QanTool {

struct ImportOptions {
    bool keepFuzzy = false;        // use the translation of a fuzzy message
    bool skipUntranslated = false; // leave out untranslated messages instead of the source
};

struct ImportedString {
    std::string id;
    std::string text; // as it is to be handed out, UTF-8
};

struct ImportResult {
    std::vector<ImportedString> strings; // in catalogue order
    std::vector<std::string> summary;    // one line each, for stderr
    std::string error;                   // non-empty: nothing may be written
};

// A PO file: written by export (header field X-Qanres-Ids: msgctxt), msgctxt is the id;
// any other PO file gets ids by ForeignPoId.
ImportResult ImportPo(const PoFile& po, const ImportOptions& options);
// An XLIFF catalogue (ids from the units).
ImportResult ImportCatalogue(const Catalogue& catalogue, const ImportOptions& options);

// 64-bit FNV-1a, the hash that keeps derived ids apart.
std::uint64_t Fnv1a64(std::string_view bytes);

// The id rule for PO files that export did not write: "po.", the slug of msgctxt and ".",
// then the slug of msgid ("_" when that is empty). A slug keeps ASCII letters and digits
// and turns each run of other bytes into one "_", trimmed at both ends, cut to 32 bytes
// (msgctxt) or 48 bytes (msgid). When a slug was cut, or another message of the file has
// the same id, "." and the 16 hex digits of Fnv1a64(msgctxt "\x04" msgid, or msgid alone
// without a context) follow. Plural forms add "#N". This returns the id before the
// collision check; mustHash forces the hash.
std::string ForeignPoId(const std::optional<std::string>& context, std::string_view msgid,
                        bool mustHash, bool* cut = nullptr);

// The rules above, for "qanres import --help".
inline constexpr const char* kImportRules =
    "Ids: a PO file written by export (header X-Qanres-Ids: msgctxt) names each string by\n"
    "its msgctxt. Any other PO file: \"po.\" + slug(msgctxt) + \".\" + slug(msgid), where a\n"
    "slug keeps ASCII letters and digits, turns each run of other bytes into one \"_\" and is\n"
    "cut to 32 (msgctxt) or 48 (msgid) bytes; an empty msgid slug is \"_\". A cut slug, or\n"
    "one that two messages share, gets \".\" + 16 hex digits of FNV-1a 64 of\n"
    "msgctxt \"\\x04\" msgid (msgid alone without a context). Plural messages give one\n"
    "string per form: ID#0, ID#1, ... XLIFF: the unit's name, else its id.\n"
    "Texts: the translation; an untranslated message (empty msgstr, no <target>) gives the\n"
    "source text unless --skip-untranslated; a fuzzy translation counts as untranslated\n"
    "unless --keep-fuzzy; obsolete (#~) messages, flags and comments are dropped and\n"
    "counted in the summary on standard error.\n"
    "Files: strings.xml gets every string; an existing startupstrings.xml keeps its ids\n"
    "and gets their imported texts. Both are written in the form fmt leaves unchanged.";

} // namespace QanTool

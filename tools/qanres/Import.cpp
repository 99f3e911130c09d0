// Import.cpp: one place for what a catalogue means for the string files, so that PO and
// XLIFF imports follow the same rules for missing and empty translations.
#include "Import.h"

#include "StringFileWriter.h"

#include "base/Unicode.h"

#include <algorithm>
#include <map>
#include <set>

namespace QanTool {
namespace {

bool IsAsciiAlnum(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

std::string Slug(std::string_view text, std::size_t limit, bool& cut) {
    std::string out;
    bool gap = false;
    for (const char c : text) {
        if (IsAsciiAlnum(c)) {
            if (gap && !out.empty())
                out += '_';
            gap = false;
            out += c;
        } else {
            gap = true;
        }
    }
    if (out.size() > limit) {
        out.resize(limit);
        while (!out.empty() && out.back() == '_')
            out.pop_back();
        cut = true;
    }
    return out;
}

std::string Hex16(std::uint64_t value) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string out(16, '0');
    for (int i = 15; i >= 0; --i, value >>= 4)
        out[static_cast<std::size_t>(i)] = kDigits[value & 0xF];
    return out;
}

std::string Plural(std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

} // namespace

std::uint64_t Fnv1a64(std::string_view bytes) {
    std::uint64_t hash = 0xcbf29ce484222325ull;
    for (const char c : bytes) {
        hash ^= static_cast<unsigned char>(c);
        hash *= 0x100000001b3ull;
    }
    return hash;
}

std::string ForeignPoId(const std::optional<std::string>& context, std::string_view msgid,
                        bool mustHash, bool* cutOut) {
    bool cut = false;
    std::string id = "po.";
    if (context) {
        id += Slug(*context, 32, cut);
        id += '.';
    }
    const std::string slug = Slug(msgid, 48, cut);
    id += slug.empty() ? "_" : slug;
    if (cutOut)
        *cutOut = cut;
    if (cut || mustHash) {
        const std::string hashed =
            context ? *context + '\x04' + std::string(msgid) : std::string(msgid);
        id += "." + Hex16(Fnv1a64(hashed));
    }
    return id;
}

ImportResult ImportPo(const PoFile& po, const ImportOptions& options) {
    ImportResult result;
    const PoEntry* header = nullptr;
    for (const auto& e : po.entries)
        if (e.IsHeader() && !header)
            header = &e;
    std::string headerText =
        header && header->translations.count(0) ? header->translations.at(0) : std::string();
    const std::string contentType = PoHeaderField(headerText, "Content-Type");
    if (const auto at = contentType.find("charset="); at != std::string::npos) {
        std::string charset = contentType.substr(at + 8);
        for (char& c : charset)
            c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c);
        if (charset != "UTF-8" && charset != "UTF8" && charset != "ASCII" &&
            charset != "US-ASCII" && charset != "CHARSET") {
            result.error = "the catalogue is in " + contentType.substr(at + 8) +
                           ", not UTF-8: convert it first (msgconv --to-code=UTF-8)";
            return result;
        }
    }
    const bool ownIds = PoHeaderField(headerText, kPoIdsField) == "msgctxt";

    // Foreign ids: which bases collide decides which ones carry the hash.
    std::map<std::string, int> baseCount;
    if (!ownIds)
        for (const auto& e : po.entries)
            if (!e.obsolete && !e.IsHeader())
                ++baseCount[ForeignPoId(e.context, e.id, false)];

    std::size_t messages = 0, pluralMessages = 0, pluralForms = 0, fuzzyDropped = 0, fuzzyKept = 0,
                untranslated = 0, obsolete = 0, hashed = 0, duplicates = 0, translatorComments = 0,
                references = 0, extracted = 0;
    std::map<std::string, std::size_t> flagCounts;
    std::set<std::string> seen;
    for (const auto& e : po.entries) {
        if (e.obsolete) {
            ++obsolete;
            continue;
        }
        if (e.IsHeader())
            continue;
        ++messages;
        translatorComments += static_cast<std::size_t>(e.translatorComments);
        references += static_cast<std::size_t>(e.references);
        extracted += e.extracted.size();
        for (const auto& flag : e.flags)
            ++flagCounts[flag];
        std::string base;
        if (ownIds) {
            if (!e.context || !IsWritableId(*e.context)) {
                result.error = "line " + std::to_string(e.line) +
                               ": the message has no msgctxt that can be a string id";
                return result;
            }
            base = *e.context;
        } else {
            bool cut = false;
            base = ForeignPoId(e.context, e.id, false, &cut);
            if (cut || baseCount[base] > 1) {
                base = ForeignPoId(e.context, e.id, true);
                ++hashed;
            }
        }
        const bool fuzzy = e.HasFlag("fuzzy");
        const bool useTranslation = !fuzzy || options.keepFuzzy;
        if (fuzzy)
            ++(options.keepFuzzy ? fuzzyKept : fuzzyDropped);
        const bool emptyMeant =
            std::find(e.extracted.begin(), e.extracted.end(), kPoEmptyNote) != e.extracted.end();
        if (e.idPlural) {
            ++pluralMessages;
            pluralForms += e.translations.size();
        }
        for (const auto& [index, translation] : e.translations) {
            ImportedString s;
            s.id = e.idPlural ? base + "#" + std::to_string(index) : base;
            const std::string& source = e.idPlural && index > 0 ? *e.idPlural : e.id;
            if (useTranslation && (!translation.empty() || emptyMeant)) {
                s.text = translation;
            } else {
                ++untranslated;
                if (options.skipUntranslated)
                    continue;
                s.text = source;
            }
            if (!seen.insert(s.id).second) {
                ++duplicates;
                continue;
            }
            if (Framework::Unicode::FindInvalidUtf8(s.text) != std::string::npos) {
                result.error = "line " + std::to_string(e.line) + ": the text is not UTF-8";
                return result;
            }
            result.strings.push_back(std::move(s));
        }
    }

    auto& sum = result.summary;
    sum.push_back("import: " + Plural(messages, "message", "messages") + " gave " +
                  Plural(result.strings.size(), "string", "strings") +
                  (ownIds ? " (ids from msgctxt, as written by export)"
                          : " (ids derived from msgctxt and msgid, see qanres import --help)"));
    if (pluralMessages)
        sum.push_back("import: " + Plural(pluralMessages, "plural message", "plural messages") +
                      " as " + Plural(pluralForms, "string", "strings") + ", one per form (ID#N)");
    if (hashed)
        sum.push_back("import: " + Plural(hashed, "id", "ids") +
                      " with a hash suffix (long or shared slug)");
    if (fuzzyDropped)
        sum.push_back("import: " + Plural(fuzzyDropped, "fuzzy translation", "fuzzy translations") +
                      " dropped (--keep-fuzzy keeps them)");
    if (fuzzyKept)
        sum.push_back("import: " + Plural(fuzzyKept, "fuzzy translation", "fuzzy translations") +
                      " kept");
    if (untranslated)
        sum.push_back("import: " + Plural(untranslated, "text", "texts") + " untranslated: " +
                      (options.skipUntranslated ? "left out" : "the source text written"));
    if (obsolete)
        sum.push_back("import: " + Plural(obsolete, "obsolete message", "obsolete messages") +
                      " (#~) dropped");
    if (duplicates)
        sum.push_back("import: " + Plural(duplicates, "duplicate message", "duplicate messages") +
                      " dropped (the first is kept)");
    std::string flags;
    for (const auto& [flag, count] : flagCounts)
        if (flag != "fuzzy")
            flags += (flags.empty() ? "" : ", ") + flag + " " + std::to_string(count);
    if (!flags.empty())
        sum.push_back("import: flags not stored (string files hold texts only): " + flags);
    if (translatorComments + references + extracted)
        sum.push_back("import: comments not stored: " + std::to_string(translatorComments) +
                      " translator, " + std::to_string(references) + " reference, " +
                      std::to_string(extracted) + " extracted");
    return result;
}

ImportResult ImportCatalogue(const Catalogue& catalogue, const ImportOptions& options) {
    ImportResult result;
    std::size_t untranslated = 0, duplicates = 0;
    std::set<std::string> seen;
    for (const auto& e : catalogue.entries) {
        if (!IsWritableId(e.id)) {
            result.error = "unit " + e.id + ": not a valid string id";
            return result;
        }
        ImportedString s{e.id, e.target};
        if (!e.hasTarget) {
            ++untranslated;
            if (options.skipUntranslated)
                continue;
            s.text = e.source;
        }
        if (!seen.insert(s.id).second) {
            ++duplicates;
            continue;
        }
        result.strings.push_back(std::move(s));
    }
    result.summary.push_back("import: " + Plural(catalogue.entries.size(), "unit", "units") +
                             " gave " + Plural(result.strings.size(), "string", "strings"));
    if (untranslated)
        result.summary.push_back(
            "import: " + Plural(untranslated, "unit", "units") + " without a target: " +
            (options.skipUntranslated ? "left out" : "the source text written"));
    if (duplicates)
        result.summary.push_back(
            "import: " + Plural(duplicates, "duplicate unit", "duplicate units") +
            " dropped (the first is kept)");
    return result;
}

} // namespace QanTool

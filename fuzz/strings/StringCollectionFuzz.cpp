// StringCollectionFuzz.cpp: the whole string collection over a fuzzed directory (start-up
// texts, full texts, overrides and the four key tables cut from one input), asked for
// every key its tables hold, before and after the full file is read, and for keys it does
// not hold. No look-up may throw; a key answers in every phase; and where the files are in
// the order the readers need, every answer is the decoded text of the row its id names:
// the override's, else the start-up text before the full file is read and the full text
// after it, and an empty text for an id without one.
#include "SplitInput.h"
#include "base/Settings.h"
#include "base/Unicode.h"
#include "strings/CsvKeyTable.h"
#include "strings/DecodeStringText.h"
#include "strings/StringResourceCollection.h"
#include "strings/XmlStringTable.h"

#include <cstdio>
#include <cstdlib>
#include <set>

namespace {
using namespace Framework::Internal;

void Check(bool condition, const char* what, std::string_view key = {}) {
    if (!condition) {
        std::fprintf(stderr, "violated: %s (key \"%.*s\")\n", what, static_cast<int>(key.size()),
                     key.data());
        std::abort();
    }
}

// Rows of a file, read by the file's own scanner, as owned strings.
struct Rows {
    std::vector<std::pair<std::string, std::string>> rows;
    bool exact = true; // ascending without equal keys: every row is found by its key

    const std::string* Find(std::string_view key) const {
        for (const auto& [k, v] : rows)
            if (k == key)
                return &v;
        return nullptr;
    }
};

Rows Collect(const StringTable& table) {
    Rows out;
    for (std::size_t i = 0; i < table.entries.size(); ++i) {
        const auto& row = table.entries[i];
        if (i > 0 && CompareKeys(table.entries[i - 1].key, row.key) >= 0)
            out.exact = false;
        out.rows.emplace_back(std::string(row.key), std::string(row.text));
    }
    return out;
}

// The rows of a text file; nothing when the reader leaves a table as it was (a missing
// file, or one too short to hold a row).
std::optional<Rows> ReadText(const wchar_t* path, bool sort) {
    static constexpr char kSentinel[] = "sentinel";
    StringTable table;
    table.entries.push_back({kSentinel, kSentinel});
    LoadXmlStringTable(table, path, sort);
    if (table.entries.size() == 1 && table.entries[0].key.data() == kSentinel)
        return std::nullopt;
    return Collect(table);
}

Rows ReadKeys(const wchar_t* path) {
    StringTable table;
    LoadCsvKeyTable(table, path);
    return Collect(table);
}

// A key as callers pass it; nothing when its bytes are not UTF-8, which no caller can name.
std::optional<QanStringT<wchar_t>> WideKey(std::string_view key) {
    if (Framework::Unicode::FindInvalidUtf8(key) != std::string_view::npos)
        return std::nullopt;
    return Framework::Utf8::Decode(key);
}

std::optional<QanStringT<wchar_t>> Ask(const StringResourceCollection& strings,
                                       const QanStringT<wchar_t>& key, StringKind kind) {
    try {
        return strings.GetResource(key, kind);
    } catch (...) {
        std::abort(); // a look-up never throws
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static QanFuzz::DirectoryPlatform platform;
    Framework::Platform::SetPlatformForTests(&platform);
    platform.Serve(QanFuzz::SplitInput(data, size));
    auto& settings = ProcessSettings();
    settings.masterStringDirectory = L"R";
    settings.resourceDirectory = L"R";

    const Rows startup = ReadText(L"R/startupstrings.xml", false).value_or(Rows{});
    const Rows overrides = ReadText(L"R/override/strings.xml", true).value_or(Rows{});
    // A full file the reader cannot take leaves the start-up texts in place.
    const Rows full = ReadText(L"R/strings.xml", false).value_or(startup);
    const StringKind kinds[] = {String, Caption, TooltipHeader, TooltipBody};
    const wchar_t* const keyFiles[] = {L"R/string.csv", L"R/caption.csv", L"R/tooltipHeader.csv",
                                       L"R/tooltipBody.csv"};
    Rows keys[4];
    for (int k = 0; k < 4; ++k)
        keys[k] = ReadKeys(keyFiles[k]);
    // Which texts the look-ups can be predicted for: the text files ascend without equal
    // ids, so the collection's binary searches find exactly the rows a linear one does.
    const bool exactTexts = startup.exact && full.exact && overrides.exact;

    const StringResourceCollection strings;
    // Whether the full file has been read: known while only the rows of ascending tables
    // have been asked for, unknown once another row may have caused it.
    enum class Load { NotYet, Done, Unknown } load = Load::NotYet;
    auto textOf = [&](const std::string& id, bool before) -> QanStringT<wchar_t> {
        const Rows& texts = before ? startup : full;
        if (!texts.Find(id))
            return {};
        return DecodeStringText(overrides.Find(id) ? *overrides.Find(id) : *texts.Find(id));
    };
    std::set<std::pair<int, std::string>> answeredBefore;
    // The rows of the ascending tables, then those of the others, then the first again:
    // the full file is read at the first id that the start-up texts lack, and every key
    // found before it is found after it.
    for (const bool exactPass : {true, false, true}) {
        for (int k = 0; k < 4; ++k) {
            if (keys[k].exact != exactPass)
                continue;
            for (const auto& [key, id] : keys[k].rows) {
                const auto wide = WideKey(key);
                if (!wide)
                    continue;
                const auto answer = Ask(strings, *wide, kinds[k]);
                if (keys[k].exact)
                    Check(answer.has_value(), "a key of an ascending table is always found", key);
                if (answer)
                    answeredBefore.insert({k, key});
                else
                    Check(!answeredBefore.count({k, key}), "a key found once is always found", key);
                if (!answer || !exactTexts)
                    continue;
                if (!keys[k].exact) {
                    if (load == Load::NotYet)
                        load = Load::Unknown;
                    continue;
                }
                const bool inStartup = startup.Find(id) != nullptr;
                if (load == Load::Done || !inStartup) {
                    Check(*answer == textOf(id, false), "after the load: the full file's text",
                          key);
                    load = Load::Done;
                } else if (load == Load::NotYet) {
                    Check(*answer == textOf(id, true), "before the load: the start-up text", key);
                } else {
                    Check(*answer == textOf(id, true) || *answer == textOf(id, false),
                          "the start-up or the full file's text", key);
                }
            }
        }
        // Keys that no table holds, and a kind that names no table, miss without throwing.
        for (const StringKind kind : {String, TooltipBody, static_cast<StringKind>(4)}) {
            (void)Ask(strings, L"", kind);
            (void)Ask(strings, L"\xE9\x4E2D not a key \x1F600", kind);
        }
    }
    return 0;
}

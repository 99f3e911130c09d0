// Workload.cpp: builds the expected answers and key sequences from the corpus, and checks
// that the library and every peer give exactly those answers.
#include "Workload.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>

namespace Compare {
namespace {
using Framework::Resources;

constexpr std::uint64_t kSeed = 20261123;

std::filesystem::path& FolderToRemove() {
    static std::filesystem::path folder;
    return folder;
}

std::string Utf8(const std::wstring& text) {
    std::string out;
    for (const wchar_t w : text) {
        const auto c = static_cast<std::uint32_t>(w);
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else if (c < 0x800) {
            out += static_cast<char>(0xC0 | c >> 6);
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            out += static_cast<char>(0xE0 | c >> 12);
            out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else {
            out += static_cast<char>(0xF0 | c >> 18);
            out += static_cast<char>(0x80 | (c >> 12 & 0x3F));
            out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return out;
}

std::wstring Wide(const std::string& utf8) {
    std::wstring wide;
    if (!DecodeUtf8(utf8, wide))
        Fail("corpus text is not UTF-8");
    return wide;
}

std::wstring FromUtf16(const UChar* text, int32_t length) {
    std::wstring out;
    for (int32_t i = 0; i < length; ++i) {
        std::uint32_t c = text[i];
        if (c >= 0xD800 && c < 0xDC00 && i + 1 < length)
            c = 0x10000 + ((c - 0xD800) << 10) + (text[++i] - 0xDC00u);
        out += static_cast<wchar_t>(c);
    }
    return out;
}

void Expect(const char* side, const std::string& key, const std::wstring& expected,
            const std::wstring& got) {
    if (got != expected)
        Fail(std::string(side) + ": wrong answer for key \"" + key + "\": expected \"" +
             Utf8(expected) + "\", got \"" + Utf8(got) + "\"");
}

Keys Sequence(std::vector<std::string> keys, std::size_t length, std::uint64_t salt) {
    std::mt19937_64 random(kSeed + salt);
    std::shuffle(keys.begin(), keys.end(), random);
    Keys sequence;
    for (std::size_t i = 0; sequence.narrow.size() < std::max(length, keys.size()); ++i)
        sequence.narrow.push_back(keys[i % keys.size()]);
    for (const std::string& key : sequence.narrow)
        sequence.wide.push_back(Widen(key));
    return sequence;
}

// What GetLegacyString composes of a key with no plain string: each field behind a marker
// and its tag, and doubled backslashes made single.
std::wstring ComposedLegacyText(const LegacyKey& key) {
    const std::wstring marker(1, L'\x0001');
    const std::wstring text = marker + L"CT=" + Wide(key.text) + marker + L"TT=" + Wide(key.body) +
                              marker + L"TH=" + Wide(key.header);
    std::wstring out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        out += text[i];
        if (text[i] == L'\\' && i + 1 < text.size() && text[i + 1] == L'\\')
            ++i;
    }
    return out;
}

} // namespace

void Fail(const std::string& message) {
    std::fprintf(stderr, "compare_bench: %s\n", message.c_str());
    std::error_code ignored;
    if (!FolderToRemove().empty())
        std::filesystem::remove_all(FolderToRemove(), ignored);
    std::exit(1);
}

void RemoveOnFailure(const std::filesystem::path& folder) {
    FolderToRemove() = folder;
}

Workload BuildWorkload(const Corpus& corpus, std::size_t length, std::size_t coldSlices) {
    Workload work;
    std::vector<std::string> allKeys, startupKeys;
    for (std::size_t i = 0; i < corpus.entries.size(); ++i) {
        const Entry& entry = corpus.entries[i];
        work.texts.emplace(entry.key, Wide(entry.text));
        for (int kind = 1; kind < 4; ++kind)
            work.kindTexts[kind - 1].emplace(entry.key, Wide(corpus.KindText(i, kind)));
        allKeys.push_back(entry.key);
        if (entry.startup)
            startupKeys.push_back(entry.key);
        else if (work.fullOnlyKey.empty())
            work.fullOnlyKey = entry.key;
    }

    // Icon answers as the icon map's rules give them, with the icon directory as L.
    std::vector<std::string> iconKeys, cursorKeys;
    const std::wstring iconDir = corpus.iconDir.wstring();
    for (const IconRow& icon : corpus.icons) {
        Resources::ResourceID id;
        const std::wstring file = Widen(icon.file);
        if (file.ends_with(L".png.png"))
            id.pngPath = iconDir + L"/" + file.substr(0, file.size() - 4);
        else
            id.iconPath = iconDir + L"/" + file + L"/";
        work.icons.emplace(Widen(icon.key), id);
        iconKeys.push_back(icon.key);
    }
    const HINSTANCE module = Resources::GetCursor(Widen(corpus.cursors.front().key)).module;
    if (!module)
        Fail("QanIcons.dll with the cursor table was not loaded");
    for (const CursorRow& cursor : corpus.cursors) {
        Resources::ResourceID id;
        id.module = module;
        id.id = static_cast<int>(cursor.id);
        work.cursors.emplace(Widen(cursor.key), id);
        cursorKeys.push_back(cursor.key);
    }

    std::vector<std::pair<std::string, int>> pairs;
    for (const LegacyPair& pair : corpus.legacyPairs) {
        work.guids.emplace(std::pair{pair.component, pair.id}, Widen(pair.guid));
        pairs.emplace_back(pair.component, pair.id);
    }
    std::vector<std::string> plainGuids, composedGuids;
    for (const LegacyKey& key : corpus.legacyKeys) {
        work.legacyTexts.emplace(Widen(key.guid),
                                 key.plain ? Wide(key.text) : ComposedLegacyText(key));
        (key.plain ? plainGuids : composedGuids).push_back(key.guid);
    }
    work.legacy = !pairs.empty() && !plainGuids.empty() && !composedGuids.empty();

    work.hits = Sequence(allKeys, allKeys.size(), 1);
    work.startupHits = Sequence(startupKeys, length, 2);
    work.misses = Sequence(corpus.missKeys, length, 3);
    // Like the misses (a key of the corpus and a suffix), but each asked once in the run.
    std::vector<std::string> cold;
    for (std::size_t j = 0; j < coldSlices * kColdSlice; ++j)
        cold.push_back(corpus.entries[(j * 37) % corpus.entries.size()].key + "-" +
                       std::to_string(j));
    work.coldMisses = Sequence(cold, cold.size(), 11);
    work.dangling = Sequence(corpus.danglingKeys, length, 4);
    work.kindHits = Sequence(allKeys, length, 5);
    work.iconHits = Sequence(iconKeys, length, 6);
    work.cursorHits = Sequence(cursorKeys, length, 7);
    if (work.legacy) {
        std::mt19937_64 random(kSeed + 8);
        std::shuffle(pairs.begin(), pairs.end(), random);
        for (std::size_t i = 0; work.guidSequence.size() < length; ++i)
            work.guidSequence.push_back(pairs[i % pairs.size()]);
        work.plainLegacy = Sequence(plainGuids, length, 9);
        work.composedLegacy = Sequence(composedGuids, length, 10);
    }
    return work;
}

void VerifyAll(const Workload& work, const GettextPeer& gettext, const IcuPeer& icu,
               const StringCollection& startupOnly, const LoadRecorder& startupRecord) {
    for (std::size_t i = 0; i < work.hits.size(); ++i) {
        const std::string& key = work.hits.narrow[i];
        const std::wstring& expected = work.texts.at(key);
        Expect("GetString", key, expected, Resources::GetString(work.hits.wide[i]));
        Expect("dgettext", key, expected, Wide(gettext.Lookup(key.c_str())));
        int32_t length = 0;
        const UChar* text = icu.Lookup(key.c_str(), length);
        Expect("ures_getStringByKey", key, expected, text ? FromUtf16(text, length) : L"<miss>");
    }

    for (std::size_t i = 0; i < work.startupHits.size(); ++i)
        Expect("start-up GetResource", work.startupHits.narrow[i],
               work.texts.at(work.startupHits.narrow[i]),
               startupOnly.GetResource(work.startupHits.wide[i], kStringKind).value_or(L"<miss>"));
    Framework::LoadReport report;
    startupRecord.CopyInto(report);
    if (report.fullStringsRead)
        Fail("the start-up hits made the collection read strings.xml");

    for (const Keys* missing : {&work.misses, &work.dangling})
        for (std::size_t i = 0; i < missing->size(); ++i) {
            const std::string& key = missing->narrow[i];
            Expect("GetString miss", key, L"", Resources::GetString(missing->wide[i]));
            if (work.texts.count(key) || gettext.Lookup(key.c_str()) != key.c_str())
                Fail("a miss key is found by the hash map or gettext: " + key);
            int32_t length = 0;
            if (icu.Lookup(key.c_str(), length))
                Fail("a miss key is found by ICU: " + key);
        }
    for (std::size_t i = 0; i < work.kindHits.size(); ++i) {
        const std::string& key = work.kindHits.narrow[i];
        const std::wstring& wide = work.kindHits.wide[i];
        Expect("GetCaption", key, work.kindTexts[0].at(key), Resources::GetCaption(wide));
        Expect("GetTooltipHeader", key, work.kindTexts[1].at(key),
               Resources::GetTooltipHeader(wide));
        Expect("GetTooltipBody", key, work.kindTexts[2].at(key), Resources::GetTooltipBody(wide));
    }
    for (std::size_t i = 0; i < work.iconHits.size(); ++i) {
        const auto& expected = work.icons.at(work.iconHits.wide[i]);
        const auto got = Resources::GetIcon(work.iconHits.wide[i]);
        if (!(got == expected))
            Fail("GetIcon: wrong answer for key \"" + work.iconHits.narrow[i] + "\": \"" +
                 Utf8(got.pngPath) + "\" / \"" + Utf8(got.iconPath) + "\", expected \"" +
                 Utf8(expected.pngPath) + "\" / \"" + Utf8(expected.iconPath) + "\"");
    }
    for (std::size_t i = 0; i < work.cursorHits.size(); ++i)
        if (!(Resources::GetCursor(work.cursorHits.wide[i]) ==
              work.cursors.at(work.cursorHits.wide[i])))
            Fail("GetCursor: wrong answer for key \"" + work.cursorHits.narrow[i] + "\"");
    if (work.legacy) {
        for (const auto& pair : work.guidSequence)
            Expect("GetLegacyGuid", pair.first + ":" + std::to_string(pair.second),
                   work.guids.at(pair), Resources::GetLegacyGuid(pair.first, pair.second));
        for (const Keys* keys : {&work.plainLegacy, &work.composedLegacy})
            for (std::size_t i = 0; i < keys->size(); ++i)
                Expect("GetLegacyString", keys->narrow[i], work.legacyTexts.at(keys->wide[i]),
                       Resources::GetLegacyString(keys->wide[i]));
    }
    const StringCollection fresh;
    Expect("lazy full load", work.fullOnlyKey, work.texts.at(work.fullOnlyKey),
           fresh.GetResource(Widen(work.fullOnlyKey), kStringKind).value_or(L"<miss>"));
}

} // namespace Compare

// CompareBench.cpp: one run on one corpus: the library's look-ups, start-up, lazy load and
// memory against glibc gettext, an ICU bundle and hash-map floors, in paired rounds.
#include "Corpus.h"
#include "Library.h"
#include "Peers.h"
#include "Rounds.h"

#include "support/AllocationCounter.h"

#include <framework/Resources.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <memory>
#include <random>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <unordered_map>

namespace {
using namespace Compare;
using Framework::Resources;
using Clock = std::chrono::steady_clock;
namespace fs = std::filesystem;

constexpr std::size_t kSequence = 65536; // look-ups per sample where the key set is smaller
constexpr std::uint64_t kSeed = 20261123;

[[noreturn]] void Fail(const std::string& message) {
    std::fprintf(stderr, "compare_bench: %s\n", message.c_str());
    std::exit(1);
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

void Expect(const char* figure, const std::string& key, const std::wstring& expected,
            const std::wstring& got) {
    if (got != expected)
        Fail(std::string(figure) + ": wrong answer for key \"" + key + "\": expected \"" +
             Utf8(expected) + "\", got \"" + Utf8(got) + "\"");
}

// A shuffled key sequence, cycled to at least `length` look-ups.
struct Keys {
    std::vector<std::string> narrow;
    std::vector<std::wstring> wide;
    std::size_t size() const { return narrow.size(); }
};

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

template <class Op>
double NanosecondsPerOp(std::size_t count, Op&& op) {
    const auto start = Clock::now();
    for (std::size_t i = 0; i < count; ++i)
        op(i);
    const std::chrono::duration<double, std::nano> elapsed = Clock::now() - start;
    return elapsed.count() / static_cast<double>(count);
}

double MillisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// Every thread runs `count` look-ups from its own offset; all start together.
template <class Op>
double HitsPerSecond(int threads, std::size_t count, Op op) {
    std::atomic<int> ready{0};
    std::atomic<bool> go{false};
    std::vector<std::thread> workers;
    for (int t = 0; t < threads; ++t)
        workers.emplace_back([&, t] {
            ready.fetch_add(1);
            while (!go.load(std::memory_order_acquire)) {
            }
            const std::size_t offset = static_cast<std::size_t>(t) * count / 2;
            for (std::size_t i = 0; i < count; ++i)
                op((offset + i) % count);
        });
    while (ready.load() < threads)
        std::this_thread::yield();
    const auto start = Clock::now();
    go.store(true, std::memory_order_release);
    for (auto& worker : workers)
        worker.join();
    const std::chrono::duration<double> elapsed = Clock::now() - start;
    return static_cast<double>(threads) * static_cast<double>(count) / elapsed.count();
}

// The floor of a load: the same reads of the same file, and its line feeds counted.
std::size_t ReadAndCountLines(const fs::path& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        Fail("cannot open " + path.string());
    struct stat info {};
    ::fstat(fd, &info);
    const auto length = static_cast<std::size_t>(info.st_size);
    std::unique_ptr<char[]> buffer(new char[length + 1]);
    std::size_t done = 0;
    while (done < length) {
        const ssize_t got = ::read(fd, buffer.get() + done, length - done);
        if (got <= 0)
            break;
        done += static_cast<std::size_t>(got);
    }
    ::close(fd);
    std::size_t lines = 0;
    for (const char* p = buffer.get();
         (p = static_cast<const char*>(
              std::memchr(p, '\n', done - static_cast<std::size_t>(p - buffer.get()))));
         ++p)
        ++lines;
    return lines;
}

void CollapseBackslashPairs(std::wstring& text) {
    std::wstring out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        out += text[i];
        if (text[i] == L'\\' && i + 1 < text.size() && text[i + 1] == L'\\')
            ++i;
    }
    text = out;
}

struct PairHash {
    std::size_t operator()(const std::pair<std::string, int>& p) const {
        return std::hash<std::string>{}(p.first) ^
               (static_cast<std::size_t>(p.second) * 0x9E3779B97F4A7C15ull);
    }
};

struct Options {
    int rounds = 11;
    std::size_t texts = 120000;
};

Options ParseOptions(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--rounds" && i + 1 < argc)
            options.rounds = std::max(1, std::atoi(argv[++i]));
        else if (arg == "--texts" && i + 1 < argc)
            options.texts = static_cast<std::size_t>(std::max(2000, std::atoi(argv[++i])));
        else
            Fail("usage: compare_bench [--rounds N] [--texts N]");
    }
    return options;
}

} // namespace

int main(int argc, char** argv) {
    const Options options = ParseOptions(argc, argv);
    const auto setupStart = Clock::now();
    Corpus corpus;
    try {
        BuildCorpus(corpus, "/usr/share/locale", options.texts, QANRES_LEGACY_GUIDS);
    } catch (const std::exception& error) {
        Fail(std::string("cannot build the corpus: ") + error.what());
    }
    const std::size_t n = corpus.entries.size();
    std::fprintf(stderr, "corpus written in %.1f s\n", MillisecondsSince(setupStart) / 1000);

    // The process-wide service reads these at its first look-up; QanIcons.dll is found
    // through LD_LIBRARY_PATH.
    std::string searchPath = corpus.moduleDir.string();
    if (const char* old = std::getenv("LD_LIBRARY_PATH"))
        searchPath += std::string(":") + old;
    setenv("LD_LIBRARY_PATH", searchPath.c_str(), 1);
    Resources::SetResourceDirectories(corpus.stringDir.wstring(), corpus.resourceDir.wstring(),
                                      corpus.iconDir.wstring(), corpus.root.wstring(), L"");

    std::unique_ptr<GettextPeer> gettext;
    std::unique_ptr<IcuPeer> icu;
    try {
        const auto peersStart = Clock::now();
        gettext = std::make_unique<GettextPeer>(corpus);
        icu = std::make_unique<IcuPeer>(corpus);
        std::fprintf(stderr, "peers built in %.1f s\n", MillisecondsSince(peersStart) / 1000);
    } catch (const std::exception& error) {
        Fail(std::string("cannot build the peers: ") + error.what());
    }

    // ---- What every side must answer, and the hash-map floors that hold it.
    std::unordered_map<std::string, std::wstring> texts;
    std::unordered_map<std::string, std::wstring> kindTexts[3];
    std::vector<std::string> allKeys, startupKeys;
    std::string fullOnlyKey;
    for (std::size_t i = 0; i < n; ++i) {
        const Entry& entry = corpus.entries[i];
        texts.emplace(entry.key, Wide(entry.text));
        for (int kind = 1; kind < 4; ++kind)
            kindTexts[kind - 1].emplace(entry.key, Wide(corpus.KindText(i, kind)));
        allKeys.push_back(entry.key);
        if (entry.startup)
            startupKeys.push_back(entry.key);
        else if (fullOnlyKey.empty())
            fullOnlyKey = entry.key;
    }
    std::unordered_map<std::wstring, Resources::ResourceID> iconFloor, cursorFloor;
    std::vector<std::string> iconKeys, cursorKeys;
    const std::wstring iconDir = corpus.iconDir.wstring();
    for (const IconRow& icon : corpus.icons) {
        Resources::ResourceID id;
        const std::wstring file = Widen(icon.file);
        if (file.ends_with(L".png.png"))
            id.pngPath = iconDir + L"/" + file.substr(0, file.size() - 4);
        else
            id.iconPath = iconDir + L"/" + file + L"/";
        iconFloor.emplace(Widen(icon.key), id);
        iconKeys.push_back(icon.key);
    }
    const HINSTANCE cursorModule = Resources::GetCursor(Widen(corpus.cursors.front().key)).module;
    if (!cursorModule)
        Fail("QanIcons.dll with the cursor table was not loaded");
    for (const CursorRow& cursor : corpus.cursors) {
        Resources::ResourceID id;
        id.module = cursorModule;
        id.id = static_cast<int>(cursor.id);
        cursorFloor.emplace(Widen(cursor.key), id);
        cursorKeys.push_back(cursor.key);
    }
    std::unordered_map<std::pair<std::string, int>, std::wstring, PairHash> guidFloor;
    std::vector<std::pair<std::string, int>> guidPairs;
    for (const LegacyPair& pair : corpus.legacyPairs) {
        guidFloor.emplace(std::pair{pair.component, pair.id}, Widen(pair.guid));
        guidPairs.emplace_back(pair.component, pair.id);
    }
    std::unordered_map<std::wstring, std::wstring> legacyFloor;
    std::vector<std::string> plainGuids, composedGuids;
    for (const LegacyKey& key : corpus.legacyKeys) {
        std::wstring text = Wide(key.text);
        if (!key.plain) {
            text = L"\x0001"
                   L"CT=" +
                   text +
                   L"\x0001"
                   L"TT=" +
                   Wide(key.body) +
                   L"\x0001"
                   L"TH=" +
                   Wide(key.header);
            CollapseBackslashPairs(text);
        }
        legacyFloor.emplace(Widen(key.guid), text);
        (key.plain ? plainGuids : composedGuids).push_back(key.guid);
    }
    const bool legacy = !guidPairs.empty();

    const Keys hits = Sequence(allKeys, n, 1);
    const Keys startupHits = Sequence(startupKeys, kSequence, 2);
    const Keys misses = Sequence(corpus.missKeys, kSequence, 3);
    const Keys dangling = Sequence(corpus.danglingKeys, kSequence, 4);
    const Keys kindHits = Sequence(allKeys, kSequence, 5);
    const Keys iconHits = Sequence(iconKeys, kSequence, 6);
    const Keys cursorHits = Sequence(cursorKeys, kSequence, 7);
    std::vector<std::pair<std::string, int>> guidSequence;
    Keys plainLegacy, composedLegacy;
    if (legacy) {
        std::mt19937_64 random(kSeed + 8);
        std::shuffle(guidPairs.begin(), guidPairs.end(), random);
        for (std::size_t i = 0; guidSequence.size() < kSequence; ++i)
            guidSequence.push_back(guidPairs[i % guidPairs.size()]);
        plainLegacy = Sequence(plainGuids, kSequence, 9);
        composedLegacy = Sequence(composedGuids, kSequence, 10);
    }

    // A collection that only ever answers start-up texts: the full file is never read.
    const StringCollection startupOnly;

    // ---- Every answer checked before anything is timed.
    const auto verifyStart = Clock::now();
    for (std::size_t i = 0; i < hits.size(); ++i) {
        const std::string& key = hits.narrow[i];
        const std::wstring& expected = texts.at(key);
        Expect("GetString", key, expected, Resources::GetString(hits.wide[i]));
        Expect("dgettext", key, expected, Wide(gettext->Lookup(key.c_str())));
        int32_t length = 0;
        const UChar* text = icu->Lookup(key.c_str(), length);
        Expect("ures_getStringByKey", key, expected, text ? FromUtf16(text, length) : L"<miss>");
    }
    for (std::size_t i = 0; i < startupHits.size(); ++i)
        Expect("start-up GetString", startupHits.narrow[i], texts.at(startupHits.narrow[i]),
               startupOnly.GetResource(startupHits.wide[i], kStringKind).value_or(L"<miss>"));
    for (const Keys* missing : {&misses, &dangling})
        for (std::size_t i = 0; i < missing->size(); ++i) {
            const std::string& key = missing->narrow[i];
            Expect("GetString miss", key, L"", Resources::GetString(missing->wide[i]));
            if (texts.count(key) || gettext->Lookup(key.c_str()) != key.c_str())
                Fail("a miss key is found by the hash map or gettext: " + key);
            int32_t length = 0;
            if (icu->Lookup(key.c_str(), length))
                Fail("a miss key is found by ICU: " + key);
        }
    for (std::size_t i = 0; i < kindHits.size(); ++i) {
        const std::string& key = kindHits.narrow[i];
        Expect("GetCaption", key, kindTexts[0].at(key), Resources::GetCaption(kindHits.wide[i]));
        Expect("GetTooltipHeader", key, kindTexts[1].at(key),
               Resources::GetTooltipHeader(kindHits.wide[i]));
        Expect("GetTooltipBody", key, kindTexts[2].at(key),
               Resources::GetTooltipBody(kindHits.wide[i]));
    }
    for (std::size_t i = 0; i < iconHits.size(); ++i) {
        const auto& expected = iconFloor.at(iconHits.wide[i]);
        const auto got = Resources::GetIcon(iconHits.wide[i]);
        if (!(got == expected))
            Fail("GetIcon: wrong answer for key \"" + iconHits.narrow[i] + "\": pngPath \"" +
                 Utf8(got.pngPath) + "\" iconPath \"" + Utf8(got.iconPath) + "\", expected \"" +
                 Utf8(expected.pngPath) + "\" / \"" + Utf8(expected.iconPath) + "\"");
    }
    for (std::size_t i = 0; i < cursorHits.size(); ++i)
        if (!(Resources::GetCursor(cursorHits.wide[i]) == cursorFloor.at(cursorHits.wide[i])))
            Fail("GetCursor: wrong answer for key \"" + cursorHits.narrow[i] + "\"");
    if (legacy) {
        for (const auto& pair : guidPairs)
            Expect("GetLegacyGuid", pair.first + ":" + std::to_string(pair.second),
                   guidFloor.at(pair), Resources::GetLegacyGuid(pair.first, pair.second));
        for (const Keys* keys : {&plainLegacy, &composedLegacy})
            for (std::size_t i = 0; i < keys->size(); ++i)
                Expect("GetLegacyString", keys->narrow[i], legacyFloor.at(keys->wide[i]),
                       Resources::GetLegacyString(keys->wide[i]));
    }
    {
        StringCollection fresh;
        Expect("lazy full load", fullOnlyKey, texts.at(fullOnlyKey),
               fresh.GetResource(Widen(fullOnlyKey), kStringKind).value_or(L"<miss>"));
    }
    std::fprintf(stderr, "every answer checked in %.1f s\n", MillisecondsSince(verifyStart) / 1000);

    // ---- Memory: what the collection holds after the full load, against the files.
    QanBench::TrackLiveBytes(true);
    const std::int64_t before = QanBench::LiveBytes();
    auto loaded = std::make_unique<StringCollection>();
    loaded->GetResource(Widen(fullOnlyKey), kStringKind);
    const std::int64_t collectionHeap = QanBench::LiveBytes() - before;
    const std::int64_t mapBefore = QanBench::LiveBytes();
    auto mapCopy = std::make_unique<std::unordered_map<std::string, std::wstring>>(texts);
    const std::int64_t mapHeap = QanBench::LiveBytes() - mapBefore;
    QanBench::TrackLiveBytes(false);
    loaded.reset();
    mapCopy.reset();
    const double rows = static_cast<double>(corpus.textRows + corpus.keyRows);
    const double fileBytes = static_cast<double>(corpus.constructionBytes + corpus.fullBytes);
    const double oursPerRow = (static_cast<double>(collectionHeap) - fileBytes) / rows;
    const double mapPerRow = static_cast<double>(mapHeap) / static_cast<double>(n);

    // The counter is shared by all threads: off while timing.
    QanBench::CountAllocations(false);

    // ---- The figures.
    using benchmark::DoNotOptimize;
    auto oursOn = [](const Keys& keys, auto get) {
        return [&keys, get] {
            return NanosecondsPerOp(keys.size(), [&](std::size_t i) {
                auto answer = get(keys.wide[i]);
                DoNotOptimize(answer);
            });
        };
    };
    auto mapOn = [](const Keys& keys, const std::unordered_map<std::string, std::wstring>& map) {
        return [&keys, &map] {
            return NanosecondsPerOp(keys.size(), [&](std::size_t i) {
                const auto found = map.find(keys.narrow[i]);
                std::wstring copy = found == map.end() ? std::wstring() : found->second;
                DoNotOptimize(copy);
            });
        };
    };
    auto gettextOn = [&](const Keys& keys) {
        return [&keys, &gettext] {
            return NanosecondsPerOp(keys.size(), [&](std::size_t i) {
                const char* text = gettext->Lookup(keys.narrow[i].c_str());
                DoNotOptimize(text);
            });
        };
    };
    auto icuOn = [&](const Keys& keys) {
        return [&keys, &icu] {
            return NanosecondsPerOp(keys.size(), [&](std::size_t i) {
                int32_t length = 0;
                const UChar* text = icu->Lookup(keys.narrow[i].c_str(), length);
                DoNotOptimize(text);
            });
        };
    };
    auto idMapOn = [](const Keys& keys,
                      const std::unordered_map<std::wstring, Resources::ResourceID>& map) {
        return [&keys, &map] {
            return NanosecondsPerOp(keys.size(), [&](std::size_t i) {
                const auto found = map.find(keys.wide[i]);
                Resources::ResourceID copy =
                    found == map.end() ? Resources::ResourceID() : found->second;
                DoNotOptimize(copy);
            });
        };
    };
    const std::string mapName = "unordered_map<string,wstring> find+copy";
    const std::string gettextName = "glibc dgettext (msgfmt .mo, C.UTF-8)";
    const std::string icuName = "ICU ures_getStringByKey (genrb bundle)";
    auto threePeers = [&](const Keys& keys) {
        return std::vector<Side>{
            {gettextName, gettextOn(keys)}, {icuName, icuOn(keys)}, {mapName, mapOn(keys, texts)}};
    };
    auto getString = [](const std::wstring& key) { return Resources::GetString(key); };

    std::vector<Figure> figures;
    figures.push_back({"GetString hit, full file loaded",
                       Unit::NanosecondsPerOp,
                       {"", oursOn(hits, getString)},
                       threePeers(hits)});
    figures.push_back({"GetString start-up hit, full file unread",
                       Unit::NanosecondsPerOp,
                       {"", oursOn(startupHits,
                                   [&startupOnly](const std::wstring& key) {
                                       return startupOnly.GetResource(key, kStringKind);
                                   })},
                       {{mapName, mapOn(startupHits, texts)}}});
    figures.push_back({"GetString miss, key in no key table",
                       Unit::NanosecondsPerOp,
                       {"", oursOn(misses, getString)},
                       threePeers(misses)});
    figures.push_back({"GetString miss after full load, id unknown",
                       Unit::NanosecondsPerOp,
                       {"", oursOn(dangling, getString)},
                       threePeers(dangling)});
    figures.push_back(
        {"GetCaption hit",
         Unit::NanosecondsPerOp,
         {"", oursOn(kindHits, [](const std::wstring& key) { return Resources::GetCaption(key); })},
         {{mapName, mapOn(kindHits, kindTexts[0])}}});
    figures.push_back(
        {"GetTooltipHeader hit",
         Unit::NanosecondsPerOp,
         {"", oursOn(kindHits,
                     [](const std::wstring& key) { return Resources::GetTooltipHeader(key); })},
         {{mapName, mapOn(kindHits, kindTexts[1])}}});
    figures.push_back(
        {"GetTooltipBody hit",
         Unit::NanosecondsPerOp,
         {"",
          oursOn(kindHits, [](const std::wstring& key) { return Resources::GetTooltipBody(key); })},
         {{mapName, mapOn(kindHits, kindTexts[2])}}});
    figures.push_back(
        {"GetIcon hit",
         Unit::NanosecondsPerOp,
         {"", oursOn(iconHits, [](const std::wstring& key) { return Resources::GetIcon(key); })},
         {{"unordered_map<wstring,ResourceID> find+copy", idMapOn(iconHits, iconFloor)}}});
    figures.push_back(
        {"GetCursor hit",
         Unit::NanosecondsPerOp,
         {"",
          oursOn(cursorHits, [](const std::wstring& key) { return Resources::GetCursor(key); })},
         {{"unordered_map<wstring,ResourceID> find+copy", idMapOn(cursorHits, cursorFloor)}}});
    if (legacy) {
        figures.push_back(
            {"GetLegacyGuid hit (own row)",
             Unit::NanosecondsPerOp,
             {"",
              [&guidSequence] {
                  return NanosecondsPerOp(guidSequence.size(), [&](std::size_t i) {
                      auto guid =
                          Resources::GetLegacyGuid(guidSequence[i].first, guidSequence[i].second);
                      DoNotOptimize(guid);
                  });
              }},
             {{"unordered_map<pair<string,int>,wstring> f+c", [&guidSequence, &guidFloor] {
                   return NanosecondsPerOp(guidSequence.size(), [&](std::size_t i) {
                       const auto found = guidFloor.find(guidSequence[i]);
                       std::wstring copy =
                           found == guidFloor.end() ? std::wstring() : found->second;
                       DoNotOptimize(copy);
                   });
               }}}});
        auto legacyString = [](const std::wstring& key) { return Resources::GetLegacyString(key); };
        auto legacyMap = [&legacyFloor](const Keys& keys) {
            return [&keys, &legacyFloor] {
                return NanosecondsPerOp(keys.size(), [&](std::size_t i) {
                    const auto found = legacyFloor.find(keys.wide[i]);
                    std::wstring copy = found == legacyFloor.end() ? std::wstring() : found->second;
                    DoNotOptimize(copy);
                });
            };
        };
        figures.push_back({"GetLegacyString hit, plain string",
                           Unit::NanosecondsPerOp,
                           {"", oursOn(plainLegacy, legacyString)},
                           {{"unordered_map<wstring,wstring> find+copy", legacyMap(plainLegacy)}}});
        figures.push_back(
            {"GetLegacyString hit, composed of 3 fields",
             Unit::NanosecondsPerOp,
             {"", oursOn(composedLegacy, legacyString)},
             {{"unordered_map<wstring,wstring> find+copy", legacyMap(composedLegacy)}}});
    }
    auto oursHit = [&hits](std::size_t i) {
        auto text = Resources::GetString(hits.wide[i]);
        DoNotOptimize(text);
    };
    auto mapHit = [&hits, &texts](std::size_t i) {
        const auto found = texts.find(hits.narrow[i]);
        std::wstring copy = found == texts.end() ? std::wstring() : found->second;
        DoNotOptimize(copy);
    };
    figures.push_back(
        {"GetString hits/s, 2 threads (vs 1 thread)",
         Unit::HitsPerSecond,
         {"", [&] { return HitsPerSecond(2, hits.size(), oursHit); }},
         {{"GetString, 1 thread", [&] { return HitsPerSecond(1, hits.size(), oursHit); }}}});
    figures.push_back({"unordered_map hits/s, 2 threads (vs 1)",
                       Unit::HitsPerSecond,
                       {"", [&] { return HitsPerSecond(2, hits.size(), mapHit); }},
                       {{"unordered_map find+copy, 1 thread",
                         [&] { return HitsPerSecond(1, hits.size(), mapHit); }}}});
    figures.push_back({"Construction: start-up, override, 4 key tables",
                       Unit::Milliseconds,
                       {"",
                        [] {
                            const auto start = Clock::now();
                            auto strings = std::make_unique<StringCollection>();
                            const double elapsed = MillisecondsSince(start);
                            DoNotOptimize(strings.get());
                            return elapsed;
                        }},
                       {{"read the same 6 files + count LF (memchr)", [&corpus] {
                             const auto start = Clock::now();
                             std::size_t lines = 0;
                             for (const fs::path& file : corpus.constructionFiles)
                                 lines += ReadAndCountLines(file);
                             DoNotOptimize(lines);
                             return MillisecondsSince(start);
                         }}}});
    const std::wstring fullOnlyWide = Widen(fullOnlyKey);
    figures.push_back({"Lazy full load of strings.xml (first miss)",
                       Unit::Milliseconds,
                       {"",
                        [&fullOnlyWide] {
                            auto strings = std::make_unique<StringCollection>();
                            const auto start = Clock::now();
                            auto text = strings->GetResource(fullOnlyWide, kStringKind);
                            const double elapsed = MillisecondsSince(start);
                            DoNotOptimize(text);
                            return elapsed;
                        }},
                       {{"read strings.xml + count LF (memchr)", [&corpus] {
                             const auto start = Clock::now();
                             std::size_t lines = ReadAndCountLines(corpus.fullFile);
                             DoNotOptimize(lines);
                             return MillisecondsSince(start);
                         }}}});
    figures.push_back(
        {"Heap after full load, above file sizes",
         Unit::BytesPerRow,
         {"", [oursPerRow] { return oursPerRow; }},
         {{"unordered_map<string,wstring> heap / text", [mapPerRow] { return mapPerRow; }}}});

    // ---- The report.
    char now[64];
    const std::time_t clock = std::time(nullptr);
    std::strftime(now, sizeof now, "%Y-%m-%d %H:%M:%S UTC", std::gmtime(&clock));
    std::printf("compare_bench  %s  %u hardware threads  %d rounds (+1 warm-up)\n", now,
                std::thread::hardware_concurrency(), options.rounds);
    std::printf("corpus: %s\n", corpus.source.c_str());
    std::printf("  %zu texts (%zu start-up), %zu text rows and %zu key-table rows in all;"
                " strings.xml %.1f MB, start-up + override + key tables %.1f MB\n",
                n, startupKeys.size(), static_cast<std::size_t>(corpus.textRows),
                static_cast<std::size_t>(corpus.keyRows),
                static_cast<double>(corpus.fullBytes) / 1e6,
                static_cast<double>(corpus.constructionBytes) / 1e6);
    std::printf("  %zu icons, %zu cursors, %zu legacy pairs; look-ups per sample: %zu (all"
                " texts, random order) or %zu\n",
                corpus.icons.size(), corpus.cursors.size(), corpus.legacyPairs.size(), hits.size(),
                kSequence);
    std::printf("  collection heap after full load %.1f MB for %.1f MB of files\n\n",
                static_cast<double>(collectionHeap) / 1e6, fileBytes / 1e6);
    std::fflush(stdout);
    RunRoundsAndPrint(figures, options.rounds);
    std::printf("\nValues are medians over the rounds; ratio is the median of the per-round"
                " ratios ours / peer (for hits/s: 2 threads / 1 thread).\n");
    return 0;
}

// CompareBench.cpp: one run on one corpus: the library's look-ups, start-up, lazy load and
// memory against glibc gettext, an ICU bundle and hash-map floors, in paired rounds.
#include "Corpus.h"
#include "Library.h"
#include "Peers.h"
#include "Rounds.h"
#include "Workload.h"

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
#include <functional>
#include <malloc.h>
#include <memory>
#include <sys/stat.h>
#include <thread>
#include <type_traits>
#include <unistd.h>

namespace {
using namespace Compare;
using benchmark::DoNotOptimize;
using Framework::Resources;
using Clock = std::chrono::steady_clock;
namespace fs = std::filesystem;

constexpr std::size_t kSequence = 65536; // look-ups per sample where the key set is smaller

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
    const char* end = buffer.get() + done;
    for (const char* p = buffer.get();
         (p = static_cast<const char*>(std::memchr(p, '\n', static_cast<std::size_t>(end - p))));
         ++p)
        ++lines;
    return lines;
}

// Look-ups of one side over one key sequence, as a sample.
template <class Get>
std::function<double()> Ours(const Keys& keys, Get get) {
    return [&keys, get] {
        return NanosecondsPerOp(keys.size(), [&](std::size_t i) {
            auto answer = get(keys.wide[i]);
            DoNotOptimize(answer);
        });
    };
}

// The form of key i that a map is keyed by.
template <class Key>
const Key& KeyAt(const Keys& keys, std::size_t i) {
    if constexpr (std::is_same_v<Key, std::string>)
        return keys.narrow[i];
    else
        return keys.wide[i];
}

template <class Map>
std::function<double()> MapFloor(const Keys& keys, const Map& map) {
    return [&keys, &map] {
        return NanosecondsPerOp(keys.size(), [&](std::size_t i) {
            const auto found = map.find(KeyAt<typename Map::key_type>(keys, i));
            typename Map::mapped_type copy =
                found == map.end() ? typename Map::mapped_type() : found->second;
            DoNotOptimize(copy);
        });
    };
}

const char* const kMapName = "unordered_map<string,wstring> find+copy";
const char* const kWideMapName = "unordered_map<wstring,wstring> find+copy";
const char* const kIdMapName = "unordered_map<wstring,ResourceID> find+copy";

std::vector<Side> ThreePeers(const Keys& keys, const Workload& work, const GettextPeer& gettext,
                             const IcuPeer& icu) {
    return {{"glibc dgettext (msgfmt .mo, C.UTF-8)",
             [&keys, &gettext] {
                 return NanosecondsPerOp(keys.size(), [&](std::size_t i) {
                     const char* text = gettext.Lookup(keys.narrow[i].c_str());
                     DoNotOptimize(text);
                 });
             }},
            {"ICU ures_getStringByKey (genrb bundle)",
             [&keys, &icu] {
                 return NanosecondsPerOp(keys.size(), [&](std::size_t i) {
                     int32_t length = 0;
                     const UChar* text = icu.Lookup(keys.narrow[i].c_str(), length);
                     DoNotOptimize(text);
                 });
             }},
            {kMapName, MapFloor(keys, work.texts)}};
}

std::vector<Figure> LookupFigures(const Workload& work, const GettextPeer& gettext,
                                  const IcuPeer& icu, const StringCollection& startupOnly) {
    auto getString = [](const std::wstring& key) { return Resources::GetString(key); };
    std::vector<Figure> figures;
    figures.push_back({"GetString hit, full file loaded",
                       Unit::NanosecondsPerOp,
                       {"", Ours(work.hits, getString)},
                       ThreePeers(work.hits, work, gettext, icu)});
    figures.push_back({"GetString start-up hit, full file unread",
                       Unit::NanosecondsPerOp,
                       {"", Ours(work.startupHits,
                                 [&startupOnly](const std::wstring& key) {
                                     return startupOnly.GetResource(key, kStringKind);
                                 })},
                       {{kMapName, MapFloor(work.startupHits, work.texts)}}});
    figures.push_back({"GetString miss, key in no key table",
                       Unit::NanosecondsPerOp,
                       {"", Ours(work.misses, getString)},
                       ThreePeers(work.misses, work, gettext, icu)});
    // Each sample takes the next slice of keys never asked before, on every side.
    auto cold = std::make_shared<Keys>();
    auto slice = std::make_shared<std::size_t>(0);
    auto nextSlice = [&work, cold, slice] {
        const std::size_t from = (*slice)++ * kColdSlice % work.coldMisses.size();
        cold->narrow.assign(work.coldMisses.narrow.begin() + static_cast<std::ptrdiff_t>(from),
                            work.coldMisses.narrow.begin() +
                                static_cast<std::ptrdiff_t>(from + kColdSlice));
        cold->wide.assign(work.coldMisses.wide.begin() + static_cast<std::ptrdiff_t>(from),
                          work.coldMisses.wide.begin() +
                              static_cast<std::ptrdiff_t>(from + kColdSlice));
    };
    nextSlice();
    std::vector<Side> coldPeers = ThreePeers(*cold, work, gettext, icu);
    coldPeers.pop_back(); // the hash map's miss is no floor for a search
    figures.push_back({"GetString miss, key never asked before",
                       Unit::NanosecondsPerOp,
                       {"",
                        [cold, nextSlice, ours = Ours(*cold, getString)] {
                            nextSlice();
                            return ours();
                        }},
                       coldPeers});
    figures.push_back({"GetString miss after full load, id unknown",
                       Unit::NanosecondsPerOp,
                       {"", Ours(work.dangling, getString)},
                       ThreePeers(work.dangling, work, gettext, icu)});
    const std::pair<const char*, QanStringT<wchar_t> (*)(const QanStringT<wchar_t>&)> kinds[] = {
        {"GetCaption hit", &Resources::GetCaption},
        {"GetTooltipHeader hit", &Resources::GetTooltipHeader},
        {"GetTooltipBody hit", &Resources::GetTooltipBody}};
    for (std::size_t k = 0; k < 3; ++k)
        figures.push_back({kinds[k].first,
                           Unit::NanosecondsPerOp,
                           {"", Ours(work.kindHits, kinds[k].second)},
                           {{kMapName, MapFloor(work.kindHits, work.kindTexts[k])}}});
    figures.push_back({"GetIcon hit",
                       Unit::NanosecondsPerOp,
                       {"", Ours(work.iconHits, &Resources::GetIcon)},
                       {{kIdMapName, MapFloor(work.iconHits, work.icons)}}});
    figures.push_back({"GetCursor hit",
                       Unit::NanosecondsPerOp,
                       {"", Ours(work.cursorHits, &Resources::GetCursor)},
                       {{kIdMapName, MapFloor(work.cursorHits, work.cursors)}}});
    if (!work.legacy)
        return figures;
    const auto& pairs = work.guidSequence;
    const GuidMap& guids = work.guids;
    figures.push_back({"GetLegacyGuid hit (own row)",
                       Unit::NanosecondsPerOp,
                       {"",
                        [&pairs] {
                            return NanosecondsPerOp(pairs.size(), [&](std::size_t i) {
                                auto guid =
                                    Resources::GetLegacyGuid(pairs[i].first, pairs[i].second);
                                DoNotOptimize(guid);
                            });
                        }},
                       {{"unordered_map<pair<string,int>,wstring> f+c", [&pairs, &guids] {
                             return NanosecondsPerOp(pairs.size(), [&](std::size_t i) {
                                 const auto found = guids.find(pairs[i]);
                                 std::wstring copy =
                                     found == guids.end() ? std::wstring() : found->second;
                                 DoNotOptimize(copy);
                             });
                         }}}});
    QanStringT<wchar_t> (*legacyString)(const QanStringT<wchar_t>&) = &Resources::GetLegacyString;
    figures.push_back({"GetLegacyString hit, plain string",
                       Unit::NanosecondsPerOp,
                       {"", Ours(work.plainLegacy, legacyString)},
                       {{kWideMapName, MapFloor(work.plainLegacy, work.legacyTexts)}}});
    figures.push_back({"GetLegacyString hit, composed of 3 fields",
                       Unit::NanosecondsPerOp,
                       {"", Ours(work.composedLegacy, legacyString)},
                       {{kWideMapName, MapFloor(work.composedLegacy, work.legacyTexts)}}});
    return figures;
}

std::vector<Figure> ThreadFigures(const Workload& work) {
    const Keys& hits = work.hits;
    const TextMap& texts = work.texts;
    auto ours = [&hits](std::size_t i) {
        auto text = Resources::GetString(hits.wide[i]);
        DoNotOptimize(text);
    };
    auto map = [&hits, &texts](std::size_t i) {
        const auto found = texts.find(hits.narrow[i]);
        std::wstring copy = found == texts.end() ? std::wstring() : found->second;
        DoNotOptimize(copy);
    };
    // The id look-ups share no written memory between threads either.
    const Keys& icons = work.iconHits;
    auto icon = [&icons](std::size_t i) {
        auto id = Resources::GetIcon(icons.wide[i]);
        DoNotOptimize(id);
    };
    const Keys& cursors = work.cursorHits;
    auto cursor = [&cursors](std::size_t i) {
        auto id = Resources::GetCursor(cursors.wide[i]);
        DoNotOptimize(id);
    };
    const auto& pairs = work.guidSequence;
    auto guid = [&pairs](std::size_t i) {
        auto text = Resources::GetLegacyGuid(pairs[i].first, pairs[i].second);
        DoNotOptimize(text);
    };
    std::vector<Figure> figures{
        {"GetIcon hits/s, 2 threads (vs 1 thread)",
         Unit::HitsPerSecond,
         {"", [&icons, icon] { return HitsPerSecond(2, icons.size(), icon); }},
         {{"GetIcon, 1 thread", [&icons, icon] { return HitsPerSecond(1, icons.size(), icon); }}}},
        {"GetCursor hits/s, 2 threads (vs 1 thread)",
         Unit::HitsPerSecond,
         {"", [&cursors, cursor] { return HitsPerSecond(2, cursors.size(), cursor); }},
         {{"GetCursor, 1 thread",
           [&cursors, cursor] { return HitsPerSecond(1, cursors.size(), cursor); }}}}};
    if (work.legacy)
        figures.push_back({"GetLegacyGuid hits/s, 2 threads (vs 1 thread)",
                           Unit::HitsPerSecond,
                           {"", [&pairs, guid] { return HitsPerSecond(2, pairs.size(), guid); }},
                           {{"GetLegacyGuid, 1 thread",
                             [&pairs, guid] { return HitsPerSecond(1, pairs.size(), guid); }}}});
    std::vector<Figure> strings{
        {"GetString hits/s, 2 threads (vs 1 thread)",
         Unit::HitsPerSecond,
         {"", [&hits, ours] { return HitsPerSecond(2, hits.size(), ours); }},
         {{"GetString, 1 thread", [&hits, ours] { return HitsPerSecond(1, hits.size(), ours); }}}},
        {"unordered_map hits/s, 2 threads (vs 1)",
         Unit::HitsPerSecond,
         {"", [&hits, map] { return HitsPerSecond(2, hits.size(), map); }},
         {{"unordered_map find+copy, 1 thread",
           [&hits, map] { return HitsPerSecond(1, hits.size(), map); }}}}};
    strings.insert(strings.end(), figures.begin(), figures.end());
    return strings;
}

// Reads the files once, untimed, then times reading them again and counting their line
// feeds. Every load sample, ours and the floor's, starts with the same untimed read, so
// that each finds the files equally warm whichever ran before it in the round.
double WarmThenReadFloor(const std::vector<fs::path>& files) {
    std::size_t lines = 0;
    for (const fs::path& file : files)
        lines += ReadAndCountLines(file);
    const auto start = Clock::now();
    for (const fs::path& file : files)
        lines += ReadAndCountLines(file);
    DoNotOptimize(lines);
    return MillisecondsSince(start);
}

void Warm(const std::vector<fs::path>& files) {
    for (const fs::path& file : files)
        DoNotOptimize(ReadAndCountLines(file));
}

std::vector<Figure> LoadFigures(const Corpus& corpus, const std::wstring& fullOnlyKey) {
    const std::vector<fs::path>& files = corpus.constructionFiles;
    const std::vector<fs::path> fullFile{corpus.fullFile};
    const char* const kFloor = "read the same 6 files + count LF (memchr)";
    auto floor = [&files] { return WarmThenReadFloor(files); };
    // A construction, then (when asked) a look-up of each kind of a key that no table holds:
    // each kind makes its index and memo, and nothing loads the full file.
    auto construction = [&files](bool firstLookUps) {
        return [&files, firstLookUps] {
            Warm(files);
            const auto start = Clock::now();
            auto strings = std::make_unique<StringCollection>();
            for (int kind = 0; firstLookUps && kind < 4; ++kind)
                DoNotOptimize(strings->GetResource(
                    L"no such key", static_cast<Framework::Internal::StringKind>(kind)));
            const double elapsed = MillisecondsSince(start);
            DoNotOptimize(strings.get());
            return elapsed;
        };
    };
    return {{"Construction: start-up, override, 4 key tables",
             Unit::Milliseconds,
             {"", construction(false)},
             {{kFloor, floor}}},
            {"Construction and a first look-up of each kind",
             Unit::Milliseconds,
             {"", construction(true)},
             {{kFloor, floor}}},
            {"Lazy full load of strings.xml (first miss)",
             Unit::Milliseconds,
             {"",
              [&fullOnlyKey, fullFile] {
                  auto strings = std::make_unique<StringCollection>();
                  // The kind's index and memo are made first: the figure above has their cost.
                  DoNotOptimize(strings->GetResource(L"no such key", kStringKind));
                  Warm(fullFile);
                  const auto start = Clock::now();
                  auto text = strings->GetResource(fullOnlyKey, kStringKind);
                  const double elapsed = MillisecondsSince(start);
                  DoNotOptimize(text);
                  return elapsed;
              }},
             {{"read strings.xml + count LF (memchr)",
               [fullFile] { return WarmThenReadFloor(fullFile); }}}}};
}

// Heap held by a collection after its full load, then after every key of every kind was
// asked once (each kind's index and memo made and filled), and by a hash map of the same
// texts. Counted from malloc's own totals, so that memory taken with calloc (the memos')
// counts too, whole, whether or not its pages were ever touched.
struct Memory {
    double afterLoad = 0, afterEveryKey = 0, fileBytes = 0, rows = 0, mapBytes = 0;
};

double HeapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

Memory MeasureMemory(const Corpus& corpus, const Workload& work) {
    Memory memory;
    const double before = HeapInUse();
    auto loaded = std::make_unique<StringCollection>();
    loaded->GetResource(Widen(work.fullOnlyKey), kStringKind);
    memory.afterLoad = HeapInUse() - before;
    for (const std::wstring& key : work.hits.wide)
        DoNotOptimize(loaded->GetResource(key, kStringKind));
    for (int kind = 0; kind < 3; ++kind)
        for (const auto& entry : work.kindTexts[kind])
            DoNotOptimize(loaded->GetResource(
                Widen(entry.first), static_cast<Framework::Internal::StringKind>(kind + 1)));
    memory.afterEveryKey = HeapInUse() - before;
    const double mapBefore = HeapInUse();
    auto map = std::make_unique<TextMap>(work.texts);
    memory.mapBytes = HeapInUse() - mapBefore;
    memory.fileBytes = static_cast<double>(corpus.constructionBytes + corpus.fullBytes);
    memory.rows = static_cast<double>(corpus.textRows + corpus.keyRows);
    return memory;
}

struct Options {
    int rounds = 15;
    std::size_t texts = 120000;
    fs::path catalogues = "/usr/share/locale";
};

Options ParseOptions(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--rounds" && i + 1 < argc)
            options.rounds = std::max(1, std::atoi(argv[++i]));
        else if (arg == "--texts" && i + 1 < argc)
            options.texts = static_cast<std::size_t>(std::max(2000, std::atoi(argv[++i])));
        else if (arg == "--catalogues" && i + 1 < argc)
            options.catalogues = argv[++i];
        else
            Fail("usage: compare_bench [--rounds N] [--texts N] [--catalogues DIR]");
    }
    return options;
}

} // namespace

int main(int argc, char** argv) {
    const Options options = ParseOptions(argc, argv);
    const auto setupStart = Clock::now();
    Corpus corpus;
    try {
        BuildCorpus(corpus, options.catalogues, options.texts, QANRES_LEGACY_GUIDS);
    } catch (const std::exception& error) {
        RemoveOnFailure(corpus.root);
        Fail(std::string("cannot build the corpus: ") + error.what());
    }
    RemoveOnFailure(corpus.root);
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

    const Workload work = BuildWorkload(corpus, kSequence, options.rounds + 2);
    // A collection that only ever answers start-up texts: the full file is never read.
    LoadRecorder startupRecord(Framework::Internal::ProcessSettings());
    const StringCollection startupOnly(&startupRecord);
    const auto verifyStart = Clock::now();
    VerifyAll(work, *gettext, *icu, startupOnly, startupRecord);
    std::fprintf(stderr, "every answer checked in %.1f s\n", MillisecondsSince(verifyStart) / 1000);
    const Memory memory = MeasureMemory(corpus, work);

    std::vector<Figure> figures = LookupFigures(work, *gettext, *icu, startupOnly);
    for (Figure& figure : ThreadFigures(work))
        figures.push_back(std::move(figure));
    const std::wstring fullOnlyKey = Widen(work.fullOnlyKey);
    for (Figure& figure : LoadFigures(corpus, fullOnlyKey))
        figures.push_back(std::move(figure));
    const double perRowAfterLoad = (memory.afterLoad - memory.fileBytes) / memory.rows;
    const double perRowAfterEveryKey = (memory.afterEveryKey - memory.fileBytes) / memory.rows;
    const double mapPerText = memory.mapBytes / static_cast<double>(corpus.entries.size());
    const char* const kMapHeap = "unordered_map<string,wstring> heap / text";
    figures.push_back({"Heap after full load, above file sizes",
                       Unit::BytesPerRow,
                       {"", [perRowAfterLoad] { return perRowAfterLoad; }},
                       {{kMapHeap, [mapPerText] { return mapPerText; }}}});
    figures.push_back({"Heap once every key of every kind was asked",
                       Unit::BytesPerRow,
                       {"", [perRowAfterEveryKey] { return perRowAfterEveryKey; }},
                       {{kMapHeap, [mapPerText] { return mapPerText; }}}});

    char now[64];
    const std::time_t clock = std::time(nullptr);
    std::strftime(now, sizeof now, "%Y-%m-%d %H:%M:%S UTC", std::gmtime(&clock));
    double load[3] = {0, 0, 0};
    getloadavg(load, 3);
    std::printf("compare_bench  %s  %u hardware threads, load average %.2f  %d rounds (+1"
                " warm-up)\n",
                now, std::thread::hardware_concurrency(), load[0], options.rounds);
    std::printf("corpus: %s\n", corpus.source.c_str());
    const auto startupTexts = std::count_if(corpus.entries.begin(), corpus.entries.end(),
                                            [](const Entry& entry) { return entry.startup; });
    std::printf("  %zu texts (%zu start-up, %zu overridden); %zu text rows and %zu key-table"
                " rows in all\n",
                corpus.entries.size(), static_cast<std::size_t>(startupTexts), corpus.overrides,
                static_cast<std::size_t>(corpus.textRows),
                static_cast<std::size_t>(corpus.keyRows));
    std::printf("  strings.xml %.1f MB; start-up, override and key tables %.1f MB; collection"
                " heap after full load %.1f MB\n",
                static_cast<double>(corpus.fullBytes) / 1e6,
                static_cast<double>(corpus.constructionBytes) / 1e6, memory.afterLoad / 1e6);
    std::printf("  %zu icons, %zu cursors, %zu legacy pairs; look-ups per sample: %zu (every"
                " text once, random order) or %zu\n\n",
                corpus.icons.size(), corpus.cursors.size(), corpus.legacyPairs.size(),
                work.hits.size(), kSequence);
    std::fflush(stdout);

    RunRoundsAndPrint(figures, options.rounds);
    getloadavg(load, 3);
    std::printf("\nLoad average at the end: %.2f (other work on the machine shares its cores).",
                load[0]);
    std::printf("\nValues are medians over the rounds; ratio is the median of the per-round"
                " ratios ours / peer (for hits/s: 2 threads / 1 thread).\n");
    return 0;
}

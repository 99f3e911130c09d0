// StringsBench.cpp: start-up, lazy full load, look-up cost and memory of the string
// collection on a generated data set of catalogue size (written to a temporary folder).
#include "base/Settings.h"
#include "strings/CsvKeyTable.h"
#include "strings/StringResourceCollection.h"
#include "strings/XmlStringTable.h"

#include "support/AllocationCounter.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace {
using namespace Framework::Internal;
namespace fs = std::filesystem;

constexpr int kFullTexts = 200000;
constexpr int kStartupEvery = 20; // 10,000 start-up texts
constexpr int kKeyRows = 200000;
constexpr int kOverrides = 1000;

// The data set: sorted GUID ids, texts of varied length with some entities and escapes,
// and four key tables whose keys read like command names.
struct DataSet {
    fs::path dir;
    std::vector<std::wstring> startupKeys; // keys whose id is a start-up text
    std::vector<std::wstring> fullKeys;    // keys whose id is only in the full file
    std::uintmax_t startupBytes = 0, overrideBytes = 0, fullBytes = 0, keyBytes = 0;

    DataSet() {
        dir = fs::temp_directory_path() /
              ("qanres-strings-bench-" + std::to_string(std::random_device{}()));
        fs::create_directories(dir / "override");
        std::mt19937_64 random(42);
        const char* words[] = {"open",  "the", "selected", "layer", "image", "&amp;",  "brush",
                               "color", "\\n", "export",   "file",  "to",    "&quot;", "preview"};

        std::vector<std::string> ids(kFullTexts);
        for (auto& id : ids) {
            char guid[40];
            std::snprintf(guid, sizeof guid, "%08llx-%04llx-%04llx-%04llx-%012llx",
                          static_cast<unsigned long long>(random() & 0xFFFFFFFF),
                          static_cast<unsigned long long>(random() & 0xFFFF),
                          static_cast<unsigned long long>(random() & 0xFFFF),
                          static_cast<unsigned long long>(random() & 0xFFFF),
                          static_cast<unsigned long long>(random() & 0xFFFFFFFFFFFF));
            id = guid;
        }
        std::sort(ids.begin(), ids.end());
        ids.erase(std::unique(ids.begin(), ids.end()), ids.end());

        const std::string head =
            "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<strings lang=\"en\">\n";
        std::string full = head, startup = head, overrides = head;
        for (std::size_t i = 0; i < ids.size(); ++i) {
            std::string text;
            const int count = 2 + static_cast<int>(random() % 9);
            for (int w = 0; w < count; ++w)
                text += std::string(w ? " " : "") + words[random() % std::size(words)];
            const std::string element = "  <s id=\"" + ids[i] + "\">" + text + "</s>\n";
            full += element;
            if (i % kStartupEvery == 0)
                startup += element;
        }
        for (int i = 0; i < kOverrides; ++i)
            overrides += "  <s id=\"" + ids[random() % ids.size()] + "\">override</s>\n";
        full += "</strings>\n";
        startup += "</strings>\n";
        overrides += "</strings>\n";
        fullBytes = Write("strings.xml", full);
        startupBytes = Write("startupstrings.xml", startup);
        overrideBytes = Write("override/strings.xml", overrides);

        const char* modules[] = {"Paint", "Layers", "Filters", "Export", "Brushes", "Color"};
        const char* tables[] = {"string.csv", "caption.csv", "tooltipHeader.csv",
                                "tooltipBody.csv"};
        for (int t = 0; t < 4; ++t) {
            std::vector<std::pair<std::string, std::size_t>> rows;
            for (int k = 0; k < kKeyRows; ++k) {
                const std::size_t id = random() % ids.size();
                rows.emplace_back(std::string(modules[k % 6]) + "::Commands::Action" +
                                      std::to_string(k) + "::Label",
                                  id);
            }
            std::sort(rows.begin(), rows.end());
            std::string csv;
            for (const auto& [key, id] : rows) {
                csv += key + "," + ids[id] + "\n";
                if (t == 0) {
                    auto& keys = id % kStartupEvery == 0 ? startupKeys : fullKeys;
                    keys.emplace_back(key.begin(), key.end());
                }
            }
            keyBytes += Write(tables[t], csv);
        }
        std::shuffle(startupKeys.begin(), startupKeys.end(), random);
        std::shuffle(fullKeys.begin(), fullKeys.end(), random);
        ProcessSettings().masterStringDirectory = dir.wstring();
        ProcessSettings().resourceDirectory = dir.wstring();
    }
    ~DataSet() {
        std::error_code ignored;
        fs::remove_all(dir, ignored);
    }

    std::uintmax_t Write(const char* name, const std::string& bytes) {
        std::ofstream(dir / name, std::ios::binary) << bytes;
        return bytes.size();
    }
};

const DataSet& Data() {
    static const DataSet data;
    return data;
}

void BM_Construction(benchmark::State& state) {
    const DataSet& data = Data();
    for (auto _ : state) {
        StringResourceCollection strings;
        benchmark::DoNotOptimize(&strings);
    }
    state.SetBytesProcessed(
        static_cast<std::int64_t>(state.iterations()) *
        static_cast<std::int64_t>(data.startupBytes + data.overrideBytes + data.keyBytes));
}
BENCHMARK(BM_Construction)->Unit(benchmark::kMillisecond);

void BM_LazyFullLoad(benchmark::State& state) {
    const DataSet& data = Data();
    for (auto _ : state) {
        state.PauseTiming();
        auto strings = std::make_unique<StringResourceCollection>();
        state.ResumeTiming();
        benchmark::DoNotOptimize(strings->GetResource(data.fullKeys.front(), String));
        state.PauseTiming();
        strings.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(data.fullBytes));
}
BENCHMARK(BM_LazyFullLoad)->Unit(benchmark::kMillisecond);

void BM_ScanFullTextFile(benchmark::State& state) {
    const DataSet& data = Data();
    const std::wstring path = (data.dir / "strings.xml").wstring();
    for (auto _ : state) {
        StringTable table;
        LoadXmlStringTable(table, path, false);
        benchmark::DoNotOptimize(table.entries.data());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(data.fullBytes));
}
BENCHMARK(BM_ScanFullTextFile)->Unit(benchmark::kMillisecond);

void BM_ScanKeyTable(benchmark::State& state) {
    const DataSet& data = Data();
    const std::wstring path = (data.dir / "string.csv").wstring();
    for (auto _ : state) {
        StringTable table;
        LoadCsvKeyTable(table, path);
        benchmark::DoNotOptimize(table.entries.data());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(data.keyBytes / 4));
}
BENCHMARK(BM_ScanKeyTable)->Unit(benchmark::kMillisecond);

// A hit: allocations per look-up are reported; the returned text is the only one.
void Lookups(benchmark::State& state, const StringResourceCollection& strings,
             const std::vector<std::wstring>& keys) {
    std::size_t i = 0;
    const auto before = QanBench::AllocationCount();
    for (auto _ : state) {
        auto text = strings.GetResource(keys[i++ % keys.size()], String);
        benchmark::DoNotOptimize(text);
    }
    state.counters["allocs_per_lookup"] =
        static_cast<double>(QanBench::AllocationCount() - before) /
        static_cast<double>(state.iterations());
}

void BM_HitBeforeFullLoad(benchmark::State& state) {
    const StringResourceCollection strings;
    Lookups(state, strings, Data().startupKeys);
}
BENCHMARK(BM_HitBeforeFullLoad);

void BM_HitAfterFullLoad(benchmark::State& state) {
    const StringResourceCollection strings;
    strings.GetResource(Data().fullKeys.front(), String);
    Lookups(state, strings, Data().fullKeys);
}
BENCHMARK(BM_HitAfterFullLoad);

void BM_MissUnknownKey(benchmark::State& state) {
    const StringResourceCollection strings;
    const std::vector<std::wstring> unknown = {L"Paint::Commands::Unknown::Label"};
    Lookups(state, strings, unknown);
}
BENCHMARK(BM_MissUnknownKey);

// Memory of the tables after the full load: row arrays (by capacity) plus file buffers,
// against the file sizes.
void BM_MemoryAfterFullLoad(benchmark::State& state) {
    const DataSet& data = Data();
    std::vector<StringTable> tables(6);
    for (auto _ : state) {
        LoadXmlStringTable(tables[0], (data.dir / "strings.xml").wstring(), false);
        LoadXmlStringTable(tables[1], (data.dir / "override" / "strings.xml").wstring(), true);
        int t = 2;
        for (const char* name :
             {"string.csv", "caption.csv", "tooltipHeader.csv", "tooltipBody.csv"})
            LoadCsvKeyTable(tables[static_cast<std::size_t>(t++)], (data.dir / name).wstring());
    }
    double rows = 0, rowBytes = 0;
    for (const auto& table : tables) {
        rows += static_cast<double>(table.entries.size());
        rowBytes += static_cast<double>(table.entries.capacity() * sizeof(StringTableEntry));
    }
    const double files = static_cast<double>(data.fullBytes + data.overrideBytes + data.keyBytes);
    state.counters["rows"] = rows;
    state.counters["file_MB"] = files / 1e6;
    state.counters["total_MB"] = (files + rowBytes) / 1e6;
    state.counters["bytes_per_row_over_files"] = rowBytes / rows;
    state.counters["entry_bytes"] = sizeof(StringTableEntry);
}
BENCHMARK(BM_MemoryAfterFullLoad)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();

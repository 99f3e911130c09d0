// Costs of the legacy GUID table: building the sorted index at service construction, and
// resolving a (component, id) pair that has its own row, with the heap allocations each
// look-up makes (the returned string should be the only one). Costs of the registrar
// tables: a look-up from one and from two threads at once (two must together get through
// at least as many as one), beside a floor of the same keys in a plain sorted vector; and
// the heap the collection holds when plug-ins register one at a time, since every state a
// look-up may still be reading is kept, against the same entries registered at once.
#include "legacy/LegacyGuidIndex.h"
#include "legacy/LegacyResourceCollection.h"
#include "legacy/LegacyStringLookup.h"
#include "service/ResourcesImpl.h"

#include "support/AllocationCounter.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#if defined(__GLIBC__)
#include <malloc.h>
#endif
#include <cstdint>
#include <string>
#include <vector>

namespace {
using namespace Framework::Internal;

void BM_BuildLegacyGuidIndex(benchmark::State& state) {
    for (auto _ : state) {
        LegacyGuidIndex index = BuildLegacyGuidIndex();
        benchmark::DoNotOptimize(index.Records().data());
    }
    state.SetItemsProcessed(state.iterations() * 15935);
}
BENCHMARK(BM_BuildLegacyGuidIndex)->Unit(benchmark::kMicrosecond);

// Direct hits over pairs spread across the table, through the look-up itself.
void BM_GetLegacyGuidDirectHit(benchmark::State& state) {
    const LegacyGuidIndex index = BuildLegacyGuidIndex();
    const StringLookup noText = [](const QanStringT<wchar_t>&, StringKind) {
        return QanStringT<wchar_t>();
    };
    const QanStringT<wchar_t> app = L"Lumenform";
    std::size_t next = 0;
    const auto before = QanBench::AllocationCount();
    for (auto _ : state) {
        const LegacyGuidRecord& record = index[next];
        next = (next + 7919) % index.size();
        QanStringT<wchar_t> guid = GetLegacyGuid(index, noText, record.component, record.id, app);
        benchmark::DoNotOptimize(guid.data());
    }
    state.counters["allocs/lookup"] =
        benchmark::Counter(static_cast<double>(QanBench::AllocationCount() - before) /
                           static_cast<double>(state.iterations()));
}
BENCHMARK(BM_GetLegacyGuidDirectHit);

// The same through the service object, as the exported function reaches it.
void BM_ServiceGetLegacyGuidDirectHit(benchmark::State& state) {
    const ResourcesImpl service(nullptr, nullptr, nullptr, nullptr, BuildLegacyGuidIndex(),
                                nullptr);
    const LegacyGuidIndex index = BuildLegacyGuidIndex();
    std::size_t next = 0;
    const auto before = QanBench::AllocationCount();
    for (auto _ : state) {
        const LegacyGuidRecord& record = index[next];
        next = (next + 7919) % index.size();
        QanStringT<wchar_t> guid = service.GetLegacyGuid(record.component, record.id);
        benchmark::DoNotOptimize(guid.data());
    }
    state.counters["allocs/lookup"] =
        benchmark::Counter(static_cast<double>(QanBench::AllocationCount() - before) /
                           static_cast<double>(state.iterations()));
}
BENCHMARK(BM_ServiceGetLegacyGuidDirectHit);

// A host with a dozen plug-ins, each registering a few hundred keys per table.
constexpr int kPlugins = 12, kKeysPerPlugin = 250;

std::wstring PluginName(int plugin) {
    return L"Plugin" + std::to_wstring(plugin);
}

std::wstring PluginKey(int plugin, int n) {
    return L"Plugin" + std::to_wstring(plugin) + L".Command." + std::to_wstring(1000 + n);
}

// Every registered key, in an order that jumps across the tables.
const std::vector<std::wstring>& LookupKeys() {
    static const std::vector<std::wstring> keys = [] {
        std::vector<std::wstring> all;
        for (int n = 0; n < kKeysPerPlugin; ++n)
            for (int plugin = 0; plugin < kPlugins; ++plugin)
                all.push_back(PluginKey((plugin * 5 + n) % kPlugins, n));
        return all;
    }();
    return keys;
}

std::vector<std::wstring> PluginKeys(int plugin) {
    std::vector<std::wstring> keys;
    for (int n = 0; n < kKeysPerPlugin; ++n)
        keys.push_back(PluginKey(plugin, n));
    return keys;
}

HINSTANCE PluginModule(int plugin) {
    return reinterpret_cast<HINSTANCE>(static_cast<std::uintptr_t>(plugin + 1) << 16);
}

constexpr Framework::Resources::ResourceType kTables[] = {
    Framework::Resources::Icon, Framework::Resources::Cursor, Framework::Resources::String};

// Registers one plug-in at a time, as hosts load them.
void RegisterPlugins(LegacyResourceCollection& collection) {
    for (int plugin = 0; plugin < kPlugins; ++plugin) {
        const std::wstring name = PluginName(plugin);
        const std::vector<std::wstring> keys = PluginKeys(plugin);
        std::vector<Framework::Resources::RegistrarMapEntry> entries;
        for (int n = 0; n < kKeysPerPlugin; ++n)
            entries.push_back({keys[static_cast<std::size_t>(n)].c_str(), 100 + n, {}});
        collection.AddComponent(name.c_str(), PluginModule(plugin));
        for (auto type : kTables)
            collection.AddResources(name.c_str(), entries.data(), kKeysPerPlugin, type);
    }
}

// Shared by the threads of a run; filled by the first thread to get here.
const LegacyResourceCollection& RegisteredCollection() {
    static LegacyResourceCollection collection;
    static const bool registered = (RegisterPlugins(collection), true);
    benchmark::DoNotOptimize(registered);
    return collection;
}

// Each thread starts at its own offset so the threads do not walk the keys in step.
void BM_LegacyCollectionLookup(benchmark::State& state) {
    const LegacyResourceCollection& collection = RegisteredCollection();
    const std::vector<std::wstring>& keys = LookupKeys();
    std::size_t next = static_cast<std::size_t>(state.thread_index()) * 997 % keys.size();
    for (auto _ : state) {
        auto hit = collection.GetResource(keys[next], Framework::Resources::Icon);
        benchmark::DoNotOptimize(hit);
        next = (next + 1) % keys.size();
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_LegacyCollectionLookup)->Threads(1)->Threads(2)->UseRealTime();

// The floor: the same keys found in a sorted vector of keys that nothing guards.
void BM_LegacyLookupFloor(benchmark::State& state) {
    static const std::vector<std::wstring> sorted = [] {
        std::vector<std::wstring> all = LookupKeys();
        std::sort(all.begin(), all.end());
        return all;
    }();
    const std::vector<std::wstring>& keys = LookupKeys();
    std::size_t next = static_cast<std::size_t>(state.thread_index()) * 997 % keys.size();
    for (auto _ : state) {
        auto hit = std::equal_range(sorted.begin(), sorted.end(), keys[next]);
        benchmark::DoNotOptimize(hit);
        next = (next + 1) % keys.size();
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_LegacyLookupFloor)->Threads(1)->Threads(2)->UseRealTime();

#if defined(__GLIBC__)
// Heap bytes in use, from the C library's own accounting: small blocks plus the large
// ones it maps separately.
double HeapBytes() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

// The heap a collection holds with the plug-ins registered one at a time (one component
// and three tables each), against the same entries registered with one call per table
// (under a single component name, so the entries' own sizes match).
void BM_LegacyMemoryAfterRegistration(benchmark::State& state) {
    double oneByOne = 0, atOnce = 0;
    for (auto _ : state) {
        const double start = HeapBytes();
        {
            LegacyResourceCollection collection;
            RegisterPlugins(collection);
            oneByOne = HeapBytes() - start;
        }
        std::vector<std::wstring> keys;
        for (int plugin = 0; plugin < kPlugins; ++plugin)
            for (std::wstring& key : PluginKeys(plugin))
                keys.push_back(std::move(key));
        std::vector<Framework::Resources::RegistrarMapEntry> entries;
        for (std::size_t n = 0; n < keys.size(); ++n)
            entries.push_back({keys[n].c_str(), 100 + static_cast<int>(n), {}});
        const double before = HeapBytes();
        LegacyResourceCollection collection;
        collection.AddComponent(L"Plugin0", PluginModule(0));
        for (auto type : kTables)
            collection.AddResources(L"Plugin0", entries.data(), static_cast<int>(entries.size()),
                                    type);
        atOnce = HeapBytes() - before;
    }
    state.counters["one_by_one_MB"] = oneByOne / 1e6;
    state.counters["at_once_MB"] = atOnce / 1e6;
    state.counters["one_by_one_over_at_once"] = oneByOne / atOnce;
}
BENCHMARK(BM_LegacyMemoryAfterRegistration)->Iterations(1)->Unit(benchmark::kMillisecond);
#endif

} // namespace

BENCHMARK_MAIN();

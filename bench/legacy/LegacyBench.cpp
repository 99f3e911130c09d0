// Costs of the legacy GUID table: building the sorted index at service construction, and
// resolving a (component, id) pair that has its own row, with the heap allocations each
// look-up makes (the returned string should be the only one).
#include "legacy/LegacyGuidIndex.h"
#include "legacy/LegacyStringLookup.h"
#include "service/ResourcesImpl.h"

#include "support/AllocationCounter.h"

#include <benchmark/benchmark.h>

namespace {
using namespace Framework::Internal;

void BM_BuildLegacyGuidIndex(benchmark::State& state) {
    for (auto _ : state) {
        LegacyGuidIndex index = BuildLegacyGuidIndex();
        benchmark::DoNotOptimize(index.data());
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

} // namespace

BENCHMARK_MAIN();

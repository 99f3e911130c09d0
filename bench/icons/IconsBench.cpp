// Speed of the icon and cursor paths: reading an icon map, icon and cursor look-ups, the
// cursor table archive and the PE resource walk over a synthetic resource section.
#include "CursorTableWriter.h"
#include "base/Settings.h"
#include "icons/CursorResourceCollection.h"
#include "icons/CursorTable.h"
#include "icons/IconResourceCollection.h"
#include "platform/PeResources.h"
#include "platform/Platform.h"

#include <benchmark/benchmark.h>
#include <expat.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {
using namespace Framework;
using namespace Framework::Internal;

constexpr int kEntries = 10000;

std::wstring Key(int i) {
    wchar_t key[40];
    std::swprintf(key, 40, L"{%08X-0000-4000-8000-000000000000}", i);
    return key;
}

// The map of kEntries sorted keys; noteBytes > 0 puts a "note" element of that much text
// after each entry, text that is no part of any map.
std::filesystem::path WriteMap(std::int64_t noteBytes = 0) {
    const auto path = std::filesystem::temp_directory_path() / "qanres-bench-icons.map.xml";
    std::ofstream out(path, std::ios::binary);
    out << "<icons>\n";
    const std::string note(static_cast<std::size_t>(noteBytes), 'n');
    for (int i = 0; i < kEntries; ++i) {
        const std::wstring key = Key(i);
        out << "  <map guid=\"" << std::string(key.begin(), key.end()) << "\">icon" << i
            << (i % 2 ? ".ico" : ".png.png") << "</map>\n";
        if (noteBytes > 0)
            out << "  <note>" << note << "</note>\n";
    }
    out << "</icons>\n";
    return path;
}

void IconMapLoad(benchmark::State& state) {
    const auto path = WriteMap(state.range(0));
    for (auto _ : state) {
        std::vector<IconMapEntry> entries;
        LoadIconMap(entries, path.wstring().c_str());
        benchmark::DoNotOptimize(entries.data());
    }
    state.SetItemsProcessed(state.iterations() * kEntries);
    std::filesystem::remove(path);
}
BENCHMARK(IconMapLoad)->Arg(0)->Arg(256)->Unit(benchmark::kMillisecond);

// The floor of IconMapLoad: the same file read and parsed by expat with no callbacks (the
// loader's time over this is what its callbacks cost).
void IconMapParseFloor(benchmark::State& state) {
    const auto path = WriteMap(state.range(0));
    for (auto _ : state) {
        std::uint64_t size = 0;
        const auto bytes =
            Platform::CurrentPlatform().ReadFileInfoBuffer(path.wstring().c_str(), size);
        XML_Parser parser = XML_ParserCreate(nullptr);
        benchmark::DoNotOptimize(XML_Parse(parser, bytes.get(), static_cast<int>(size), XML_TRUE));
        XML_ParserFree(parser);
    }
    state.SetItemsProcessed(state.iterations() * kEntries);
    std::filesystem::remove(path);
}
BENCHMARK(IconMapParseFloor)->Arg(0)->Arg(256)->Unit(benchmark::kMillisecond);

// What the tool asks for: the same reading with each entry's bytes recorded.
void IconMapScanWithSpans(benchmark::State& state) {
    const auto path = WriteMap();
    std::ifstream in(path, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(in)), {});
    for (auto _ : state) {
        auto scan = ScanIconMap(bytes, true);
        benchmark::DoNotOptimize(scan.spans.data());
    }
    state.SetItemsProcessed(state.iterations() * kEntries);
    std::filesystem::remove(path);
}
BENCHMARK(IconMapScanWithSpans)->Unit(benchmark::kMillisecond);

void IconLookup(benchmark::State& state) {
    const auto path = WriteMap();
    IconResourceCollection icons;
    std::vector<IconMapEntry> entries;
    LoadIconMap(entries, path.wstring().c_str());
    icons.SetEntries(std::move(entries));
    std::filesystem::remove(path);
    ProcessSettings().iconDirectory = std::filesystem::temp_directory_path().wstring();
    ProcessSettings().iconSubdirectory.clear();
    int i = 0;
    for (auto _ : state) {
        auto hit = icons.GetResource(Key(i));
        benchmark::DoNotOptimize(hit);
        i = (i + 7919) % kEntries;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(IconLookup);

std::vector<std::byte> CursorTableBytes() {
    std::vector<QanTool::CursorTable::Entry> entries;
    for (int i = 0; i < kEntries; ++i) {
        const std::wstring key = Key(i);
        entries.push_back({std::u16string(key.begin(), key.end()), static_cast<std::uint32_t>(i)});
    }
    return QanTool::CursorTable::Write(entries);
}

void CursorTableRead(benchmark::State& state) {
    const auto bytes = CursorTableBytes();
    for (auto _ : state) {
        auto table = ReadCursorTable(bytes);
        benchmark::DoNotOptimize(table.entries.data());
    }
    state.SetItemsProcessed(state.iterations() * kEntries);
}
BENCHMARK(CursorTableRead)->Unit(benchmark::kMicrosecond);

// Serves the synthetic table as resource 2 of any module; frees nothing.
class TablePlatform final : public Platform::IPlatform {
public:
    std::vector<std::byte> table = CursorTableBytes();
    const IPlatform& system = Platform::SystemPlatform();

    std::unique_ptr<char[]> ReadFileInfoBuffer(const wchar_t* p, std::uint64_t& s) const override {
        return system.ReadFileInfoBuffer(p, s);
    }
    bool Exists(const QanStringT<wchar_t>& p) const override { return system.Exists(p); }
    bool IsFile(const QanStringT<wchar_t>& p) const override { return system.IsFile(p); }
    bool IsFolder(const QanStringT<wchar_t>& p) const override { return system.IsFolder(p); }
    QanStringT<wchar_t> ExecutableDirectory() const override {
        return system.ExecutableDirectory();
    }
    HINSTANCE LoadModule(const wchar_t*) const override { return nullptr; }
    void FreeModule(HINSTANCE) const override {}
    std::span<const std::byte> FindRawDataResource(HINSTANCE, int) const override { return table; }
    bool GetStockIconLocation(int, Platform::StockIconLocation&) const override { return false; }
    int CopyWide(wchar_t* d, std::int64_t n, const wchar_t* s) const override {
        return system.CopyWide(d, n, s);
    }
};

void CursorLookup(benchmark::State& state) {
    TablePlatform platform;
    Platform::SetPlatformForTests(&platform);
    {
        CursorResourceCollection cursors;
        cursors.LoadFromModule(reinterpret_cast<HINSTANCE>(static_cast<std::uintptr_t>(0x10)));
        int i = 0;
        for (auto _ : state) {
            auto hit = cursors.GetResource(Key(i));
            benchmark::DoNotOptimize(hit);
            i = (i + 7919) % kEntries;
        }
    }
    Platform::SetPlatformForTests(nullptr);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(CursorLookup);

// A minimal PE32+ image: headers, one section holding a resource tree with 64 raw-data
// resources, the last of which is looked up.
std::vector<std::byte> SyntheticPe() {
    std::vector<std::byte> b(0x1000 + 0x1000);
    auto put32 = [&](std::size_t at, std::uint32_t v) {
        for (int i = 0; i < 4; ++i)
            b[at + i] = static_cast<std::byte>(v >> (8 * i));
    };
    auto put16 = [&](std::size_t at, std::uint16_t v) {
        b[at] = static_cast<std::byte>(v);
        b[at + 1] = static_cast<std::byte>(v >> 8);
    };
    put16(0, 0x5A4D);
    put32(0x3C, 0x80);
    put32(0x80, 0x4550);
    put16(0x86, 1);   // sections
    put16(0x94, 240); // optional header size
    const std::size_t opt = 0x98;
    put16(opt, 0x20B);
    put32(opt + 108, 16);
    put32(opt + 128, 0x1000); // resource rva
    put32(opt + 132, 0x1000); // resource size
    const std::size_t section = opt + 240;
    put32(section + 8, 0x1000);
    put32(section + 12, 0x1000);
    put32(section + 16, 0x1000);
    put32(section + 20, 0x1000);
    const std::size_t root = 0x1000;
    constexpr int kResources = 64;
    put16(root + 14, 1);
    put32(root + 16, 10);
    put32(root + 20, 0x80000000u | 0x18);
    put16(root + 0x18 + 14, kResources);
    for (int i = 0; i < kResources; ++i) {
        const std::uint32_t languages = 0x300 + i * 0x18;
        put32(root + 0x18 + 16 + i * 8, static_cast<std::uint32_t>(i + 1));
        put32(root + 0x18 + 20 + i * 8, 0x80000000u | languages);
        put16(root + languages + 14, 1);
        put32(root + languages + 16, 0x409);
        put32(root + languages + 20, 0xC00 + i * 16);
        put32(root + 0xC00 + i * 16, 0x1000 + 0xC00); // data rva
        put32(root + 0xC00 + i * 16 + 4, 16);
    }
    return b;
}

void PeResourceFind(benchmark::State& state) {
    const auto image = SyntheticPe();
    if (Platform::FindPeRawData(image, 64).size() != 16) {
        state.SkipWithError("synthetic image not readable");
        return;
    }
    for (auto _ : state) {
        auto found = Platform::FindPeRawData(image, 64);
        benchmark::DoNotOptimize(found);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(PeResourceFind);

} // namespace

BENCHMARK_MAIN();

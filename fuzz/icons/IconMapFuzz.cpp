// Fuzzes the icon map: any bytes through the one map reader, then as "icons.map.xml"
// through the loader and look-ups of the keys it gave against icon locations that are
// files, folders or neither. A rejected map keeps nothing; an accepted one keeps entries
// whose file names are not empty and whose spans lie inside the bytes, in document order;
// the loader keeps exactly the scanned entries; every key of a sorted map is found.
#include "FuzzPlatform.h"
#include "base/Settings.h"
#include "icons/IconMapScan.h"
#include "icons/IconResourceCollection.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

void Check(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "violated: %s\n", what);
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const auto scan = Framework::Internal::ScanIconMap(input, true);
    if (!scan.Accepted()) {
        Check(scan.entries.empty(), "a rejected map keeps nothing");
        Check(scan.faultOffset <= size, "a fault stands inside the bytes");
    } else {
        Check(scan.spans.size() == scan.entries.size(), "one span per entry");
        for (std::size_t i = 0; i < scan.entries.size(); ++i) {
            Check(!scan.entries[i].fileName.empty(), "a kept entry names a file");
            Check(scan.spans[i].begin < scan.spans[i].end && scan.spans[i].end <= size,
                  "an entry's span lies inside the bytes");
            Check(input[scan.spans[i].begin] == '<' || input[scan.spans[i].begin] == '&',
                  "a span starts at a tag or at the entity that holds it");
        }
    }

    static QanFuzz::FuzzPlatform platform;
    Framework::Platform::SetPlatformForTests(&platform);
    platform.bytes = std::as_bytes(std::span(data, size));

    Framework::Internal::IconResourceCollection icons;
    std::vector<Framework::Internal::IconMapEntry> read;
    Framework::Internal::LoadIconMap(read, L"icons.map.xml");
    icons.SetEntries(std::move(read));
    const auto& entries = icons.Entries();
    Check(entries.size() == scan.entries.size(), "the loader keeps the scanned entries");
    for (std::size_t i = 0; i < entries.size(); ++i)
        Check(entries[i].key == scan.entries[i].key &&
                  entries[i].fileName == scan.entries[i].fileName,
              "the loader keeps the scanned entries");

    const bool sorted = std::is_sorted(entries.begin(), entries.end(),
                                       [](const auto& a, const auto& b) { return a.key < b.key; });
    auto& settings = Framework::Internal::ProcessSettings();
    settings.iconDirectory = L"D";
    for (const wchar_t* subdirectory : {L"", L"S", L"SS", L"SSS"}) {
        settings.iconSubdirectory = subdirectory;
        for (std::size_t i = 0; i < entries.size() && i < 8; ++i)
            if (!icons.GetResource(entries[i].key) && sorted)
                Check(false, "every key of a sorted map is found");
    }
    (void)icons.GetResource(L"");
    return 0;
}

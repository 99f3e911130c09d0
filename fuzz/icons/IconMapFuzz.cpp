// Fuzzes the icon map: any bytes as "icons.map.xml", read by the loader and by the scan
// the tool shares, then look-ups of the keys it gave against icon locations that are
// files, folders or neither.
#include "FuzzPlatform.h"
#include "base/Settings.h"
#include "icons/IconMapScan.h"
#include "icons/IconResourceCollection.h"

#include <algorithm>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static QanFuzz::FuzzPlatform platform;
    Framework::Platform::SetPlatformForTests(&platform);
    platform.bytes = std::as_bytes(std::span(data, size));

    Framework::Internal::IconResourceCollection icons;
    std::vector<Framework::Internal::IconMapEntry> read;
    Framework::Internal::LoadIconMap(read, L"icons.map.xml");
    icons.SetEntries(std::move(read));

    // The tool's reading of the same bytes: the loader's verdict and entries, each entry's
    // bytes inside the input, and a fault within it.
    const auto scan = Framework::Internal::ScanIconMap(
        std::string_view(reinterpret_cast<const char*>(data), size), true);
    const auto& loaded = icons.Entries();
    if (scan.entries.size() != loaded.size() || scan.spans.size() != loaded.size() ||
        scan.faultOffset > size || (!scan.Accepted() && !loaded.empty()))
        __builtin_trap();
    for (std::size_t i = 0; i < loaded.size(); ++i)
        if (scan.entries[i].key != loaded[i].key ||
            scan.entries[i].fileName != loaded[i].fileName ||
            scan.spans[i].begin > scan.spans[i].end || scan.spans[i].end > size)
            __builtin_trap();

    const auto& entries = icons.Entries();
    const bool sorted = std::is_sorted(entries.begin(), entries.end(),
                                       [](const auto& a, const auto& b) { return a.key < b.key; });
    auto& settings = Framework::Internal::ProcessSettings();
    settings.iconDirectory = L"D";
    for (const wchar_t* subdirectory : {L"", L"S", L"SS", L"SSS"}) {
        settings.iconSubdirectory = subdirectory;
        for (std::size_t i = 0; i < entries.size() && i < 8; ++i)
            if (!icons.GetResource(entries[i].key) && sorted)
                __builtin_trap(); // every key of a sorted map is found
    }
    (void)icons.GetResource(L"");
    return 0;
}

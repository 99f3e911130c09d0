// ReaderModelFuzz.cpp: qanres lint judges files by its own model of how the library reads
// them; this target holds that model to the library's readers on any bytes. The first
// input byte picks the grammar, the rest is the file: a string text file (the ids and
// texts the library's scan keeps, in file order), a key table (its rows), an icon map (no
// problem found exactly when the library keeps the map, and then the same entries) or a
// cursor table (the same count, entries and missing entries).
#include "CursorTable.h"
#include "FuzzPlatform.h"
#include "IconMap.h"
#include "KeyTable.h"
#include "TextFile.h"

#include "base/Unicode.h"
#include "icons/CursorTable.h"
#include "icons/IconResourceCollection.h"
#include "strings/CsvKeyTable.h"
#include "strings/XmlStringTable.h"

#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace {
using namespace Framework::Internal;

void Check(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "violated: %s\n", what);
        std::abort();
    }
}

QanStringT<wchar_t> Wide(const std::string& utf8) {
    return Framework::Utf8::Decode(utf8);
}

QanStringT<wchar_t> Wide(const std::u16string& units) {
    QanStringT<wchar_t> out;
    for (std::size_t i = 0; i < units.size(); ++i) {
        char32_t unit = units[i];
        if (Framework::Unicode::IsHighSurrogate(unit) && i + 1 < units.size() &&
            Framework::Unicode::IsLowSurrogate(units[i + 1]))
            unit = Framework::Unicode::CombineSurrogates(unit, units[++i]);
        else if (sizeof(wchar_t) == 4 && Framework::Unicode::IsSurrogate(unit))
            unit = 0xFFFD; // the library's reading of an unpaired surrogate
        out.push_back(static_cast<wchar_t>(unit));
    }
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    static QanFuzz::FuzzPlatform platform;
    Framework::Platform::SetPlatformForTests(&platform);
    platform.asPeFile = false;
    const std::string_view file(reinterpret_cast<const char*>(data + 1), size - 1);
    platform.bytes = std::as_bytes(std::span(file.data(), file.size()));

    switch (data[0] % 4) {
    case 0: {
        StringTable table;
        LoadXmlStringTable(table, L"strings.xml", false);
        const QanTool::ReaderView model = QanTool::ReadAsLibrary(file);
        Check(model.rows.size() == table.entries.size(), "lint sees the rows the library reads");
        for (std::size_t i = 0; i < model.rows.size(); ++i) {
            Check(model.rows[i].id == table.entries[i].key, "lint reads each id as the library");
            Check(model.rows[i].text == table.entries[i].text,
                  "lint reads each text as the library");
        }
        break;
    }
    case 1: {
        StringTable table;
        LoadCsvKeyTable(table, L"string.csv");
        const auto model = QanTool::ReadKeyTableAsLibrary(file);
        Check(model.size() == table.entries.size(), "lint sees the key rows the library reads");
        for (std::size_t i = 0; i < model.size(); ++i)
            Check(model[i].key == table.entries[i].key && model[i].id == table.entries[i].text,
                  "lint reads each key and id as the library");
        break;
    }
    case 2: {
        IconResourceCollection icons;
        LoadIconMap(icons.Entries(), L"icons.map.xml");
        const QanTool::IconMapView model = QanTool::ReadIconMap(file);
        if (!model.problems.empty()) {
            if (!model.problems.front().unchecked)
                Check(icons.Entries().empty(), "a map lint finds a problem in is rejected");
            break;
        }
        Check(model.entries.size() == icons.Entries().size(),
              "lint sees the icon entries the library reads");
        for (std::size_t i = 0; i < model.entries.size(); ++i)
            Check(Wide(model.entries[i].key) == icons.Entries()[i].key &&
                      Wide(model.entries[i].file) == icons.Entries()[i].fileName,
                  "lint reads each icon entry as the library");
        break;
    }
    default: {
        const QanTool::DecodedCursorTable model = QanTool::DecodeCursorTable(file);
        try {
            const CursorTable table = ReadCursorTable(platform.bytes);
            Check(model.count >= 0, "a negative count fails the library's reader");
            Check(table.Size() == static_cast<std::uint64_t>(model.count),
                  "lint counts the cursor entries as the library");
            Check(model.entries.size() == table.entries.size(),
                  "lint reads the cursor entries the library reads");
            for (std::size_t i = 0; i < model.entries.size(); ++i)
                Check(model.entries[i].id == table.entries[i].id &&
                          Wide(model.entries[i].name) == table.entries[i].name,
                      "lint reads each cursor entry as the library");
        } catch (const std::length_error&) {
            Check(model.count < 0, "only a negative count fails the library's reader");
        }
        break;
    }
    }
    return 0;
}

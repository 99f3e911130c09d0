// -----------------------------------------------------------------------------
// File: LoadReport.h
// -----------------------------------------------------------------------------
//
// What the resource service read when it was built: each file with its rows and bytes,
// the files that were missing or refused and why, whether the full string file has been
// read since, and which settings changed after the service was built. A host whose
// directories are wrong otherwise only sees empty answers.
//
// Not part of QanResources.h: include this header where the report is wanted. Taking a
// report never builds the service, and costs the look-ups nothing: the service records
// what it reads while it reads it. Reports may be taken from any thread, beside look-ups.
#pragma once

#include <framework/Export.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Framework {

struct LoadReport {
    // NotBuilt: no look-up or Preload has built the service yet; nothing was read.
    // TestService: a service installed by IResources::SetResourcesForTests answers the
    // look-ups; the built-in service's records, if it was built, are still listed.
    enum class State { NotBuilt, TestService, Built };

    // The files the service reads, in the order it reads them.
    enum class File {
        StartupStrings,    // <master>/startupstrings.xml
        OverrideStrings,   // <master>/override/strings.xml
        StringKeys,        // <resources>/string.csv
        CaptionKeys,       // <resources>/caption.csv
        TooltipHeaderKeys, // <resources>/tooltipHeader.csv
        TooltipBodyKeys,   // <resources>/tooltipBody.csv
        IconMap,           // <resources>/icons.map.xml
        IconLibrary,       // QanIcons.dll and the cursor table inside it
        FullStrings,       // <master>/strings.xml, read at the first look-up that needs it
    };

    enum class Outcome {
        Read,    // read; reason says where and why the reading stopped short, if it did
        Missing, // no such file (or library); the look-ups answer as for an empty one
        Refused, // present but not used: reason says why; nothing of it is kept
        Skipped, // not asked for: reason says why
    };

    struct FileRecord {
        File file = File::StartupStrings;
        std::wstring path;
        Outcome outcome = Outcome::Missing;
        std::uint64_t rows = 0;              // rows (or map entries, or cursors) kept
        std::uint64_t bytes = 0;             // bytes read
        std::wstring reason;                 // empty when the whole file was read and kept
        std::optional<std::uint64_t> offset; // the byte the reason speaks of
    };

    enum class Setting {
        MasterStringDirectory,
        ResourceDirectory,
        IconDirectory,
        IconSubdirectory,
        ImagesDirectory,
        CursorsDirectory,
        AppName,
    };

    // A setting whose value differs from the one the service was built with.
    struct SettingChange {
        Setting setting = Setting::MasterStringDirectory;
        std::wstring atConstruction;
        std::wstring now;
        bool takesEffect = false; // whether later look-ups see the new value
        std::wstring effect;      // what follows from the change
    };

    State state = State::NotBuilt;
    std::vector<FileRecord> files;
    // True once the full string file has been asked for (files then holds its record).
    bool fullStringsRead = false;
    std::vector<SettingChange> changedSettings;

    bool AnyRefused() const {
        for (const FileRecord& record : files)
            if (record.outcome == Outcome::Refused)
                return true;
        return false;
    }
};

// What the service read so far; never builds it. Example:
//   if (Framework::GetLoadReport().AnyRefused()) ShowWarning(...);
QANRESOURCES_API LoadReport GetLoadReport();

// The report as lines of text, one file or setting a line. Example:
//   std::wcerr << Framework::FormatLoadReport(Framework::GetLoadReport());
QANRESOURCES_API std::wstring FormatLoadReport(const LoadReport& report);

// The short names FormatLoadReport uses, e.g. L"startupstrings.xml", L"refused",
// L"master string directory".
QANRESOURCES_API const wchar_t* LoadReportName(LoadReport::File file);
QANRESOURCES_API const wchar_t* LoadReportName(LoadReport::Outcome outcome);
QANRESOURCES_API const wchar_t* LoadReportName(LoadReport::Setting setting);

} // namespace Framework

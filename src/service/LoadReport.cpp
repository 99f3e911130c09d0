// LoadReport.cpp: the load report taken from the built service's recorder, with the
// settings changed since the service was built and what follows from each change.
#include <framework/LoadReport.h>

#include "base/LoadRecord.h"
#include "base/Settings.h"
#include "service/ResourcesImpl.h"

#include <string>

namespace Framework {

using Internal::Settings;

namespace {

// What a later setter changes, given how the service reads each setting: the files read
// at construction are not read again, the settings read at each look-up take effect.
void AddChanges(const Settings& before, const Settings& now, bool fullStringsRead,
                std::vector<LoadReport::SettingChange>& changes) {
    auto check = [&](LoadReport::Setting setting, const QanStringT<wchar_t>& old,
                     const QanStringT<wchar_t>& current, bool takesEffect, const wchar_t* effect) {
        if (old != current)
            changes.push_back({setting, old, current, takesEffect, effect});
    };
    using Setting = LoadReport::Setting;
    if (fullStringsRead)
        check(Setting::MasterStringDirectory, before.masterStringDirectory,
              now.masterStringDirectory, false,
              L"not read again: strings.xml, startupstrings.xml and the overrides are read");
    else
        check(Setting::MasterStringDirectory, before.masterStringDirectory,
              now.masterStringDirectory, true,
              L"strings.xml will be read from here; startupstrings.xml and the overrides are "
              L"not read again");
    check(Setting::ResourceDirectory, before.resourceDirectory, now.resourceDirectory, false,
          L"not read again: the key tables and the icon map keep what was read");
    check(Setting::IconDirectory, before.iconDirectory, now.iconDirectory, true,
          before.iconDirectory.empty()
              ? L"icon paths use it from the next look-up; the icon map, skipped without it, is "
                L"not read again"
              : L"icon paths use it from the next look-up");
    check(Setting::IconSubdirectory, before.iconSubdirectory, now.iconSubdirectory, true,
          L"icon paths use it from the next look-up");
    check(Setting::ImagesDirectory, before.imagesDirectory, now.imagesDirectory, true,
          L"image paths use it from the next look-up");
    check(Setting::CursorsDirectory, before.cursorsDirectory, now.cursorsDirectory, false,
          L"never read: cursors come from QanIcons.dll, which is not loaded again");
    check(Setting::AppName, before.appName, now.appName, true,
          L"the legacy GUID look-ups use it from the next look-up");
}

} // namespace

LoadReport GetLoadReport() {
    LoadReport report;
    const Internal::ResourcesImpl* service = Internal::BuiltService();
    if (Internal::TestServiceInstalled())
        report.state = LoadReport::State::TestService;
    else if (service)
        report.state = LoadReport::State::Built;
    if (!service || !service->Recorder())
        return report;
    const Internal::LoadRecorder& recorder = *service->Recorder();
    recorder.CopyInto(report);
    AddChanges(recorder.SettingsAtConstruction(), Internal::ProcessSettings(),
               report.fullStringsRead, report.changedSettings);
    return report;
}

const wchar_t* LoadReportName(LoadReport::File file) {
    switch (file) {
    case LoadReport::File::StartupStrings:
        return L"startupstrings.xml";
    case LoadReport::File::OverrideStrings:
        return L"override/strings.xml";
    case LoadReport::File::StringKeys:
        return L"string.csv";
    case LoadReport::File::CaptionKeys:
        return L"caption.csv";
    case LoadReport::File::TooltipHeaderKeys:
        return L"tooltipHeader.csv";
    case LoadReport::File::TooltipBodyKeys:
        return L"tooltipBody.csv";
    case LoadReport::File::IconMap:
        return L"icons.map.xml";
    case LoadReport::File::IconLibrary:
        return L"QanIcons.dll";
    case LoadReport::File::FullStrings:
        return L"strings.xml";
    }
    return L"";
}

const wchar_t* LoadReportName(LoadReport::Outcome outcome) {
    switch (outcome) {
    case LoadReport::Outcome::Read:
        return L"read";
    case LoadReport::Outcome::Missing:
        return L"missing";
    case LoadReport::Outcome::Refused:
        return L"refused";
    case LoadReport::Outcome::Skipped:
        return L"skipped";
    }
    return L"";
}

const wchar_t* LoadReportName(LoadReport::Setting setting) {
    switch (setting) {
    case LoadReport::Setting::MasterStringDirectory:
        return L"master string directory";
    case LoadReport::Setting::ResourceDirectory:
        return L"resource directory";
    case LoadReport::Setting::IconDirectory:
        return L"icon directory";
    case LoadReport::Setting::IconSubdirectory:
        return L"icon subdirectory";
    case LoadReport::Setting::ImagesDirectory:
        return L"images directory";
    case LoadReport::Setting::CursorsDirectory:
        return L"cursors directory";
    case LoadReport::Setting::AppName:
        return L"app name";
    }
    return L"";
}

std::wstring FormatLoadReport(const LoadReport& report) {
    std::wstring out;
    switch (report.state) {
    case LoadReport::State::NotBuilt:
        return L"service: not built yet; nothing has been read\n";
    case LoadReport::State::TestService:
        out += L"service: a test service answers the look-ups\n";
        break;
    case LoadReport::State::Built:
        out += L"service: built\n";
        break;
    }
    for (const LoadReport::FileRecord& file : report.files) {
        out += LoadReportName(file.file);
        out += L": ";
        out += LoadReportName(file.outcome);
        if (file.outcome == LoadReport::Outcome::Read) {
            out += L", " + std::to_wstring(file.rows) + L" rows, " + std::to_wstring(file.bytes) +
                   L" bytes";
        }
        if (!file.reason.empty())
            out += L": " + file.reason;
        if (file.offset)
            out += L" (at byte " + std::to_wstring(*file.offset) + L")";
        out += L"\n  " + file.path + L"\n";
    }
    // Only a built service has a strings.xml to read later.
    if (!report.files.empty() && !report.fullStringsRead)
        out += L"strings.xml: not read yet (read at the first look-up that needs it)\n";
    for (const LoadReport::SettingChange& change : report.changedSettings) {
        out += L"changed after construction: ";
        out += LoadReportName(change.setting);
        out += L" \"" + change.atConstruction + L"\" -> \"" + change.now + L"\": ";
        out += change.effect;
        out += L"\n";
    }
    return out;
}

} // namespace Framework

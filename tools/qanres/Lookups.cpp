// Lookups.cpp: the look-up commands. Keys arrive as UTF-8 arguments and are widened with
// the library's own converter (UTF-16 or UTF-32 wchar_t, as the system has it).
#include "Lookups.h"

#include "Escape.h"
#include "Json.h"

#include "base/Unicode.h"

#include <framework/LoadReport.h>
#include <framework/QanResources.h>

#include <cstdio>

namespace QanTool {
namespace {

using Framework::Resources;

QanStringT<wchar_t> Wide(const std::string& utf8) {
    return Framework::Utf8::Decode(utf8);
}

int PrintText(const QanStringT<wchar_t>& text, bool escape, std::ostream& out) {
    const std::string utf8 = Framework::Utf8::Encode(text);
    out << (escape ? EscapeControls(utf8) : utf8) << '\n';
    return text.empty() ? 1 : 0;
}

} // namespace

void ApplySettings(const LookupSettings& s) {
    const std::string master = s.masterStrings.empty() ? std::string() : s.masterStrings.front();
    Resources::SetResourceDirectories(Wide(master), Wide(s.resources), Wide(s.icons), Wide(s.base),
                                      Wide(s.iconSubdir));
    // The master string directory has a setter of its own, which hosts use to move the
    // strings to another language; the tool goes through it like such a host.
    Resources::SetMasterStringDirectory(Wide(master));
    Resources::SetAppName(Wide(s.app));
}

int LookupString(const std::string& command, const std::string& key, bool escape,
                 std::ostream& out) {
    const auto wide = Wide(key);
    QanStringT<wchar_t> text;
    if (command == "caption")
        text = Resources::GetCaption(wide);
    else if (command == "tooltip-header")
        text = Resources::GetTooltipHeader(wide);
    else if (command == "tooltip-body")
        text = Resources::GetTooltipBody(wide);
    else
        text = Resources::GetString(wide);
    return PrintText(text, escape, out);
}

int LookupResource(const std::string& command, const std::string& key, bool escape,
                   std::ostream& out) {
    const auto wide = Wide(key);
    const Resources::ResourceID r =
        command == "cursor" ? Resources::GetCursor(wide) : Resources::GetIcon(wide);
    auto field = [&](const char* name, const QanStringT<wchar_t>& value) {
        const std::string utf8 = Framework::Utf8::Encode(value);
        out << name << ": " << (escape ? EscapeControls(utf8) : utf8) << '\n';
    };
    if (r.module) {
        char pointer[32];
        std::snprintf(pointer, sizeof pointer, "%p", static_cast<void*>(r.module));
        out << "module: " << pointer << '\n';
    } else {
        out << "module: null\n";
    }
    out << "id: " << r.id << '\n';
    field("pngPath", r.pngPath);
    field("iconPath", r.iconPath);
    field("containerPath", r.containerPath);
    field("extraPath", r.extraPath);
    out << "extras:";
    for (const auto& [k, v] : r.extras)
        out << ' ' << k << '=' << v;
    out << '\n';
    return r == Resources::ResourceID{} ? 1 : 0;
}

int LookupPath(const std::string& command, const std::string& key, bool escape, std::ostream& out) {
    const auto wide = Wide(key);
    return PrintText(command == "image-path" ? Resources::GetImagePath(wide)
                                             : Resources::GetIconPath(wide),
                     escape, out);
}

int LookupLegacyGuid(const std::string& component, int id, std::ostream& out) {
    return PrintText(Resources::GetLegacyGuid(component, id), false, out);
}

int LookupLegacyString(const std::string& key, bool escape, std::ostream& out) {
    return PrintText(Resources::GetLegacyString(Wide(key)), escape, out);
}

int StripMenu(unsigned flags, const std::string& text, bool escape, std::ostream& out) {
    QanStringT<wchar_t> wide = Wide(text);
    StripMenuText(wide, flags);
    return PrintText(wide, escape, out);
}

namespace {

std::string Json(const std::wstring& text) {
    return JsonString(Framework::Utf8::Encode(text));
}

// One object per file and per changed setting; names as the text report has them.
void WriteJson(const Framework::LoadReport& report, std::ostream& out) {
    using Framework::LoadReportName;
    static const char* const states[] = {"not built", "test service", "built"};
    out << "{\"state\": \"" << states[static_cast<int>(report.state)] << "\", \"files\": [";
    const char* separator = "";
    for (const auto& file : report.files) {
        out << separator << "\n  {\"file\": " << Json(LoadReportName(file.file))
            << ", \"path\": " << Json(file.path)
            << ", \"outcome\": " << Json(LoadReportName(file.outcome))
            << ", \"rows\": " << file.rows << ", \"bytes\": " << file.bytes
            << ", \"reason\": " << Json(file.reason);
        if (file.offset)
            out << ", \"offset\": " << *file.offset;
        out << "}";
        separator = ",";
    }
    out << "],\n \"fullStringsRead\": " << (report.fullStringsRead ? "true" : "false")
        << ", \"changedSettings\": [";
    separator = "";
    for (const auto& change : report.changedSettings) {
        out << separator << "\n  {\"setting\": " << Json(LoadReportName(change.setting))
            << ", \"atConstruction\": " << Json(change.atConstruction)
            << ", \"now\": " << Json(change.now)
            << ", \"takesEffect\": " << (change.takesEffect ? "true" : "false")
            << ", \"effect\": " << Json(change.effect) << "}";
        separator = ",";
    }
    out << "]}\n";
}

} // namespace

int PrintLoadReport(bool json, std::ostream& out) {
    Resources::Preload();
    const Framework::LoadReport report = Framework::GetLoadReport();
    if (json)
        WriteJson(report, out);
    else
        out << Framework::Utf8::Encode(Framework::FormatLoadReport(report));
    return report.AnyRefused() ? 1 : 0;
}

} // namespace QanTool

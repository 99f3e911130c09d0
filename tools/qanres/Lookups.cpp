// Lookups.cpp: the look-up commands. Keys arrive as UTF-8 arguments and are widened with
// the library's own converter (UTF-16 or UTF-32 wchar_t, as the system has it).
#include "Lookups.h"

#include "Escape.h"

#include "base/Unicode.h"

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

} // namespace QanTool

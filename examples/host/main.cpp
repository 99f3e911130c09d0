// main.cpp: a Daubery host. It points the library at the example resources, registers an
// old component's module with its string and icon registrar tables, injects the loader
// that reads that module's strings, and prints what the look-ups answer.
// Usage: daubery_host EXAMPLES_DIR
#include <framework/QanResources.h>

#include <cstdio>
#include <map>
#include <string>

namespace {

using Framework::Resources;

// The old component's "module": a table of tagged texts by string id. A real host would
// pass the module handle of a loaded DLL and a loader that calls into it.
const std::map<std::uint32_t, std::wstring> kOldBrushModuleStrings = {
    {3001, L"\x0001"
           L"CT=&Airbrush\x0001"
           L"TT=Sprays a fine mist of paint.\x0001"
           L"TH=Airbrush"},
    {3002, L"Glaze\nLays a thin transparent coat over the layer.\nGla&ze"},
};
int oldBrushModuleAnchor = 0; // its address stands in for the module handle

HINSTANCE OldBrushModule() {
    return reinterpret_cast<HINSTANCE>(&oldBrushModuleAnchor);
}

std::string Narrow(const std::wstring& text) {
    std::string out;
    for (wchar_t c : text) {
        if (c == 1)
            out += "<1>"; // the field marker of tagged texts, shown visibly
        else if (c == L'\n')
            out += "\\n";
        else if (c < 0x80)
            out += static_cast<char>(c);
        else
            out += '?';
    }
    return out;
}

void Show(const char* what, const std::wstring& text) {
    std::printf("%-34s %s\n", what, text.empty() ? "(empty)" : Narrow(text).c_str());
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: daubery_host EXAMPLES_DIR\n");
        return 2;
    }
    const std::string dir = argv[1];
    const std::wstring examples(dir.begin(), dir.end()); // the example paths are ASCII
    const std::wstring resources = examples + L"/resources";
    Resources::SetResourceDirectories(resources, resources, examples + L"/icons",
                                      examples + L"/base", L"Toolbar");
    Resources::SetAppName(L"Daubery");

    QanResources::InjectQanCtlDependency({[](HINSTANCE module, std::uint32_t id) {
        if (module != OldBrushModule())
            return std::wstring();
        const auto it = kOldBrushModuleStrings.find(id);
        return it == kOldBrushModuleStrings.end() ? std::wstring() : it->second;
    }});
    Resources::Preload();

    Resources::AddLegacyComponent(L"OldBrushes", OldBrushModule());
    const Resources::RegistrarMapEntry strings[] = {
        {L"Daubery.Legacy.Airbrush", 3001, L""},
        {L"Daubery.Legacy.Glaze", 3002, L""},
    };
    Resources::AddLegacyResources(L"OldBrushes", strings, 2, Resources::String);
    const Resources::RegistrarMapEntry icons[] = {
        {L"Daubery.Workspace.Studio", 0, examples + L"/icons/Toolbar/brush-large.ico"},
    };
    Resources::AddLegacyResources(L"wkspIcon", icons, 1, Resources::Icon);

    Show("title (string table, override):", Resources::GetString(L"Daubery.AppTitle"));
    Show("brush caption (caption table):",
         Resources::GetCaption(L"54b35f3f-c7bc-5c6d-bbd5-6fed7ef6d902"));
    Show("airbrush caption (legacy module):", Resources::GetCaption(L"Daubery.Legacy.Airbrush"));
    Show("airbrush header (legacy module):",
         Resources::GetTooltipHeader(L"Daubery.Legacy.Airbrush"));
    Show("glaze body (untagged legacy text):", Resources::GetTooltipBody(L"Daubery.Legacy.Glaze"));
    Show("glaze caption (untagged, line 3):", Resources::GetCaption(L"Daubery.Legacy.Glaze"));
    Show("brush legacy text (composed):",
         Resources::GetLegacyString(L"54b35f3f-c7bc-5c6d-bbd5-6fed7ef6d902"));
    Show("studio workspace icon (pngPath):",
         Resources::GetIcon(L"Daubery.Workspace.Studio").pngPath);
    Show("brush icon path:",
         Resources::GetIconPath(L"guid://54b35f3f-c7bc-5c6d-bbd5-6fed7ef6d902"));

    Resources::RemoveLegacyComponent(L"OldBrushes");
    Show("airbrush after removal:", Resources::GetString(L"Daubery.Legacy.Airbrush"));
    return 0;
}

// Configures the library the way a host does at start-up and checks that every exported
// function can be called across the module boundary.
#include <framework/LoadReport.h>
#include <framework/QanResources.h>

#include <cstdio>

int main() {
    using Framework::Resources;
    Resources::SetResourceDirectories(L"", L"", L"", L"base", L"");
    Resources::SetAppName(L"Lumenform");
    QanResources::InjectQanCtlDependency(
        {[](HINSTANCE, std::uint32_t id) { return L"loaded " + std::to_wstring(id); }});
    int failures = 0;
    auto check = [&failures](bool ok, const char* what) {
        if (!ok) {
            std::printf("FAILED: %s\n", what);
            ++failures;
        }
    };
    check(Framework::GetLoadReport().state == Framework::LoadReport::State::NotBuilt,
          "load report before the service is built");
    check(Resources::Preload(), "Preload");
    const Framework::LoadReport report = Framework::GetLoadReport();
    check(report.state == Framework::LoadReport::State::Built && !report.files.empty() &&
              Framework::FormatLoadReport(report).find(Framework::LoadReportName(
                  Framework::LoadReport::File::IconMap)) != std::wstring::npos,
          "load report");
    const Resources::RegistrarMapEntry entries[] = {{L"host.key", 7, L""}};
    Resources::AddLegacyComponent(L"Host", nullptr);
    Resources::AddLegacyResources(L"Host", entries, 1, Resources::String);
    check(Resources::GetString(L"host.key") == L"loaded 7", "legacy string through the loader");
    check(Resources::GetString(L"unknown").empty(), "unknown key");
    check(Resources::GetIcon(L"unknown") == Resources::ResourceID{}, "unknown icon");
    check(Resources::GetImagePath(L"ext://pen.png").find(L"pen.png") != std::wstring::npos,
          "image path");
    wchar_t buffer[16];
    check(Resources::GetStringIntoBuffer(L"unknown", buffer, 16) == 16, "string into buffer");
    QanStringT<wchar_t> caption;
    check(Framework::TextParser::GetCaptionText(L"\x0001"
                                                L"CT=Open",
                                                caption) &&
              caption == L"Open",
          "TextParser");
    QanStringT<wchar_t> menu = L"&Open\tCtrl+O";
    StripMenuText(menu, 3);
    check(menu == L"Open", "StripMenuText");
    Resources::RemoveLegacyComponent(L"Host");
    std::printf("%s\n",
                failures == 0 ? "consumer: all exported functions answered" : "consumer: failures");
    return failures == 0 ? 0 : 1;
}

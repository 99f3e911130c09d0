// IconMapAgreementTest.cpp: lint and the library agree on hostile icon maps. Lint checks a
// directory holding the map; the library answers GetIcon from a service built over the
// same directory, as a host's service is, so no shared reader stands between the two.
#include "IconMap.h"
#include "Lint.h"

#include "base/Settings.h"
#include "service/ResourcesImpl.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using Framework::Resources;
using Framework::Internal::IResources;
using Framework::Internal::ProcessSettings;

#ifdef _WIN32
constexpr wchar_t kSep = L'\\';
#else
constexpr wchar_t kSep = L'/';
#endif

// The service of a host whose resource directory is resources and whose icons are in the
// folder icons, installed for the scope; the settings are restored afterwards.
class HostService {
public:
    HostService(const QanTest::TempDir& resources, const QanTest::TempDir& icons)
        : saved(ProcessSettings()) {
        auto& settings = ProcessSettings();
        settings.resourceDirectory = resources.Wide();
        settings.iconDirectory = icons.Wide();
        settings.iconSubdirectory.clear();
        service = std::make_unique<Framework::Internal::ResourcesImpl>();
        IResources::SetResourcesForTests(service.get());
    }
    ~HostService() {
        IResources::SetResourcesForTests(nullptr);
        ProcessSettings() = saved;
    }
    HostService(const HostService&) = delete;
    HostService& operator=(const HostService&) = delete;

private:
    Framework::Internal::Settings saved;
    std::unique_ptr<Framework::Internal::ResourcesImpl> service;
};

// What a key of the map gives with a folder as the icon location: a name ending in
// ".png.png" is a PNG image with one ".png" dropped, any other an icon folder.
Resources::ResourceID Expected(const std::wstring& location, const std::wstring& file) {
    Resources::ResourceID hit;
    const std::wstring suffix = L".png.png";
    if (file.size() >= suffix.size() && file.compare(file.size() - 8, 8, suffix) == 0)
        hit.pngPath = location + kSep + file.substr(0, file.size() - 4);
    else
        hit.iconPath = location + kSep + file + kSep;
    return hit;
}

struct Row {
    const char* what;
    std::string xml;
    bool accepted; // as the library has always read it
    // Accepted: each key with the file name it answers with (the first of duplicates).
    // Rejected: the keys the map names, each of which must miss.
    std::vector<std::pair<std::wstring, std::wstring>> keys;
};

TEST(IconMapAgreement, LintRejectsExactlyTheMapsWhoseKeysAllMiss) {
    const std::string u = "\xF0\x9F\x98\x80", fullA = "\xEF\xBC\xA1"; // U+1F600, U+FF21
    const Row rows[] = {
        // Both ways of disagreeing that two readers once had.
        {"a malformed element after the entries",
         "<icons><map guid=\"K\">k.ico</map><1bad/></icons>",
         false,
         {{L"K", L""}}},
        {"a nested map under an empty key",
         "<icons><map guid=\"\"><map guid=\"\">in.ico</map>out.ico</map></icons>",
         true,
         {{L"", L"in.ico"}}},
        {"a nested map under an empty key, out of order",
         "<icons><map guid=\"\"><map guid=\"g\">g.ico</map>f.ico</map></icons>",
         true,
         {{L"", L""}, {L"g", L""}}},
        // Every icon-map fault of the tool's own tests.
        {"mismatched end tag", "<icons>\n<map guid=\"a\">a.ico</icons>\n", false, {{L"a", L""}}},
        {"nested map",
         "<icons>\n<map guid=\"f\"><map guid=\"g\">g.ico</map>f.ico</map>\n</icons>\n",
         false,
         {{L"f", L""}, {L"g", L""}}},
        {"empty file name",
         "<icons><map guid=\"a\">a.ico</map><map guid=\"e\"></map></icons>",
         false,
         {{L"a", L""}, {L"e", L""}}},
        {"attribute not named guid",
         "<icons><map guid=\"a\">a.ico</map><map id=\"c\">c.ico</map></icons>",
         false,
         {{L"a", L""}, {L"c", L""}}},
        {"second attribute",
         "<icons><map guid=\"a\">a.ico</map><map guid=\"d\" x=\"1\">d.ico</map></icons>",
         false,
         {{L"a", L""}, {L"d", L""}}},
        {"no attribute",
         "<icons><map guid=\"a\">a.ico</map><map>b.ico</map></icons>",
         false,
         {{L"a", L""}}},
        {"keys in code point order only",
         "<icons>\n<map guid=\"" + fullA + "\">b</map>\n<map guid=\"" + u + "\">a</map>\n</icons>",
         true,
         {{L"\uFF21", L""}, {L"\U0001F600", L""}}},
        {"keys in UTF-16 order only",
         "<icons>\n<map guid=\"" + u + "\">a</map>\n<map guid=\"" + fullA + "\">b</map>\n</icons>",
         true,
         {{L"\U0001F600", L""}, {L"\uFF21", L""}}},
        {"duplicate key",
         "<icons>\n<map guid=\"a\">1.ico</map>\n<map guid=\"a\">2.ico</map>\n</icons>\n",
         true,
         {{L"a", L"1.ico"}}},
        {"white space around the file name",
         "<icons><map guid=\"h\"> h.ico </map></icons>",
         true,
         {{L"h", L" h.ico "}}},
        {"unsorted",
         "<icons><map guid=\"b\">b.ico</map><map guid=\"a\">a.ico</map></icons>",
         true,
         {{L"a", L""}, {L"b", L""}}},
        // Malformed XML and entities.
        {"undefined entity",
         "<icons><map guid=\"a\">&bogus;.ico</map></icons>",
         false,
         {{L"a", L""}}},
        {"invalid UTF-8", "<icons><map guid=\"a\">\xFF.ico</map></icons>", false, {{L"a", L""}}},
        {"duplicate attribute",
         "<icons><map guid=\"a\" guid=\"b\">x.ico</map></icons>",
         false,
         {{L"a", L""}, {L"b", L""}}},
        {"content after the root",
         "<icons><map guid=\"a\">a.ico</map></icons>\n<map guid=\"b\">b.ico</map>",
         false,
         {{L"a", L""}, {L"b", L""}}},
        {"no root element",
         "<?xml version=\"1.0\"?>\n<!-- <map guid=\"a\">a.ico</map> -->\n",
         false,
         {{L"a", L""}}},
        {"empty file", "", false, {{L"", L""}}},
        {"declared as UTF-16 but written in UTF-8",
         "<?xml version=\"1.0\" encoding=\"UTF-16\"?><icons><map guid=\"a\">a.ico</map></icons>",
         false,
         {{L"a", L""}}},
        {"a default attribute from the document type",
         "<!DOCTYPE icons [<!ATTLIST map size CDATA \"16\">]>"
         "<icons><map guid=\"a\">a.ico</map></icons>",
         false,
         {{L"a", L""}}},
        {"predefined and character references",
         "<icons><map guid=\"&amp;&#x263A;\">&lt;x&gt;.ico</map>"
         "<map guid=\"c\"><![CDATA[c]]>.png.png</map></icons>",
         true,
         {{L"&\u263A", L"<x>.ico"}, {L"c", L"c.png.png"}}},
        {"an entity of the document type",
         "<!DOCTYPE icons [<!ENTITY f \"e.ico\">]><icons><map guid=\"e\">&f;</map></icons>",
         true,
         {{L"e", L"e.ico"}}},
        {"byte-order mark, declaration, deeper maps and other elements",
         "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<icons>\n  <Map guid=\"x\"/>\n"
         "  <g><map guid=\"a\">a.ico</map></g>\n  <map guid=\"b\">b.png.png</map>\n</icons>\n",
         true,
         {{L"a", L"a.ico"}, {L"b", L"b.png.png"}}},
    };
    QanTest::TempDir icons; // the icon location: a folder
    for (const auto& row : rows) {
        QanTest::TempDir resources;
        resources.Write(QanTool::kIconMap, row.xml);
        const auto findings = QanTool::LintDirectory(resources.Path(), "");
        bool lintRejects = false, lintOrder = false;
        for (const auto& d : findings.All()) {
            lintRejects = lintRejects || d.message.find(QanTool::kMapRejected) != std::string::npos;
            lintOrder = lintOrder || d.message.find("out of order") != std::string::npos;
        }
        EXPECT_EQ(lintRejects, !row.accepted) << row.what;
        EXPECT_TRUE(!lintRejects || findings.HasErrors()) << row.what;

        HostService host(resources, icons);
        bool allMiss = true;
        for (const auto& [key, file] : row.keys) {
            const Resources::ResourceID got = Resources::GetIcon(key);
            allMiss = allMiss && got == Resources::ResourceID{};
            // A key that lint finds in order answers with its own file name.
            if (!lintRejects && !lintOrder) {
                EXPECT_EQ(got, Expected(icons.Wide(), file)) << row.what;
            }
        }
        EXPECT_EQ(lintRejects, allMiss) << row.what;
    }
}

} // namespace

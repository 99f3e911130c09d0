// The icon map: the grammar of "icons.map.xml", look-ups through it for each kind of icon
// location, the path-kind cache, and the paths that prefixed keys give.
#include "base/Settings.h"
#include "icons/IconResourceCollection.h"
#include "icons/PathKind.h"
#include "platform/Path.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <thread>

namespace {
using namespace Framework::Internal;
using Framework::Resources;
using Pairs = std::vector<std::pair<std::wstring, std::wstring>>;
constexpr wchar_t kSep = Framework::Path::kSeparator;

TEST(IconMap, GrammarKeepsWhatMapsSayAndAnyFaultRejectsTheFile) {
    const Pairs rejected{{L"sentinel", L"kept"}};
    const std::pair<const char*, Pairs> rows[] = {
        // Maps count at any depth, in document order; other elements, text outside maps
        // and names in another case ("Map" needs no text) do not.
        {"<any>before<map guid=\"b\">b.ico</map>after<g><d><map guid=\"a\">a.png.png</map></d>"
         "</g><Map guid=\"x\"/><other guid=\"y\">no</other><map guid=\"c\">c.ico</map></any>",
         {{L"b", L"b.ico"}, {L"a", L"a.png.png"}, {L"c", L"c.ico"}}},
        // Whitespace and duplicates are kept; text around children, CDATA and entities join.
        {"<r><map guid=\"k\"> a.ico </map><map guid=\"k\">\n\tb.ico\n</map>"
         "<map guid=\"&amp;\xC3\xBC\">x<i/>y<![CDATA[<z>]]>\xF0\x9F\x96\xB1&lt;</map></r>",
         {{L"k", L" a.ico "}, {L"k", L"\n\tb.ico\n"}, {L"&\u00FC", L"xy<z>\U0001F5B1<"}}},
        // Nesting is recognised by a current key, so an empty one hides it. Intended.
        {"<r><map guid=\"\"><map guid=\"b\">y</map>x</map></r>", {{L"b", L"y"}, {L"", L"x"}}},
        {"<r/>", {}},
        {"<r><map guid=\"a\">a</map><map guid=\"b\"><map guid=\"c\">c</map>b</map></r>", rejected},
        {"<r><map guid=\"a\">a.ico</map><map guid=\"b\"></map></r>", rejected},
        {"<r><map id=\"a\">a.ico</map></r>", rejected},
        {"<r><map GUID=\"a\">a.ico</map></r>", rejected},
        {"<r><map guid=\"a\" size=\"16\">a.ico</map></r>", rejected},
        {"<r><map>a.ico</map></r>", rejected},
        {"<r><map guid=\"a\">a.ico</map>", rejected},
        {"", rejected},
        {nullptr, rejected}, // no file at all
    };
    QanTest::TempDir dir;
    for (const auto& [xml, want] : rows) {
        std::vector<IconMapEntry> entries{{L"sentinel", L"kept"}};
        const auto path = xml ? dir.Write("map.xml", xml) : dir.Path() / "no";
        LoadIconMap(entries, path.wstring().c_str());
        LoadIconMap(entries, dir.Wide().c_str()); // a folder is no map either
        Pairs got;
        for (const auto& entry : entries)
            got.emplace_back(entry.key, entry.fileName);
        EXPECT_EQ(got, want) << (xml ? xml : "no file");
    }
}

// The reading the tool shares: a rejected map says why and from where (marked by the text
// that starts there); an accepted one gives the bytes of each entry's element in entry
// order. Loading asks for no spans and gets the same verdict and entries.
TEST(IconMap, ScanNamesTheFaultAndWhereEachEntryStands) {
    using F = IconMapFault;
    struct Row {
        std::string xml;
        F fault;
        const char* at; // the fault's position, or the elements of the entries
        const char* detail;
        std::vector<const char*> elements = {};
    };
    const Row rows[] = {
        {"\xEF\xBB\xBF<r>\n  <map guid=\"b\">b.ico</map>\n<g><map guid=\"a\">a.ico</map></g></r>",
         F::None,
         "",
         "",
         {"<map guid=\"b\">b.ico</map>", "<map guid=\"a\">a.ico</map>"}},
        // Inner entries come first, so an entry's bytes may hold another entry.
        {"<r><map guid=\"\"><map guid=\"b\">y</map>x</map></r>",
         F::None,
         "",
         "",
         {"<map guid=\"b\">y</map>", "<map guid=\"\"><map guid=\"b\">y</map>x</map>"}},
        // A map that an entity expands to stands at the entity's reference.
        {"<!DOCTYPE r [<!ENTITY e \"<map guid='k'>k.ico</map>\">]><r>&e;</r>",
         F::None,
         "",
         "",
         {"&e;"}},
        {"<r><map guid=\"a\">a</map><map guid=\"b\"><map guid=\"c\">c</map>b</map></r>",
         F::NestedMap, "<map guid=\"c\">", ""},
        {"<r><map guid=\"a\">a.ico</map>\n<map guid=\"b\"><i>\n</i></map></r>",
         F::None,
         "",
         "",
         {"<map guid=\"a\">a.ico</map>", "<map guid=\"b\"><i>\n</i></map>"}},
        {"<r><map guid=\"a\">a.ico</map><map guid=\"b\"><i/></map></r>", F::EmptyFileName,
         "<map guid=\"b\">", ""},
        {"<r><map id=\"a\">a.ico</map></r>", F::AttributeName, "<map id", "id"},
        {"<r><map guid=\"a\" size=\"16\">a.ico</map></r>", F::AttributeCount, "<map guid", "2"},
        {"<r>\n<map>a.ico</map></r>", F::AttributeCount, "<map>", "0"},
        {"<r><map guid=\"a\">a.ico</map>", F::MalformedXml, "", "no element found"},
        {"", F::MalformedXml, "", "no element found"},
        {"<r><map guid=\"a\">&bogus;</map></r>", F::MalformedXml, "&bogus;", "undefined entity"},
        {"<r><map guid=\"a\" guid=\"b\">x</map></r>", F::MalformedXml, "guid=\"b\"",
         "duplicate attribute"},
        {"<r><map guid=\"a\">\xFF</map></r>", F::MalformedXml, "\xFF",
         "not well-formed (invalid token)"},
        {"<r/>\n<map guid=\"a\">a.ico</map>", F::MalformedXml, "<map",
         "junk after document element"},
    };
    for (const auto& row : rows) {
        const IconMapScan scan = ScanIconMap(row.xml, true);
        const IconMapScan plain = ScanIconMap(row.xml);
        EXPECT_TRUE(plain.fault == scan.fault && plain.spans.empty() &&
                    plain.entries.size() == scan.entries.size())
            << row.xml;
        // The library reads a map in pieces: a byte at a time, the same reading.
        IconMapScanner scanner(true);
        for (const char byte : row.xml)
            if (!scanner.Feed(std::string_view(&byte, 1)))
                break;
        const IconMapScan pieces = scanner.Finish();
        EXPECT_TRUE(pieces.fault == scan.fault && pieces.faultOffset == scan.faultOffset &&
                    pieces.detail == scan.detail && pieces.entries.size() == scan.entries.size())
            << row.xml;
        for (std::size_t i = 0; i < std::min(pieces.entries.size(), scan.entries.size()); ++i)
            EXPECT_TRUE(pieces.entries[i].key == scan.entries[i].key &&
                        pieces.entries[i].fileName == scan.entries[i].fileName &&
                        pieces.spans[i].begin == scan.spans[i].begin &&
                        pieces.spans[i].end == scan.spans[i].end)
                << row.xml;
        EXPECT_EQ(scan.fault, row.fault) << row.xml;
        EXPECT_EQ(scan.detail, row.detail) << row.xml;
        if (row.fault != F::None) {
            // An empty mark: the parser stopped at the end of the bytes.
            const std::size_t at = *row.at ? row.xml.find(row.at) : row.xml.size();
            EXPECT_EQ(scan.faultOffset, at) << row.xml;
            EXPECT_TRUE(scan.entries.empty()) << row.xml;
            continue;
        }
        std::vector<std::string> elements;
        for (const auto& span : scan.spans)
            elements.push_back(span.begin <= span.end && span.end <= row.xml.size()
                                   ? row.xml.substr(span.begin, span.end - span.begin)
                                   : "out of bounds");
        EXPECT_EQ(elements, std::vector<std::string>(row.elements.begin(), row.elements.end()))
            << row.xml;
        EXPECT_EQ(scan.entries.size(), row.elements.size()) << row.xml;
    }
}

// Through the service, which reads the map from the resource directory: the keys are the
// names themselves, "" names e.ico, and "dup" is listed twice.
TEST(IconMap, PathsFollowTheLocationKindAndTheKeyPrefix) {
    QanTest::TempDir resources, icons;
    resources.Write("icons.map.xml", R"(<icons><map guid="">e.ico</map>
    <map guid=" a.ico "> a.ico </map><map guid=".png">.png</map><map guid=".png.png">.png.png</map>
    <map guid="X.PNG.PNG">X.PNG.PNG</map><map guid="dup">1.ico</map><map guid="dup">2.ico</map>
    <map guid="x.ico">x.ico</map><map guid="x.png.png">x.png.png</map>
    <map guid="x.png.png ">x.png.png </map></icons>)");
    std::filesystem::create_directories(icons.Path() / "Folder");
    icons.Write("File", "container");
    const std::wstring folder = icons.Wide() + kSep + L"Folder" + kSep;
    const std::wstring file = icons.Wide() + kSep + L"File";
    // Location, key, then the expected PNG, icon and container paths.
    const std::array<std::wstring, 5> rows[] = {
        {L"Folder", L"x.png.png", folder + L"x.png", L"", L""},
        {L"Folder", L"", L"", folder + L"e.ico" + kSep, L""},
        {L"Folder", L"x.ico", L"", folder + L"x.ico" + kSep, L""},
        {L"Folder", L"X.PNG.PNG", folder + L"X.PNG", L"", L""},
        {L"File", L"x.png.png", L"x.png", L"", file},
        {L"File", L".png.png", L".png", L"", file},
        {L"File", L".png", L"", L".png", file},
        {L"File", L"x.png.png ", L"", L"x.png.png ", file},
        {L"File", L" a.ico ", L"", L" a.ico ", file},
        {L"File", L"dup", L"", L"1.ico", file},
        {L"File", L"X.ICO", L"", L"", L""}, // keys are exact
    };
    // One service throughout: the location is read from the settings at each look-up. The
    // icon path of a "guid://" key is the icon path of the rest, so none for a PNG.
    for (const auto& [location, key, png, icon, container] : rows) {
        Resources::SetResourceDirectories(L"", resources.Wide(), icons.Wide(), L"B", location);
        Resources::ResourceID want;
        want.pngPath = png, want.iconPath = icon, want.containerPath = container;
        EXPECT_EQ(Resources::GetIcon(key), want) << location << " " << key;
        EXPECT_EQ(Resources::GetIconPath(L"GUID://" + key), icon) << key;
    }
    const std::wstring images = std::wstring(L"B") + kSep + L"Images" + kSep;
    EXPECT_EQ(Resources::GetImagePath(L"EXT://tools/pen.png"), images + L"tools/pen.png");
    EXPECT_EQ(Resources::GetImagePath(L"ext://"), images);
    EXPECT_EQ(Resources::GetIconPath(L"ext://x.ico"), L"");
    for (const wchar_t* key :
         {L"guid://unknown", L"x.ico", L"guid:/x.ico", L"ext:", L" ext://a", L""})
        EXPECT_EQ(Resources::GetImagePath(key) + Resources::GetIconPath(key), L"") << key;
    // The kind of a location is cached by its lower-cased path and never refreshed: a
    // location made after its first look-up stays missing under any spelling.
    Resources::SetResourceDirectories(L"", resources.Wide(), icons.Wide(), L"B", L"LATER");
    EXPECT_EQ(Resources::GetIconPath(L"guid://x.ico"), L"");
    std::filesystem::create_directories(icons.Path() / "later");
    Resources::SetResourceDirectories(L"", resources.Wide(), icons.Wide(), L"B", L"later");
    EXPECT_EQ(Resources::GetIconPath(L"guid://x.ico"), L"");
}

TEST(IconMap, WithoutAnIconDirectoryTheMapIsNotRead) {
    QanTest::TempDir resources, icons;
    resources.Write("icons.map.xml", "<icons><map guid=\"K\">k.ico</map></icons>");
    Resources::SetResourceDirectories(L"", resources.Wide(), L"", L"", L"");
    EXPECT_EQ(Resources::GetIcon(L"K"), Resources::ResourceID{});
    // Setting it later changes locations, not the map read at construction.
    Resources::SetResourceDirectories(L"", resources.Wide(), icons.Wide(), L"", L"");
    EXPECT_EQ(Resources::GetIcon(L"K"), Resources::ResourceID{});
}

TEST(IconLookup, AMissingLocationIsAHitAndTheMapIsNeverSorted) {
    ProcessSettings().iconDirectory = L"no such location";
    IconResourceCollection icons;
    icons.SetEntries({{L"a", L"x.ico"}, {L"b", L"x.png.png"}});
    EXPECT_EQ(icons.GetResource(L"a"), Resources::ResourceID{}); // a hit, every path empty
    EXPECT_EQ(icons.GetResource(L"b"), Resources::ResourceID{});
    icons.SetEntries({{L"b", L"b.ico"}, {L"a", L"a.ico"}}); // unsorted: b can miss
    EXPECT_FALSE(icons.GetResource(L"b"));
    EXPECT_FALSE(LoadPlatformIconResourceCollection()->GetResource(L"a"));
}

// Every map of up to five entries over the keys a, b and c, sorted or not: each key
// answers as the bisection over the map in file order does, with the first entry that
// bisection finds among equal keys, and a key outside the map misses.
TEST(IconLookup, EveryMapAnswersAsTheBisectionOverItInFileOrder) {
    QanTest::TempDir icons;
    icons.Write("File", "container"); // the entry's file name comes back as the icon path
    ProcessSettings().iconDirectory = icons.Wide();
    ProcessSettings().iconSubdirectory = L"File";
    struct KeyOrder {
        bool operator()(const IconMapEntry& e, const std::wstring& k) const { return e.key < k; }
        bool operator()(const std::wstring& k, const IconMapEntry& e) const { return k < e.key; }
    };
    int unsortedMaps = 0;
    for (int length = 0; length <= 5; ++length) {
        int combinations = 1;
        for (int i = 0; i < length; ++i)
            combinations *= 3;
        for (int code = 0; code < combinations; ++code) {
            std::vector<IconMapEntry> entries;
            for (int i = 0, rest = code; i < length; ++i, rest /= 3)
                entries.push_back({std::wstring(1, static_cast<wchar_t>(L'a' + rest % 3)),
                                   std::to_wstring(i) + L".ico"});
            unsortedMaps += !std::is_sorted(entries.begin(), entries.end(),
                                            [](auto& x, auto& y) { return x.key < y.key; });
            IconResourceCollection collection;
            collection.SetEntries(entries);
            for (const std::wstring key : {L"a", L"b", L"c", L"d", L""}) {
                const auto range =
                    std::equal_range(entries.begin(), entries.end(), key, KeyOrder{});
                const auto got = collection.GetResource(key);
                ASSERT_EQ(got.has_value(), range.first != range.second) << code << " " << key;
                if (got) {
                    EXPECT_EQ(got->iconPath, range.first->fileName) << code << " " << key;
                }
            }
        }
    }
    EXPECT_GT(unsortedMaps, 100); // the walk does reach maps the bisection misses keys of
}

// The location is read from the settings at every hit: a changed directory or
// subdirectory, and a return to an earlier one, are seen at the next look-up; separators
// between the location and a file name are joined as the path rules join them.
TEST(IconLookup, EachHitFollowsTheCurrentLocationSettings) {
    QanTest::TempDir root;
    std::filesystem::create_directories(root.Path() / "one" / "sub");
    std::filesystem::create_directories(root.Path() / "two");
    root.Write("file", "container");
    IconResourceCollection icons;
    const std::wstring slash(1, kSep);
    icons.SetEntries({{L"k", L"k.ico"}, {L"p", L"p.png.png"}, {L"s", slash + L"s.ico"}});
    const std::wstring base = root.Wide();
    // Directory, subdirectory, key, then the expected PNG, icon and container paths.
    const std::array<std::wstring, 6> rows[] = {
        {base, L"one", L"k", L"", base + slash + L"one" + slash + L"k.ico" + slash, L""},
        {base, L"two", L"k", L"", base + slash + L"two" + slash + L"k.ico" + slash, L""},
        {base, L"one", L"p", base + slash + L"one" + slash + L"p.png", L"", L""},
        {base + slash + L"one", L"sub", L"k", L"",
         base + slash + L"one" + slash + L"sub" + slash + L"k.ico" + slash, L""},
        {base + slash + L"one" + slash, L"", L"k", L"",
         base + slash + L"one" + slash + L"k.ico" + slash, L""},
        {base + slash + L"one" + slash, L"", L"s", L"",
         base + slash + L"one" + slash + L"s.ico" + slash, L""},
        {base + slash + L"one", L"", L"s", L"", base + slash + L"one" + slash + L"s.ico" + slash,
         L""},
        {base, L"file", L"k", L"", L"k.ico", base + slash + L"file"},
        {base, L"file", L"p", L"p.png", L"", base + slash + L"file"},
        {base, L"none", L"k", L"", L"", L""},
        {L"", L"", L"k", L"", L"", L""},
        {base, L"two", L"k", L"", base + slash + L"two" + slash + L"k.ico" + slash, L""},
    };
    for (const auto& [directory, subdirectory, key, png, icon, container] : rows) {
        ProcessSettings().iconDirectory = directory;
        ProcessSettings().iconSubdirectory = subdirectory;
        Resources::ResourceID want;
        want.pngPath = png, want.iconPath = icon, want.containerPath = container;
        EXPECT_EQ(icons.GetResource(key), want) << directory << " | " << subdirectory << " " << key;
    }
}

// Four threads make their first look-ups at once, so each may be the one that records the
// location: every answer is the path under the one location set.
TEST(IconLookup, ConcurrentFirstLookUpsAllSeeTheLocation) {
    QanTest::TempDir root;
    std::filesystem::create_directories(root.Path() / "set");
    ProcessSettings().iconDirectory = root.Wide();
    ProcessSettings().iconSubdirectory = L"set";
    IconResourceCollection icons;
    icons.SetEntries({{L"a", L"a.ico"}, {L"b", L"b.png.png"}});
    const std::wstring folder = root.Wide() + kSep + L"set" + kSep;
    std::array<int, 4> wrong{};
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < wrong.size(); ++t)
        threads.emplace_back([&, t] {
            for (int i = 0; i < 200; ++i) {
                const auto a = icons.GetResource(L"a");
                const auto b = icons.GetResource(L"b");
                wrong[t] += !a || a->iconPath != folder + L"a.ico" + kSep || !b ||
                            b->pngPath != folder + L"b.png";
            }
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, (std::array<int, 4>{}));
    ProcessSettings() = Settings{};
}

// Four threads fill the cache at once with files, folders and missing locations, each in
// its own order: every answer is the location's kind, and once the locations are gone
// the cache still answers what it stored.
TEST(PathKindCache, ConcurrentLookUpsAnswerEachLocationsKindAndKeepIt) {
    auto root = std::make_unique<QanTest::TempDir>();
    std::vector<std::pair<std::wstring, PathKind>> locations;
    for (int i = 0; i < 60; ++i) {
        const std::string name = "location " + std::to_string(i);
        PathKind kind = PathKind::None;
        if (i % 3 == 0) {
            root->Write(name, "x");
            kind = PathKind::File;
        } else if (i % 3 == 1) {
            std::filesystem::create_directories(root->Path() / name);
            kind = PathKind::Folder;
        }
        locations.emplace_back((root->Path() / name).wstring(), kind);
    }
    const auto lookUps = [&](std::size_t start) {
        for (std::size_t i = 0; i < locations.size() * 5; ++i) {
            const auto& [path, kind] = locations[(start + i * 7) % locations.size()];
            EXPECT_EQ(GetPathKind(path), kind) << std::filesystem::path(path);
        }
    };
    { std::jthread a(lookUps, 0), b(lookUps, 15), c(lookUps, 30), d(lookUps, 45); }
    root.reset(); // every location is gone now
    for (const auto& [path, kind] : locations)
        EXPECT_EQ(GetPathKind(path), kind) << std::filesystem::path(path);
}

} // namespace

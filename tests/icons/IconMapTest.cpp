// Reading "icons.map.xml": which elements count, what is kept, and what rejects the file.
#include "icons/IconResourceCollection.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace {
using namespace Framework::Internal;
using Pairs = std::vector<std::pair<std::wstring, std::wstring>>;

Pairs ToPairs(const std::vector<IconMapEntry>& entries) {
    Pairs pairs;
    for (const auto& entry : entries)
        pairs.emplace_back(entry.key, entry.fileName);
    return pairs;
}

// Loads xml written as a file into a map that already holds one sentinel entry, so a
// rejected file shows as the sentinel left alone.
Pairs Load(std::string_view xml) {
    QanTest::TempDir dir;
    const auto path = dir.Write("icons.map.xml", xml);
    std::vector<IconMapEntry> entries{{L"sentinel", L"kept"}};
    LoadIconMap(entries, path.wstring().c_str());
    return ToPairs(entries);
}

const Pairs kRejected{{L"sentinel", L"kept"}};

TEST(IconMapGrammar, MapsCountAtAnyDepthInDocumentOrder) {
    const auto entries = Load(R"(<?xml version="1.0" encoding="utf-8"?>
<anything>
  <map guid="b">b.ico</map>
  <group name="x"><deeper><map guid="a">a.png.png</map></deeper></group>
  <other guid="ignored">not a map</other>
  <map guid="c">c.ico</map>
</anything>)");
    EXPECT_EQ(entries, (Pairs{{L"b", L"b.ico"}, {L"a", L"a.png.png"}, {L"c", L"c.ico"}}));
}

TEST(IconMapGrammar, KeepsWhitespaceDuplicatesAndTextAroundChildren) {
    const auto entries = Load("<r><map guid=\"k\"> a.ico </map><map guid=\"k\">\n\tb.ico\n</map>"
                              "<map guid=\"m\">x<i/>y<![CDATA[<z>]]></map></r>");
    EXPECT_EQ(entries, (Pairs{{L"k", L" a.ico "}, {L"k", L"\n\tb.ico\n"}, {L"m", L"xy<z>"}}));
}

TEST(IconMapGrammar, TextOutsideMapsIsDropped) {
    EXPECT_EQ(Load("<r>before<map guid=\"a\">x</map>after<n>more</n></r>"), (Pairs{{L"a", L"x"}}));
}

TEST(IconMapGrammar, DecodesEntitiesAndUtf8ToWide) {
    EXPECT_EQ(Load("<r><map guid=\"&amp;\xC3\xBC\">\xF0\x9F\x96\xB1&lt;.ico</map></r>"),
              (Pairs{{L"&\u00FC", L"\U0001F5B1<.ico"}}));
}

TEST(IconMapGrammar, NamesAreCaseSensitive) {
    // "Map" is not a map (so its missing text does not matter) ...
    EXPECT_EQ(Load("<r><Map guid=\"a\"/><map guid=\"b\">b.ico</map></r>"),
              (Pairs{{L"b", L"b.ico"}}));
    // ... and "GUID" is not the key attribute.
    EXPECT_EQ(Load("<r><map GUID=\"b\">b.ico</map></r>"), kRejected);
}

TEST(IconMapGrammar, NestingUnderAMapWithEmptyKeyIsNotDetected) {
    // Nesting is recognised by a current key; an empty one hides it. Intended.
    EXPECT_EQ(Load("<r><map guid=\"\"><map guid=\"b\">y</map>x</map></r>"),
              (Pairs{{L"b", L"y"}, {L"", L"x"}}));
}

TEST(IconMapRejection, EveryMalformedMapRejectsTheWholeFile) {
    const char* const bad[] = {
        "<r><map guid=\"a\">a.ico</map><map guid=\"b\"><map guid=\"c\">c</map></map></r>",
        "<r><map guid=\"a\">a.ico</map><map guid=\"b\"></map></r>",
        "<r><map guid=\"a\">a.ico</map><map guid=\"b\"/></r>",
        "<r><map id=\"a\">a.ico</map></r>",
        "<r><map guid=\"a\" size=\"16\">a.ico</map></r>",
        "<r><map size=\"16\" guid=\"a\">a.ico</map></r>",
        "<r><map>a.ico</map></r>",
        "<r><map guid=\"a\">a.ico</map>",
        "<r><map guid=\"a\">a.ico</r></map>",
        "<r><map guid=\"a\">a.ico</map></r><second/>",
        "",
        "not xml at all",
    };
    for (const char* xml : bad)
        EXPECT_EQ(Load(xml), kRejected) << xml;
}

TEST(IconMapRejection, MissingFileOrFolderLeavesTheMapAlone) {
    QanTest::TempDir dir;
    std::vector<IconMapEntry> entries{{L"sentinel", L"kept"}};
    LoadIconMap(entries, (dir.Path() / "icons.map.xml").wstring().c_str());
    LoadIconMap(entries, dir.Wide().c_str());
    EXPECT_EQ(ToPairs(entries), kRejected);
}

TEST(IconMapRejection, AnAcceptedEmptyMapReplacesWhatWasThere) {
    EXPECT_EQ(Load("<r/>"), Pairs{});
}

} // namespace

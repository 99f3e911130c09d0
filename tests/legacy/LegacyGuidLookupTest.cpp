// Legacy (component, id) pairs to GUID keys: the direct row, then the running
// application's preferred components, then any component whose GUID has text.
#include "FakeStrings.h"
#include "LegacyTsv.h"
#include "legacy/LegacyStringLookup.h"
#include "service/ResourcesImpl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

namespace {
using namespace Framework;
using namespace Framework::Internal;

LegacyGuidIndex Index(std::vector<LegacyGuidRecord> records) {
    std::sort(records.begin(), records.end(), [](const auto& a, const auto& b) {
        return a.id != b.id ? a.id < b.id : a.component < b.component;
    });
    return records;
}

// Id 10 is held by a plain component and by every preferred one; in byte order
// "Aaa" < "BrtWash" < "Lumen" < "Nimbus" < "NimbusIntl" < "Schema".
const LegacyGuidIndex& Sample() {
    static const LegacyGuidIndex index = Index({
        {10, "Schema", L"g-sch10"},
        {10, "Nimbus", L"g-nim10"},
        {10, "Aaa", L"g-aaa10"},
        {10, "NimbusIntl", L"g-int10"},
        {10, "Lumen", L"g-lum10"},
        {10, "BrtWash", L"g-brt10"},
        {20, "Aaa", L""},
        {20, "Zed", L""},
        {30, "Aaa", L""},
        {30, "Nimbus", L"g-nim30"},
    });
    return index;
}

// GUIDs listed here have a caption; every other key has no text at all.
StringLookup WithText(std::set<std::wstring> guids) {
    return [guids = std::move(guids)](const QanStringT<wchar_t>& key, StringKind kind) {
        return kind == Caption && guids.count(key) ? L"caption of " + key : QanStringT<wchar_t>();
    };
}

const std::set<std::wstring> kAllOfTen{L"g-aaa10", L"g-brt10", L"g-lum10",
                                       L"g-nim10", L"g-int10", L"g-sch10"};

TEST(LegacyGuidLookup, DirectRowDecidesWithOrWithoutText) {
    EXPECT_EQ(GetLegacyGuid(Sample(), WithText({}), "Schema", 10, L"Lumenform"), L"g-sch10");
    // An empty GUID ends the search even though another component has text for the id.
    EXPECT_EQ(GetLegacyGuid(Sample(), WithText({L"g-nim30"}), "Aaa", 30, L""), L"");
    EXPECT_EQ(GetLegacyGuid(Sample(), WithText(kAllOfTen), "Unknown", 99, L""), L"");
    EXPECT_EQ(GetLegacyGuid(Sample(), WithText(kAllOfTen), "Unknown", 20, L""), L"");
    EXPECT_EQ(GetLegacyGuid(LegacyGuidIndex{}, WithText(kAllOfTen), "Aaa", 10, L""), L"");
}

TEST(LegacyGuidLookup, WithoutPreferenceFirstComponentWithTextWins) {
    for (const wchar_t* app : {L"", L"Lumen", L"Lumenform ", L"Schema", L"Nimbus"}) {
        EXPECT_EQ(GetLegacyGuid(Sample(), WithText(kAllOfTen), "Other", 10, app), L"g-aaa10");
        EXPECT_EQ(GetLegacyGuid(Sample(), WithText({L"g-int10", L"g-sch10"}), "Other", 10, app),
                  L"g-int10");
    }
    EXPECT_EQ(GetLegacyGuid(Sample(), WithText({}), "Other", 10, L""), L"");
}

TEST(LegacyGuidLookup, ApplicationsPreferTheirComponentsInAnyLetterCase) {
    const std::map<std::wstring, std::wstring> firstChoice{
        {L"Lumenform", L"g-lum10"},
        {L"Brightwash", L"g-brt10"},
        // The candidates' order decides among preferred ones: Nimbus sorts before Schema.
        {L"Schemawright", L"g-nim10"}};
    for (const auto& [app, guid] : firstChoice) {
        std::wstring lower = app, upper = app;
        std::transform(app.begin(), app.end(), lower.begin(), ::towlower);
        std::transform(app.begin(), app.end(), upper.begin(), ::towupper);
        for (const std::wstring& name : {app, lower, upper})
            EXPECT_EQ(GetLegacyGuid(Sample(), WithText(kAllOfTen), "Other", 10, name), guid)
                << std::string(name.begin(), name.end());
    }
}

TEST(LegacyGuidLookup, PreferredWithoutTextFallsThrough) {
    // Only the later preferred components have text.
    EXPECT_EQ(GetLegacyGuid(Sample(), WithText({L"g-aaa10", L"g-int10", L"g-sch10"}), "Other", 10,
                            L"Lumenform"),
              L"g-int10");
    EXPECT_EQ(
        GetLegacyGuid(Sample(), WithText({L"g-aaa10", L"g-sch10"}), "Other", 10, L"schemawright"),
        L"g-sch10");
    // No preferred component has text: the general pass takes the first with text.
    EXPECT_EQ(
        GetLegacyGuid(Sample(), WithText({L"g-aaa10", L"g-sch10"}), "Other", 10, L"Brightwash"),
        L"g-aaa10");
}

TEST(LegacyGuidLookup, PlainStringAloneCountsAsText) {
    const StringLookup plain = [](const QanStringT<wchar_t>& key, StringKind kind) {
        return kind == String && key == L"g-nim10" ? QanStringT<wchar_t>(L"x")
                                                   : QanStringT<wchar_t>();
    };
    EXPECT_EQ(GetLegacyGuid(Sample(), plain, "Other", 10, L""), L"g-nim10");
}

// The shipped table: ids that several preferred components and others hold, resolved for
// a component that does not hold them, against what the data file says.
TEST(LegacyGuidLookup, ShippedTableHonoursEachApplication) {
    const LegacyGuidIndex index = BuildLegacyGuidIndex();
    std::map<int, std::map<std::string, std::vector<std::string>>> holders;
    for (const auto& row : QanTest::ReadLegacyTsv())
        holders[row.id][row.component].push_back(row.guid);
    const std::map<std::wstring, std::vector<std::string>> preferences{
        {L"LUMENFORM", {"Lumen", "Nimbus", "NimbusIntl"}},
        {L"brightwash", {"BrtWash"}},
        {L"SchemaWright", {"Schema", "Nimbus", "NimbusIntl"}},
        {L"Unknown", {}}};
    const StringLookup everyGuidHasText = [](const QanStringT<wchar_t>& key, StringKind kind) {
        return kind == String ? key : QanStringT<wchar_t>();
    };
    std::map<std::wstring, int> decidedByPreference;
    for (const auto& [id, byComponent] : holders) {
        if (byComponent.size() < 2)
            continue;
        // The holders in byte order with their one GUID (pairs listed twice are skipped).
        std::vector<std::pair<std::string, std::string>> usable;
        bool ambiguous = false;
        for (const auto& [component, guids] : byComponent) {
            ambiguous |= guids.size() > 1;
            if (!guids[0].empty())
                usable.emplace_back(component, guids[0]);
        }
        if (ambiguous || usable.empty())
            continue;
        for (const auto& [app, preferred] : preferences) {
            std::string expected = usable.front().second;
            for (const auto& [component, guid] : usable)
                if (std::find(preferred.begin(), preferred.end(), component) != preferred.end()) {
                    decidedByPreference[app] += guid != expected;
                    expected = guid;
                    break;
                }
            ASSERT_EQ(GetLegacyGuid(index, everyGuidHasText, "NotAComponent", id, app),
                      QanTest::Widen(expected))
                << id;
        }
    }
    // The preference must have changed the answer for many ids of each application.
    for (const std::wstring app : {L"LUMENFORM", L"brightwash", L"SchemaWright"})
        EXPECT_GT(decidedByPreference[app], 20) << std::string(app.begin(), app.end());
}

TEST(LegacyGuidLookup, ServiceReadsTheApplicationNameAtEachCall) {
    auto strings = std::make_unique<QanTest::FakeStrings>(QanTest::FakeStrings::Map{
        {{L"g-brt10", Caption}, L"Brt"}, {{L"g-nim10", TooltipBody}, L"Nim"}});
    ResourcesImpl service(std::move(strings), nullptr, nullptr, nullptr, Sample(), nullptr);
    Resources::SetAppName(L"Brightwash");
    EXPECT_EQ(service.GetLegacyGuid("Other", 10), L"g-brt10");
    Resources::SetAppName(L"SCHEMAWRIGHT");
    EXPECT_EQ(service.GetLegacyGuid("Other", 10), L"g-nim10");
    Resources::SetAppName(L"");
    EXPECT_EQ(service.GetLegacyGuid("Other", 10), L"g-brt10");
}

} // namespace

// The sorted legacy GUID index over the compiled-in table: order, views, and both
// look-ups, held against the data file.
#include "legacy/LegacyGuidIndex.h"
#include "LegacyTsv.h"
#include "legacy/LegacyGuidTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

namespace {
using namespace Framework::Internal;
using QanTest::ReadLegacyTsv;
using QanTest::Widen;

std::wstring Text(QanStringViewT<wchar_t> view) {
    return std::wstring(view);
}

TEST(LegacyGuidIndexBuild, OneRecordPerRowSortedByIdThenComponent) {
    const LegacyGuidIndex index = BuildLegacyGuidIndex();
    ASSERT_EQ(index.size(), 15935u);
    EXPECT_GE(index.capacity(), 22000u);
    for (std::size_t i = 1; i < index.size(); ++i) {
        const auto& a = index[i - 1];
        const auto& b = index[i];
        ASSERT_TRUE(a.id < b.id || (a.id == b.id && a.component <= b.component))
            << "records " << i - 1 << " and " << i;
    }
}

TEST(LegacyGuidIndexBuild, RecordsViewTheCompiledInText) {
    std::set<const void*> texts;
    for (std::size_t i = 0; i < kLegacyGuidTableSize; ++i) {
        texts.insert(kLegacyGuidTable[i].component);
        texts.insert(kLegacyGuidTable[i].guid);
    }
    for (const LegacyGuidRecord& record : BuildLegacyGuidIndex()) {
        ASSERT_TRUE(texts.count(record.component.data()));
        ASSERT_TRUE(texts.count(record.guid.data()));
        ASSERT_EQ(record.guid.data()[record.guid.size()], L'\0');
    }
}

// Texts compare exactly, so this also proves that rows without a key answer a present,
// empty text and that upper-case GUIDs come back as stored.
TEST(LegacyGuidIndexFind, EveryPairOfTheDataFileIsFound) {
    const LegacyGuidIndex index = BuildLegacyGuidIndex();
    std::map<std::pair<std::string, int>, std::set<std::string>> texts;
    for (const auto& row : ReadLegacyTsv())
        texts[{row.component, row.id}].insert(row.guid);
    ASSERT_FALSE(texts.empty());
    for (const auto& [pair, guids] : texts) {
        const auto found = FindLegacyGuid(index, pair.second, pair.first);
        ASSERT_TRUE(found) << pair.first << " " << pair.second;
        // A pair listed twice with different texts answers with one of them.
        std::set<std::wstring> wide;
        for (const auto& g : guids)
            wide.insert(Widen(g));
        EXPECT_TRUE(wide.count(Text(*found))) << pair.first << " " << pair.second;
    }
}

TEST(LegacyGuidIndexFind, UnknownIdsAndComponentsMiss) {
    const LegacyGuidIndex index = BuildLegacyGuidIndex();
    for (int id : {0, -1, 65281, 1 << 30})
        EXPECT_FALSE(FindLegacyGuid(index, id, "Nimbus")) << id;
    ASSERT_TRUE(FindLegacyGuid(index, 1, "Nimbus"));
    // Component names compare exactly.
    EXPECT_FALSE(FindLegacyGuid(index, 1, "nimbus"));
    EXPECT_FALSE(FindLegacyGuid(index, 1, "NIMBUS"));
    EXPECT_FALSE(FindLegacyGuid(index, 1, "Nimbu"));
    EXPECT_FALSE(FindLegacyGuid(index, 1, ""));
}

TEST(LegacyGuidIndexComponents, EveryIdListsItsComponentsInByteOrder) {
    const LegacyGuidIndex index = BuildLegacyGuidIndex();
    std::map<int, std::vector<std::string>> expected;
    for (const auto& row : ReadLegacyTsv())
        expected[row.id].push_back(row.component);
    int sharedIds = 0, listedTwice = 0;
    for (auto& [id, names] : expected) {
        std::sort(names.begin(), names.end());
        const auto components = ComponentsWithId(index, id);
        ASSERT_EQ(std::vector<std::string>(components.begin(), components.end()), names) << id;
        sharedIds += names.size() > 1;
        listedTwice += std::adjacent_find(names.begin(), names.end()) != names.end();
    }
    EXPECT_GT(sharedIds, 100);
    EXPECT_GT(listedTwice, 0);
}

TEST(LegacyGuidIndexComponents, UnknownIdGivesEmptyList) {
    const LegacyGuidIndex index = BuildLegacyGuidIndex();
    EXPECT_TRUE(ComponentsWithId(index, 0).empty());
    EXPECT_TRUE(ComponentsWithId(index, 65281).empty());
    EXPECT_TRUE(ComponentsWithId(index, -65280).empty());
    EXPECT_TRUE(ComponentsWithId(LegacyGuidIndex{}, 1).empty());
}

} // namespace

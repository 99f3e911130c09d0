// The compiled-in legacy GUID table against its data file, and the shape of the shipped
// data that the index and the look-ups are built to cope with.
#include "LegacyTsv.h"
#include "legacy/LegacyGuidTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <set>

namespace {
using namespace Framework::Internal;
using QanTest::LegacyTsvRow;
using QanTest::ReadLegacyTsv;

TEST(LegacyGuidTable, AgreesRowByRowWithTheDataFile) {
    const auto rows = ReadLegacyTsv();
    ASSERT_EQ(rows.size(), kLegacyGuidTableSize);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const LegacyGuidEntry& entry = kLegacyGuidTable[i];
        ASSERT_EQ(entry.id, static_cast<std::uintptr_t>(rows[i].id)) << "row " << i;
        ASSERT_STREQ(entry.component, rows[i].component.c_str()) << "row " << i;
        ASSERT_EQ(std::wstring(entry.guid), QanTest::Widen(rows[i].guid)) << "row " << i;
    }
}

TEST(LegacyGuidTable, RowsWithoutKeyShareOneEmptyText) {
    const wchar_t* shared = nullptr;
    int empty = 0;
    for (std::size_t i = 0; i < kLegacyGuidTableSize; ++i) {
        if (kLegacyGuidTable[i].guid[0] != L'\0')
            continue;
        ++empty;
        if (!shared)
            shared = kLegacyGuidTable[i].guid;
        EXPECT_EQ(kLegacyGuidTable[i].guid, shared) << "row " << i;
    }
    EXPECT_EQ(empty, 976);
}

TEST(LegacyGuidData, FileIsPlainLfTextWithoutHeader) {
    std::ifstream in(QANRES_LEGACY_GUIDS_TSV, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(in)), {});
    ASSERT_FALSE(bytes.empty());
    EXPECT_EQ(bytes.find('\r'), std::string::npos);
    EXPECT_EQ(bytes.back(), '\n');
    EXPECT_TRUE(bytes[0] >= '0' && bytes[0] <= '9');
    EXPECT_EQ(std::count(bytes.begin(), bytes.end(), '\n'), 15935);
}

TEST(LegacyGuidData, ComponentsAndTheirRows) {
    const auto rows = ReadLegacyTsv();
    ASSERT_EQ(rows.size(), 15935u);
    std::map<std::string, int> perComponent;
    for (const LegacyTsvRow& row : rows)
        ++perComponent[row.component];
    EXPECT_EQ(perComponent.size(), 44u);
    for (const char* name : {"Lumen", "Nimbus", "NimbusIntl", "BrtWash", "Schema"})
        EXPECT_TRUE(perComponent.count(name)) << name;
    std::vector<int> counts;
    for (const auto& [name, count] : perComponent) {
        EXPECT_GE(name.size(), 2u) << name;
        EXPECT_LE(name.size(), 16u) << name;
        EXPECT_TRUE(std::all_of(name.begin(), name.end(), [](char c) {
            return c > ' ' && c < 127;
        })) << name;
        counts.push_back(count);
    }
    std::sort(counts.begin(), counts.end());
    EXPECT_EQ(counts.front(), 1);
    EXPECT_EQ(counts.back(), 5348);
    // 44 counts: the median is the mean of the two middle ones.
    EXPECT_EQ(counts[21] + counts[22], 2 * 41);
}

TEST(LegacyGuidData, GroupedByComponentWithOneSplitAndTwoOutOfOrder) {
    const auto rows = ReadLegacyTsv();
    std::map<std::string, int> runs;
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (i == 0 || rows[i].component != rows[i - 1].component)
            ++runs[rows[i].component];
    int split = 0;
    for (const auto& [name, count] : runs) {
        EXPECT_LE(count, 2) << name;
        split += count == 2;
    }
    EXPECT_EQ(split, 1);

    std::map<std::string, std::vector<int>> ids;
    for (const LegacyTsvRow& row : rows)
        ids[row.component].push_back(row.id);
    int outOfOrder = 0;
    for (const auto& [name, seq] : ids) {
        const bool ascending =
            std::adjacent_find(seq.begin(), seq.end(), std::greater_equal<int>()) == seq.end();
        outOfOrder += !ascending;
    }
    EXPECT_EQ(outOfOrder, 2);
}

TEST(LegacyGuidData, IdsSpanTheLegacyRange) {
    const auto rows = ReadLegacyTsv();
    const auto [low, high] = std::minmax_element(
        rows.begin(), rows.end(), [](const auto& a, const auto& b) { return a.id < b.id; });
    EXPECT_EQ(low->id, 1);
    EXPECT_EQ(high->id, 65280);
}

bool IsGuidText(const std::string& text) {
    if (text.size() != 36)
        return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool hyphen = i == 8 || i == 13 || i == 18 || i == 23;
        if (hyphen != (text[i] == '-') || (!hyphen && !std::isxdigit((unsigned char)text[i])))
            return false;
    }
    return true;
}

// Texts are counted as distinct by exact comparison: an upper-case twin of a lower-case
// GUID is a text of its own, and the one slash key counts as one more unshared text.
TEST(LegacyGuidData, TextsTheirCaseAndHowOftenTheyAreShared) {
    const auto rows = ReadLegacyTsv();
    int empty = 0, upper = 0, slash = 0, other = 0;
    std::map<std::string, int> uses;
    for (const LegacyTsvRow& row : rows) {
        if (row.guid.empty()) {
            ++empty;
            continue;
        }
        ++uses[row.guid];
        if (IsGuidText(row.guid))
            upper += std::any_of(row.guid.begin(), row.guid.end(),
                                 [](char c) { return c >= 'A' && c <= 'F'; });
        else if (row.guid.find('/') != std::string::npos)
            ++slash;
        else
            ++other;
    }
    EXPECT_EQ(empty, 976);
    EXPECT_EQ(upper, 17);
    EXPECT_EQ(slash, 1);
    EXPECT_EQ(other, 0);
    EXPECT_EQ(uses.size(), 11652u);
    EXPECT_EQ(std::count_if(uses.begin(), uses.end(), [](const auto& u) { return u.second > 1; }),
              1686);
}

TEST(LegacyGuidData, DuplicatedPairsAreApartAndMostlyAgree) {
    const auto rows = ReadLegacyTsv();
    std::map<std::pair<std::string, int>, std::vector<std::size_t>> where;
    for (std::size_t i = 0; i < rows.size(); ++i)
        where[{rows[i].component, rows[i].id}].push_back(i);
    int pairs = 0, same = 0, oneEmpty = 0;
    for (const auto& [pair, at] : where) {
        if (at.size() < 2)
            continue;
        ++pairs;
        ASSERT_EQ(at.size(), 2u) << pair.first << " " << pair.second;
        EXPECT_GT(at[1], at[0] + 1) << "adjacent duplicate " << pair.first << " " << pair.second;
        const std::string& a = rows[at[0]].guid;
        const std::string& b = rows[at[1]].guid;
        same += a == b;
        oneEmpty += a.empty() != b.empty();
    }
    EXPECT_EQ(pairs, 91);
    EXPECT_EQ(same, 88);
    EXPECT_EQ(oneEmpty, 2);
}

TEST(LegacyGuidData, PreferredComponentsShareIds) {
    const auto rows = ReadLegacyTsv();
    const std::set<std::string> preferred{"Lumen", "Nimbus", "NimbusIntl", "BrtWash", "Schema"};
    std::map<int, std::set<std::string>> holders;
    for (const LegacyTsvRow& row : rows)
        holders[row.id].insert(row.component);
    int amongPreferred = 0, withOthers = 0;
    for (const auto& [id, names] : holders) {
        std::vector<std::string> mine;
        std::set_intersection(names.begin(), names.end(), preferred.begin(), preferred.end(),
                              std::back_inserter(mine));
        amongPreferred += mine.size() > 1;
        withOthers += !mine.empty() && mine.size() < names.size();
    }
    EXPECT_GT(amongPreferred, 100);
    EXPECT_GT(withOthers, 100);
}

} // namespace

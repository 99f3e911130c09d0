// Laying override texts over the full text table.
#include "strings/MergeOverrides.h"
#include "StringTestFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <set>

namespace {
using namespace Framework::Internal;
using StringTests::Row;
using StringTests::Rows;
using StringTests::TableOf;
using ::testing::AnyOf;
using ::testing::ElementsAre;

std::string Id(int n) {
    char id[16];
    std::snprintf(id, sizeof id, "r%05d", n);
    return id;
}

TEST(MergeOverrides, ReplacesMatchingTextsAndInsertsNothing) {
    StringTable strings = TableOf({{"a", "A"}, {"c", "C"}, {"e", "E"}, {"g", "G"}});
    StringTable overrides = TableOf(
        {{"0", "before all"}, {"c", "c!"}, {"d", "absent"}, {"g", "g!"}, {"z", "after all"}});
    MergeOverrides(strings, overrides);
    EXPECT_THAT(Rows(strings),
                ElementsAre(Row{"a", "A"}, Row{"c", "c!"}, Row{"e", "E"}, Row{"g", "g!"}));
}

TEST(MergeOverrides, SortsOverridesGivenInAnyOrder) {
    StringTable strings = TableOf({{"a", "A"}, {"b", "B"}, {"c", "C"}, {"d", "D"}});
    StringTable overrides = TableOf({{"d", "d!"}, {"a", "a!"}, {"c", "c!"}});
    MergeOverrides(strings, overrides);
    EXPECT_THAT(Rows(strings),
                ElementsAre(Row{"a", "a!"}, Row{"b", "B"}, Row{"c", "c!"}, Row{"d", "d!"}));
    EXPECT_THAT(Rows(overrides), ElementsAre(Row{"a", "a!"}, Row{"c", "c!"}, Row{"d", "d!"}));
}

TEST(MergeOverrides, EmptyTablesAreLeftAlone) {
    StringTable none;
    StringTable overrides = TableOf({{"a", "a!"}});
    MergeOverrides(none, overrides);
    EXPECT_TRUE(none.entries.empty());

    StringTable strings = TableOf({{"a", "A"}});
    StringTable noOverrides;
    MergeOverrides(strings, noOverrides);
    EXPECT_THAT(Rows(strings), ElementsAre(Row{"a", "A"}));
}

TEST(MergeOverrides, CursorOnTheLastRow) {
    // The last row still matches after a gallop that had to stop at it, and overrides
    // past the last row leave it as it is.
    StringTable strings = TableOf({{"a", "A"}, {"b", "B"}, {"c", "C"}});
    StringTable overrides = TableOf({{"c", "c!"}, {"d", "beyond"}, {"e", "beyond"}});
    MergeOverrides(strings, overrides);
    EXPECT_THAT(Rows(strings), ElementsAre(Row{"a", "A"}, Row{"b", "B"}, Row{"c", "c!"}));

    StringTable single = TableOf({{"m", "M"}});
    StringTable late = TableOf({{"n", "beyond"}, {"z", "beyond"}});
    MergeOverrides(single, late);
    EXPECT_THAT(Rows(single), ElementsAre(Row{"m", "M"}));
}

TEST(MergeOverrides, DuplicateIds) {
    // Of duplicate rows in the full table the first, which look-ups find, is replaced.
    StringTable strings = TableOf({{"a", "A"}, {"b", "B1"}, {"b", "B2"}, {"c", "C"}});
    StringTable overrides = TableOf({{"b", "b!"}});
    MergeOverrides(strings, overrides);
    EXPECT_THAT(Rows(strings),
                ElementsAre(Row{"a", "A"}, Row{"b", "b!"}, Row{"b", "B2"}, Row{"c", "C"}));

    // Of duplicate overrides one wins; which one the sort leaves last is not defined.
    StringTable more = TableOf({{"a", "A"}, {"b", "B"}});
    StringTable twice = TableOf({{"b", "first"}, {"b", "second"}});
    MergeOverrides(more, twice);
    EXPECT_THAT(Rows(more)[1].second, AnyOf("first", "second"));
    EXPECT_EQ(Rows(more)[0].second, "A");
}

TEST(MergeOverrides, GallopsAcrossLongRuns) {
    // Overrides close together, at powers of two and their neighbours, far apart, between
    // rows and beyond the end: every row that has an override is replaced, no other.
    constexpr int kRows = 10000;
    std::vector<Row> rows;
    for (int i = 0; i < kRows; ++i)
        rows.emplace_back(Id(i), "text");
    StringTable strings = TableOf(rows);

    const std::set<int> replaced = {0,    1,    2,    3,    5,    8,    9,    63,   64,   65,
                                    1000, 1023, 1024, 1025, 4095, 4096, 8191, 9997, 9998, 9999};
    std::vector<Row> overrideRows;
    for (int i : replaced)
        overrideRows.emplace_back(Id(i), "new " + Id(i));
    for (int i : {4, 700, 5000, 9999})
        overrideRows.emplace_back(Id(i) + "x", "between rows");
    overrideRows.emplace_back("s", "beyond");
    StringTable overrides = TableOf(overrideRows);

    MergeOverrides(strings, overrides);
    ASSERT_EQ(strings.entries.size(), static_cast<std::size_t>(kRows));
    for (int i = 0; i < kRows; ++i) {
        const auto& entry = strings.entries[static_cast<std::size_t>(i)];
        ASSERT_EQ(entry.key, Id(i));
        ASSERT_EQ(entry.text, replaced.count(i) ? "new " + Id(i) : "text") << i;
    }
}

TEST(MergeOverrides, OneOverrideEveryStrideRows) {
    // Strides around the gallop's doubling steps.
    for (int stride : {1, 2, 3, 7, 16, 17, 100, 511}) {
        constexpr int kRows = 2000;
        std::vector<Row> rows;
        for (int i = 0; i < kRows; ++i)
            rows.emplace_back(Id(i), "old");
        StringTable strings = TableOf(rows);
        std::vector<Row> overrideRows;
        for (int i = stride - 1; i < kRows; i += stride)
            overrideRows.emplace_back(Id(i), "new");
        StringTable overrides = TableOf(overrideRows);
        MergeOverrides(strings, overrides);
        for (int i = 0; i < kRows; ++i) {
            const bool expected = (i + 1) % stride == 0;
            ASSERT_EQ(strings.entries[static_cast<std::size_t>(i)].text, expected ? "new" : "old")
                << "stride " << stride << " row " << i;
        }
    }
}

} // namespace

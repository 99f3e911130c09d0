// Laying override texts over the full text table, both read unsorted from real files.
#include "strings/MergeOverrides.h"
#include "StringTestFiles.h"

#include <gtest/gtest.h>

namespace {
using namespace StringTests;

Rows Merged(const Rows& strings, const Rows& overrides) {
    static const QanTest::TempDir dir; // one for all, to keep the many merges quick
    StringTable table = Load(dir, TextFile(strings), false);
    StringTable over = Load(dir, TextFile(overrides), false);
    Framework::Internal::MergeOverrides(table, over);
    return RowsOf(table);
}

// Overrides come in any order; those for ids the table lacks are dropped; of duplicate ids
// in the table the first, the one that look-ups find, is replaced.
TEST(MergeOverrides, ReplacesMatchingTextsOnly) {
    const Rows strings = {{"a", "A"}, {"b", "B1"}, {"b", "B2"}, {"d", "D"}, {"f", "F"}};
    EXPECT_EQ(Merged(strings, {{"z", "-"}, {"f", "f!"}, {"0", "-"}, {"c", "-"}, {"b", "b!"}}),
              Rows({{"a", "A"}, {"b", "b!"}, {"b", "B2"}, {"d", "D"}, {"f", "f!"}}));
    EXPECT_EQ(Merged({}, {{"a", "a!"}}), Rows{});
    EXPECT_EQ(Merged({{"a", "A"}}, {}), Rows({{"a", "A"}}));
    EXPECT_EQ(Merged({{"m", "M"}}, {{"n", "-"}, {"z", "-"}}), Rows({{"m", "M"}}));
    // Of duplicate overrides one wins; which one the sort leaves last is not defined.
    const Rows twice = Merged({{"a", "A"}, {"b", "B"}}, {{"b", "1"}, {"b", "2"}});
    EXPECT_TRUE(twice == Rows({{"a", "A"}, {"b", "1"}}) || twice == Rows({{"a", "A"}, {"b", "2"}}));
}

// Every subset of ten rows overridden, next to overrides before the first row, between
// rows and past the last: the gallop takes steps 1, 2, 4 and 8 and is cut at the last row.
TEST(MergeOverrides, GallopFindsEveryOverriddenRow) {
    constexpr int kRows = 10;
    Rows strings;
    for (int i = 0; i < kRows; ++i)
        strings.emplace_back(std::to_string(10 + i), "old");
    for (int subset = 0; subset < 1 << kRows; ++subset) {
        Rows overrides = {{"15x", "-"}, {"0", "-"}, {"19x", "-"}}, merged = strings;
        for (int i = 0; i < kRows; ++i)
            if (subset >> i & 1) {
                overrides.emplace_back(strings[i].first, "new");
                merged[i].second = "new";
            }
        ASSERT_EQ(Merged(strings, overrides), merged) << subset;
    }
}

} // namespace

// Binary search of tables by key in ordinal byte order.
#include "strings/FindInTable.h"
#include "StringTestFiles.h"
#include "strings/CsvKeyTable.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace {
using namespace Framework::Internal;
using StringTests::TableOf;

std::string Found(const StringTable& table, std::string_view key) {
    const auto text = FindInTable(table, key);
    return text ? std::string(*text) : "<none>";
}

TEST(FindInTable, FindsEveryKeyOfASortedTable) {
    const StringTable table = TableOf({{"", "empty"},
                                       {"A", "upper"},
                                       {"a", "lower"},
                                       {"ab", "longer"},
                                       {"b", "bee"},
                                       {"\xC3\xA9", "e acute"}});
    EXPECT_EQ(Found(table, ""), "empty");
    EXPECT_EQ(Found(table, "A"), "upper");
    EXPECT_EQ(Found(table, "a"), "lower");
    EXPECT_EQ(Found(table, "ab"), "longer");
    EXPECT_EQ(Found(table, "b"), "bee");
    EXPECT_EQ(Found(table, "\xC3\xA9"), "e acute");
}

TEST(FindInTable, MissesKeysThatOnlyResembleOnes) {
    const StringTable table = TableOf({{"Key", "1"}, {"key", "2"}, {"keys", "3"}});
    EXPECT_EQ(Found(table, "KEY"), "<none>");
    EXPECT_EQ(Found(table, "ke"), "<none>");
    EXPECT_EQ(Found(table, "key "), "<none>");
    EXPECT_EQ(Found(table, "zzz"), "<none>");
    EXPECT_EQ(Found(table, "0"), "<none>");
    EXPECT_EQ(Found(StringTable{}, "key"), "<none>");
}

TEST(FindInTable, FirstOfEqualKeysInFileOrderWins) {
    QanTest::TempDir dir;
    StringTable table;
    LoadCsvKeyTable(table, dir.Write("k.csv", "a,0\nk,first\nk,second\nk,third\nz,9\n").wstring());
    EXPECT_EQ(Found(table, "k"), "first");
    EXPECT_EQ(Found(table, "a"), "0");
    EXPECT_EQ(Found(table, "z"), "9");
}

} // namespace

// The byte grammar of key tables, on real files in a temporary directory.
#include "strings/CsvKeyTable.h"
#include "StringTestFiles.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {
using namespace Framework::Internal;
using StringTests::Row;
using StringTests::Rows;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class CsvKeyTable : public ::testing::Test {
protected:
    std::vector<Row> Load(std::string_view bytes) {
        LoadCsvKeyTable(table, dir.Write("k.csv", bytes).wstring());
        return Rows(table);
    }

    QanTest::TempDir dir;
    StringTable table;
};

TEST_F(CsvKeyTable, ReadsKeyAndIdOfEachLineUnsorted) {
    EXPECT_THAT(Load("zeta,3\nalpha,1\nmid,2\n"),
                ElementsAre(Row{"zeta", "3"}, Row{"alpha", "1"}, Row{"mid", "2"}));
}

TEST_F(CsvKeyTable, FieldsAreTakenAsWritten) {
    // No header, no trimming, no quoting: the first line is a row and spaces and quotes
    // belong to the fields; an empty key or id is a row all the same.
    EXPECT_THAT(Load("key,id\n k , \"i\" \n,\n"),
                ElementsAre(Row{"key", "id"}, Row{" k ", " \"i\" "}, Row{"", ""}));
}

TEST_F(CsvKeyTable, FurtherCommasBelongToTheId) {
    EXPECT_THAT(Load("a,b,c\n"), ElementsAre(Row{"a", "b,c"}));
}

TEST_F(CsvKeyTable, CarriageReturnStaysAtTheEndOfTheId) {
    EXPECT_THAT(Load("a,1\r\nb,2\r\n"), ElementsAre(Row{"a", "1\r"}, Row{"b", "2\r"}));
}

TEST_F(CsvKeyTable, LineWithoutCommaJoinsTheNextLine) {
    EXPECT_THAT(Load("lonely\nkey,1\nnext,2\n"),
                ElementsAre(Row{"lonely\nkey", "1"}, Row{"next", "2"}));
}

TEST_F(CsvKeyTable, LastLineWithoutLineFeedIsDropped) {
    EXPECT_THAT(Load("a,1\nb,2"), ElementsAre(Row{"a", "1"}));
    EXPECT_THAT(Load("a,1\nb,"), ElementsAre(Row{"a", "1"}));
    EXPECT_THAT(Load("a,1\nb"), ElementsAre(Row{"a", "1"}));
    EXPECT_THAT(Load("no comma at all\n"), IsEmpty());
}

TEST_F(CsvKeyTable, ByteOrderMarkBecomesPartOfTheFirstKey) {
    EXPECT_THAT(Load("\xEF\xBB\xBF"
                     "a,1\nb,2\n"),
                ElementsAre(Row{"\xEF\xBB\xBF"
                                "a",
                                "1"},
                            Row{"b", "2"}));
}

TEST_F(CsvKeyTable, ReadFileReplacesRowsEvenByNone) {
    Load("a,1\n");
    EXPECT_THAT(Load(""), IsEmpty());
    Load("a,1\n");
    EXPECT_THAT(Load("no id"), IsEmpty());
}

TEST_F(CsvKeyTable, MissingFileOrFolderKeepsRows) {
    Load("a,1\n");
    LoadCsvKeyTable(table, (dir.Path() / "missing.csv").wstring());
    EXPECT_THAT(Rows(table), ElementsAre(Row{"a", "1"}));
    std::filesystem::create_directory(dir.Path() / "folder.csv");
    LoadCsvKeyTable(table, (dir.Path() / "folder.csv").wstring());
    EXPECT_THAT(Rows(table), ElementsAre(Row{"a", "1"}));
}

} // namespace

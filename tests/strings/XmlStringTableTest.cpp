// The byte grammar of string text files, on real files in a temporary directory.
#include "strings/XmlStringTable.h"
#include "StringTestFiles.h"
#include "support/FakePlatform.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {
using namespace Framework::Internal;
using StringTests::Row;
using StringTests::Rows;
using StringTests::TextFileBytes;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class XmlStringTable : public ::testing::Test {
protected:
    // Writes bytes to a file and loads it into table.
    void Load(std::string_view bytes, bool sort = false) {
        LoadXmlStringTable(table, dir.Write("t.xml", bytes).wstring(), sort);
    }
    // The rows that a body after the two skipped lines gives.
    std::vector<Row> BodyRows(std::string_view body) {
        Load("<?xml version=\"1.0\"?>\n<strings a=\"b\">\n" + std::string(body));
        return Rows(table);
    }

    QanTest::TempDir dir;
    StringTable table;
};

TEST_F(XmlStringTable, ReadsIdAndTextOfEachElementInFileOrder) {
    Load(TextFileBytes({{"b", "Bee"}, {"a", "Ay"}, {"c", "See"}}));
    EXPECT_THAT(Rows(table), ElementsAre(Row{"b", "Bee"}, Row{"a", "Ay"}, Row{"c", "See"}));
}

TEST_F(XmlStringTable, SortFlagOrdersRowsByBytes) {
    // Bytes compare unsigned: upper case before lower case, UTF-8 lead bytes last, and a
    // key before every longer key it begins.
    Load(TextFileBytes({{"b", "1"}, {"\xC3\xA9", "2"}, {"ab", "3"}, {"B", "4"}, {"a", "5"}}), true);
    EXPECT_THAT(Rows(table), ElementsAre(Row{"B", "4"}, Row{"a", "5"}, Row{"ab", "3"},
                                         Row{"b", "1"}, Row{"\xC3\xA9", "2"}));
}

// Texts keep quotes, apostrophes and line breaks; an element without text gives an empty
// text; whatever lies between elements is skipped.
TEST_F(XmlStringTable, ElementTexts) {
    EXPECT_THAT(
        BodyRows("<s id=\"q\">say \"hi\"\r\nit's</s>\n\n  \t<s id=\"e\"></s><s id=\"f\">F</s>"),
        ElementsAre(Row{"q", "say \"hi\"\r\nit's"}, Row{"e", ""}, Row{"f", "F"}));
}

TEST_F(XmlStringTable, FirstOfTwoQuotedAttributesBecomesTheId) {
    // The text starts two bytes after the first closing quote.
    EXPECT_THAT(BodyRows("<s id=\"a\" x=\"b\">text</s>"), ElementsAre(Row{"a", "x=\"b\">text"}));
}

TEST_F(XmlStringTable, SelfClosingElementIsReadWrongly) {
    // Its text runs from the byte after the "/" to the next "<". Intended: the producer
    // never writes self-closing elements.
    EXPECT_THAT(BodyRows("<s id=\"a\"/>\n<s id=\"b\">B</s>"),
                ElementsAre(Row{"a", ">\n"}, Row{"b", "B"}));
}

TEST_F(XmlStringTable, ByteOrderMarkSitsInTheSkippedFirstLine) {
    Load("\xEF\xBB\xBF" + TextFileBytes({{"a", "A"}}));
    EXPECT_THAT(Rows(table), ElementsAre(Row{"a", "A"}));
}

TEST_F(XmlStringTable, TwoLinesWithoutElementsReplaceRowsByNone) {
    Load(TextFileBytes({{"a", "A"}}));
    Load("line one\nline two\n   ");
    EXPECT_THAT(Rows(table), IsEmpty());
}

// The two skipped lines: the first search leaves out the last byte, the second ends one
// byte before the end.
TEST_F(XmlStringTable, LineFeedBoundaries) {
    const auto rowsOf = [this](std::string_view bytes) {
        table = StringTable{};
        Load(bytes);
        return Rows(table);
    };
    EXPECT_THAT(rowsOf(""), IsEmpty());
    EXPECT_THAT(rowsOf("\n"), IsEmpty());
    EXPECT_THAT(rowsOf("\n\n"), IsEmpty());
    EXPECT_THAT(rowsOf("one line only <s id=\"a\">A</s>"), IsEmpty());
    EXPECT_THAT(rowsOf("1\n<s id=\"a\">A</s>"), IsEmpty());
    EXPECT_THAT(rowsOf("1\n<s id=\"a\">A</s>\n"), IsEmpty()); // second line feed is last
    EXPECT_THAT(rowsOf("\n\n\"a\">A<"), ElementsAre(Row{"a", "A"}));
    EXPECT_THAT(rowsOf("1\n2\n\"a\">A<"), ElementsAre(Row{"a", "A"}));
}

TEST_F(XmlStringTable, FewerThanTwoLinesKeepThePreviousRowsReadable) {
    Load(TextFileBytes({{"a", "A"}, {"b", "B"}}));
    Load("only one line feed\n<s id=\"z\">Z</s>");
    EXPECT_THAT(Rows(table), ElementsAre(Row{"a", "A"}, Row{"b", "B"}));
    Load("1\n2\n");
    EXPECT_THAT(Rows(table), ElementsAre(Row{"a", "A"}, Row{"b", "B"}));
}

// The quote searches stop short of the end: the opening quote is never the last byte and
// the closing quote leaves room for the ">" and one more byte.
TEST_F(XmlStringTable, QuoteSearchBoundaries) {
    EXPECT_THAT(BodyRows("\"a\"><"), ElementsAre(Row{"a", ""}));
    EXPECT_THAT(BodyRows("\"a\">"), IsEmpty());
    EXPECT_THAT(BodyRows("\"a\""), IsEmpty());
    EXPECT_THAT(BodyRows("\""), IsEmpty());
    EXPECT_THAT(BodyRows("\"a\">x<"), ElementsAre(Row{"a", "x"}));
}

TEST_F(XmlStringTable, ScanStopsAtTheFirstIncompleteElement) {
    EXPECT_THAT(BodyRows("<s id=\"a\">A</s>\n<s id=\"b\">no end tag"), ElementsAre(Row{"a", "A"}));
    EXPECT_THAT(BodyRows("<s id=\"a\">A</s>\n<s id=\"b>B</s>\n"), ElementsAre(Row{"a", "A"}));
}

TEST_F(XmlStringTable, UnreadableFileKeepsRowsAndTheirBuffer) {
    Load(TextFileBytes({{"a", "A"}}));
    LoadXmlStringTable(table, (dir.Path() / "missing.xml").wstring(), false);
    EXPECT_THAT(Rows(table), ElementsAre(Row{"a", "A"}));

    std::filesystem::create_directory(dir.Path() / "folder.xml");
    LoadXmlStringTable(table, (dir.Path() / "folder.xml").wstring(), false);
    EXPECT_THAT(Rows(table), ElementsAre(Row{"a", "A"}));

    QanTest::FakePlatform platform;
    platform.readFile = [](const wchar_t*, std::uint64_t& size) {
        size = 0;
        return std::unique_ptr<char[]>();
    };
    LoadXmlStringTable(table, (dir.Path() / "t.xml").wstring(), false);
    EXPECT_EQ(platform.readFileCalls, 1);
    EXPECT_THAT(Rows(table), ElementsAre(Row{"a", "A"}));
}

TEST_F(XmlStringTable, ReadsFromPathWithNonAsciiCharacters) {
    const auto path = dir.Write(std::filesystem::path(u8"d\u00E9j\u00E0/\u65E5\u672C/t.xml"),
                                TextFileBytes({{"a", "\xE6\x97\xA5"}}));
    LoadXmlStringTable(table, StringTests::WidePath(path), false);
    EXPECT_THAT(Rows(table), ElementsAre(Row{"a", "\xE6\x97\xA5"}));
}

} // namespace

// The byte grammar of string text files and key tables, on real files in a temporary
// directory; bad files; and the search in a loaded table.
#include "StringTestFiles.h"
#include "strings/FindInTable.h"
#include "support/FakePlatform.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

namespace {
using namespace StringTests;
using namespace Framework::Internal;

using GrammarRow = std::pair<std::string, Rows>;

// "1\n2\n" stands for the two skipped lines where a row is about what follows them.
TEST(StringTextFile, Grammar) {
    const GrammarRow cases[] = {
        {TextFile({{"b", "Bee"}, {"a", "Ay"}}), {{"b", "Bee"}, {"a", "Ay"}}}, // file order
        // Texts as written up to the next "<"; an empty text; gaps between elements skipped.
        {"1\n2\n<s id=\"q\">say \"hi\"\r\nit's</s>\n \t<s id=\"e\"></s><s id=\"f\">F</s>",
         {{"q", "say \"hi\"\r\nit's"}, {"e", ""}, {"f", "F"}}},
        // Two quoted attributes, a self-closing element: read wrongly, as intended.
        {"1\n2\n<s id=\"a\" x=\"b\">t</s>", {{"a", "x=\"b\">t"}}},
        {"1\n2\n<s id=\"a\"/>\n<s id=\"b\">B</s>", {{"a", ">\n"}, {"b", "B"}}},
        {"\xEF\xBB\xBF" + TextFile({{"a", "A"}}), {{"a", "A"}}}, // byte-order mark in line 1
        // Fewer than two line feeds before the last byte give no rows; the skipped lines may
        // be empty.
        {"", {}},
        {"\n", {}},
        {"\n\n\"a\">A<", {{"a", "A"}}},
        // The closing quote leaves room for ">" and one more byte.
        {"1\n2\n\"a\"><", {{"a", ""}}},
        {"1\n2\n\"a\">", {}},
        // The scan keeps the rows before an element without "<" after its text or without
        // a partner for its opening quote.
        {"1\n2\n<s id=\"a\">A</s>\n<s id=\"b\">no end tag", {{"a", "A"}}},
        {"1\n2\n<s id=\"a\">A</s>\n<s id=\"b>B</s>\n", {{"a", "A"}}}};
    QanTest::TempDir dir;
    for (const auto& [bytes, rows] : cases)
        EXPECT_EQ(RowsOf(Load(dir, bytes, false)), rows) << bytes;
    // Sorted in unsigned byte order when asked.
    EXPECT_EQ(RowsOf(Load(dir, TextFile({{"b", "1"}, {"\xC3\xA9", "2"}, {"B", "3"}, {"ab", "4"}}),
                          false, true)),
              Rows({{"B", "3"}, {"ab", "4"}, {"b", "1"}, {"\xC3\xA9", "2"}}));
}

// A file too short for the two skipped lines (a second line feed as the last byte is too
// short), no file, or a folder leaves the rows as they were, still readable; a file with
// its two lines replaces them, even by none.
TEST(StringTextFile, ShortOrUnreadableFileKeepsRows) {
    QanTest::TempDir dir;
    StringTable table = Load(dir, TextFile({{"a", "A"}}), false);
    for (const auto& path : {dir.Write("1.xml", "1\n\"z\">Z<"), dir.Write("2.xml", "1\n2\n"),
                             dir.Path() / "none", dir.Path()}) {
        LoadXmlStringTable(table, path.wstring(), false);
        EXPECT_EQ(RowsOf(table), Rows({{"a", "A"}})) << path;
    }
    LoadXmlStringTable(table, dir.Write("3.xml", "1\n2\n ").wstring(), false);
    EXPECT_EQ(RowsOf(table), Rows{});
}

// Rows load in turn into one table: every file read replaces the rows, even by none.
TEST(KeyTable, Grammar) {
    const GrammarRow cases[] = {
        {"zeta,3\nalpha,1\n", {{"zeta", "3"}, {"alpha", "1"}}},                      // file order
        {"key,id\n k , \"i\" \n,\n", {{"key", "id"}, {" k ", " \"i\" "}, {"", ""}}}, // as written
        {"a,b,c\n", {{"a", "b,c"}}},
        {"a,1\r\nb,2\r\n", {{"a", "1\r"}, {"b", "2\r"}}},
        {"lone\nkey,1\nnext,2\n", {{"lone\nkey", "1"}, {"next", "2"}}}, // line without comma
        {"no comma at all\n", {}},
        {"a,1\nb,2", {{"a", "1"}}},                      // no final line feed
        {"\xEF\xBB\xBFz,1\n", {{"\xEF\xBB\xBFz", "1"}}}, // byte-order mark joins the key
        {"", {}}};
    QanTest::TempDir dir;
    StringTable table;
    for (const auto& [bytes, rows] : cases) {
        LoadCsvKeyTable(table, dir.Write("k.csv", bytes).wstring());
        EXPECT_EQ(RowsOf(table), rows) << bytes;
    }
    for (const auto& path : {dir.Path() / "missing.csv", dir.Path()}) {
        table = Load(dir, "a,1\n", true);
        LoadCsvKeyTable(table, path.wstring());
        EXPECT_EQ(RowsOf(table), Rows({{"a", "1"}})) << path;
    }
}

// Scans bytes served as the file in a buffer of exactly their size, so that a read past
// the end shows under AddressSanitizer.
Rows ScanExact(const std::string& bytes, bool keyTable) {
    QanTest::FakePlatform platform;
    platform.readFile = [&](const wchar_t*, std::uint64_t& size) {
        std::unique_ptr<char[]> buffer(new char[size = bytes.size()]);
        std::copy(bytes.begin(), bytes.end(), buffer.get());
        return buffer;
    };
    StringTable table;
    keyTable ? LoadCsvKeyTable(table, L"k.csv") : LoadXmlStringTable(table, L"t.xml", false);
    return RowsOf(table);
}

// Why a scan ended and where, as the tool reports it: the skipped lines, the quote or id
// that is dropped, the bytes a key table drops; rows before the end are kept.
TEST(StringTextFile, ScanSaysWhyAndWhereItEnded) {
    using End = StringScanEnd;
    const std::size_t none = std::string_view::npos;
    const std::tuple<std::string, End, std::size_t, std::size_t, std::size_t> cases[] = {
        // bytes, end, endOffset, rowsBegin, rows
        {"", End::TooFewLines, 0, none, 0},
        {"1\n2\n", End::TooFewLines, 0, none, 0}, // the second line feed is the last byte
        {"1\n\"a\">A<\n", End::TooFewLines, 0, none, 0},
        {"1\n2\n\"a\">A<", End::EndOfBytes, 0, 4, 1},
        {"1\n2\n\"a\">A</s>\n</r>\n", End::NoOpeningQuote, 10, 4, 1},
        {"1\n2\n\"a\">A<\"b\">no end", End::NoTextEnd, 10, 4, 1},
        {"1\n2\n\"a\">A<\"b>B<", End::NoClosingQuote, 10, 4, 1},
        {"1\n2\n\"a\">", End::NoClosingQuote, 4, 4, 0}, // no room for '>' and one more byte
    };
    for (const auto& [bytes, end, endOffset, rowsBegin, rows] : cases) {
        const StringFileScan scan = ScanStringTextFile(bytes);
        EXPECT_EQ(scan.end, end) << bytes;
        EXPECT_EQ(scan.endOffset, endOffset) << bytes;
        EXPECT_EQ(scan.rowsBegin, rowsBegin) << bytes;
        EXPECT_EQ(scan.rows.size(), rows) << bytes;
        for (const auto& row : scan.rows) // views into the given bytes
            EXPECT_TRUE(row.key.data() >= bytes.data() &&
                        row.text.data() + row.text.size() <= bytes.data() + bytes.size());
    }
}

TEST(KeyTable, ScanSaysWhyAndWhereItEnded) {
    using End = KeyScanEnd;
    const std::tuple<std::string, End, std::size_t, std::size_t> cases[] = {
        // bytes, end, droppedOffset, rows
        {"", End::EndOfBytes, 0, 0},
        {"k,A\n", End::EndOfBytes, 0, 1},
        {"k,A\nm,B", End::NoLineFeed, 4, 1},
        {"k,A\nlonely\n", End::KeyWithoutId, 4, 1},
        {"k,A\nj\nm,B", End::NoLineFeed, 4, 1}, // the dropped key holds the joined line
        {"k,A\n\n", End::KeyWithoutId, 4, 1},
        // A comma as the last byte: the key before it has no id and is dropped, like any
        // last line without a line feed.
        {"k,A\nm,", End::NoLineFeed, 4, 1},
        {",", End::NoLineFeed, 0, 0},
    };
    for (const auto& [bytes, end, dropped, rows] : cases) {
        const KeyTableScan scan = ScanKeyTable(bytes);
        EXPECT_EQ(scan.end, end) << bytes;
        EXPECT_EQ(scan.droppedOffset, dropped) << bytes;
        EXPECT_EQ(scan.rows.size(), rows) << bytes;
    }
}

// The loader scans each piece of a file as its read brings it in: fed in two pieces split
// at any byte (inside a key, an id, or at a comma or line feed), or a byte at a time, the
// scan keeps the rows and the end of the scan of the whole.
TEST(KeyTable, PiecesScanAsTheWhole) {
    const std::string table = "alpha,ONE\nbeta,TWO,2\r\ngamma\ndelta,FOUR\n,empty key\n"
                              "a-key-longer-than-sixteen-bytes,AND_AN_ID_AS_LONG\nlast,";
    using Row = std::pair<std::string, std::string>;
    for (const std::string& bytes : {table, table + "X\n", table.substr(0, 40)}) {
        const KeyTableScan whole = ScanKeyTable(bytes);
        std::vector<Row> expected;
        for (const auto& row : whole.rows)
            expected.emplace_back(row.key, row.text);
        const auto scanInPieces = [&bytes](const std::vector<std::size_t>& ends, KeyScanEnd& end,
                                           std::size_t& dropped) {
            std::vector<Row> rows;
            const auto keep = [&rows](std::string_view key, std::string_view id) {
                rows.emplace_back(key, id);
            };
            KeyRowScanner<decltype(keep)> scanner(keep);
            for (const std::size_t piece : ends)
                scanner.Feed(std::string_view(bytes).substr(0, piece));
            end = scanner.End(dropped);
            return rows;
        };
        std::vector<std::size_t> byteAtATime;
        for (std::size_t split = 0; split <= bytes.size(); ++split) {
            byteAtATime.push_back(split);
            KeyScanEnd end{};
            std::size_t dropped = 0;
            EXPECT_EQ(scanInPieces({split, bytes.size()}, end, dropped), expected) << split;
            EXPECT_EQ(end, whole.end) << split;
            EXPECT_EQ(end == KeyScanEnd::EndOfBytes ? 0 : dropped, whole.droppedOffset) << split;
        }
        KeyScanEnd end{};
        std::size_t dropped = 0;
        EXPECT_EQ(scanInPieces(byteAtATime, end, dropped), expected);
        EXPECT_EQ(end, whole.end);
    }
}

// The collection keeps a key table as offsets only (a row's key and id end where the next
// field begins): the same keys and ids as the rows of views, for every shape of row.
TEST(KeyTable, CompactRowsHoldTheSameKeysAndIds) {
    QanTest::TempDir dir;
    const std::string bytes = "alpha,ONE\n,empty key\nempty id,\nbeta,TWO,2\r\njoined\n"
                              "gamma,THREE\n\xC3\xA9,\xC3\xA9\nlast,dropped";
    const StringTable views = Load(dir, bytes, true);
    KeyRows compact;
    LoadCsvKeyTable(compact, dir.Write("c.csv", bytes).wstring());
    ASSERT_EQ(compact.size(), views.entries.size());
    ASSERT_EQ(compact.size(), 6u);
    for (std::size_t row = 0; row < compact.size(); ++row) {
        EXPECT_EQ(compact.Key(row), views.entries[row].key) << row;
        EXPECT_EQ(compact.Id(row), views.entries[row].text) << row;
    }
    KeyRows empty;
    LoadCsvKeyTable(empty, dir.Write("e.csv", "no row").wstring());
    EXPECT_EQ(empty.size(), 0u);
}

// The loader scans a string text file as its read brings it in: fed in two pieces split at
// any byte, or a byte at a time, the scan keeps the rows, where they begin, and why and
// where it ended, as the scan of the whole (whose bounds depend on the file's size).
TEST(StringTextFile, PiecesScanAsTheWhole) {
    const std::string file = TextFile({{"a", "Al"}, {"b", ""}, {"c", "multi\nline"}});
    for (const std::string& bytes :
         {file, file + "  <s id=\"d\">no end", file + "<s id=\"e", file.substr(0, 50),
          std::string("\n\n"), std::string("x\n\n\"a\">t<")}) {
        const StringFileScan whole = ScanStringTextFile(bytes);
        const auto same = [&whole, &bytes](const StringFileScan& scan, const std::string& how) {
            EXPECT_EQ(scan.end, whole.end) << how << bytes;
            EXPECT_EQ(scan.endOffset, whole.endOffset) << how << bytes;
            EXPECT_EQ(scan.rowsBegin, whole.rowsBegin) << how << bytes;
            ASSERT_EQ(scan.rows.size(), whole.rows.size()) << how << bytes;
            for (std::size_t i = 0; i < scan.rows.size(); ++i) {
                EXPECT_EQ(scan.rows[i].key, whole.rows[i].key) << how << bytes;
                EXPECT_EQ(scan.rows[i].text, whole.rows[i].text) << how << bytes;
            }
        };
        StringFileScanner byteAtATime(bytes.size());
        for (std::size_t split = 0; split <= bytes.size(); ++split) {
            StringFileScanner twoPieces(bytes.size());
            twoPieces.Feed(std::string_view(bytes).substr(0, split));
            twoPieces.Feed(bytes);
            same(twoPieces.Finish(), "split at " + std::to_string(split) + ": ");
            byteAtATime.Feed(std::string_view(bytes).substr(0, split));
        }
        same(byteAtATime.Finish(), "a byte at a time: ");
    }
}

// Every truncation, from no line feed at all to a quote without its partner, gives a
// leading part of the rows.
TEST(MalformedFiles, EveryTruncationGivesALeadingPartOfTheRows) {
    using Case = std::tuple<std::string, bool, std::size_t>;
    for (const auto& [whole, keyTable, rows] :
         {Case{TextFile({{"a", "Al \"q\""}, {"b", ""}, {"c", "multi\nline"}}), false, 3},
          Case{"\n\n\"a\"><", false, 1}, Case{"alpha,1\nbeta,2,3\ngamma,4\r\n,\n", true, 4}}) {
        const Rows all = ScanExact(whole, keyTable);
        ASSERT_EQ(all.size(), rows) << whole;
        for (std::size_t length = 0; length < whole.size(); ++length) {
            const Rows part = ScanExact(whole.substr(0, length), keyTable);
            EXPECT_TRUE(part.size() <= all.size() &&
                        std::equal(part.begin(), part.end(), all.begin()))
                << whole.substr(0, length);
        }
    }
}

// Exact byte matches only; of equal keys in a file read unsorted the first wins.
TEST(FindInTable, FindsByOrdinalBytes) {
    QanTest::TempDir dir;
    const StringTable table = Load(dir,
                                   ",!\nA,A!\nKey,Key!\na,a!\nab,ab!\nb,b!\nk,first\nk,second\n"
                                   "key,key!\nkeys,keys!\nz,z!\n\xC3\xA9,\xC3\xA9!\n",
                                   true);
    for (const std::string key : {"", "A", "Key", "a", "ab", "b", "key", "keys", "z", "\xC3\xA9"})
        EXPECT_EQ(FindInTable(table, key).value_or("-"), key + "!") << key;
    EXPECT_EQ(FindInTable(table, "k").value_or("-"), "first");
    for (const char* key : {"KEY", "ke", "key ", "zzz", "0"})
        EXPECT_FALSE(FindInTable(table, key)) << key;
    EXPECT_FALSE(FindInTable(StringTable{}, "key"));
}

} // namespace

// LintIconsTest.cpp: the checker on icon maps and cursor tables: every rejection of the
// map, its key order and duplicates, and the cursor table's order, duplicates and length.
#include "LintTestSupport.h"

#include "CursorTableWriter.h"
#include "support/TempDir.h"

namespace QanToolTest {
namespace {

using QanTest::TempDir;

TEST(LintIconMap, RejectionsOrderAndDuplicatesAreFoundWhereTheyStand) {
    TempDir dir;
    dir.Write("icons.map.xml", "<?xml version=\"1.0\"?>\n"
                               "<icons>\n"
                               "  <map guid=\"b\">b.ico</map>\n"
                               "  <map guid=\"a\">a.ico</map>\n"
                               "  <map guid=\"a\">a2.ico</map>\n"
                               "  <map id=\"c\">c.ico</map>\n"
                               "  <map guid=\"d\" x=\"1\">d.ico</map>\n"
                               "  <map guid=\"e\"></map>\n"
                               "  <map guid=\"f\"><map guid=\"g\">g.ico</map>f.ico</map>\n"
                               "  <map guid=\"h\"> h.ico </map>\n"
                               "</icons>\n");
    const auto findings = QanTool::LintDirectory(dir.Path(), "");
    ExpectFindings(findings, "icons.map.xml",
                   {{4, 3, E, "'a' is out of order: it sorts before 'b' on line 3"},
                    {5, 3, W, "duplicate key 'a': the library uses the first, on line 4"},
                    {6, 8, E, "must be named \"guid\", not 'id'"},
                    {7, 3, E, "exactly one attribute"},
                    {8, 3, E, "without a file name"},
                    {9, 3, E, "'f' is out of order: it sorts before 'g' on line 9"},
                    {9, 17, E, "inside another \"map\""},
                    {10, 3, W, "white space at its ends"}});
}

TEST(LintIconMap, MalformedXmlRejectsTheMap) {
    TempDir dir;
    dir.Write("icons.map.xml", "<icons>\n  <map guid=\"a\">a.ico</icons>\n");
    const auto findings = QanTool::LintDirectory(dir.Path(), "");
    ExpectFindings(findings, "icons.map.xml", {{2, 22, E, "end tag 'icons' does not match 'map'"}});
}

TEST(LintIconMap, KeysMustAscendAsUtf16AndAsCodePoints) {
    TempDir dir;
    // U+FF21 (one unit, 0xFF21) sorts after U+1F600 (surrogates 0xD83D 0xDE00) in UTF-16,
    // but before it by code point, the order of 32-bit wchar_t: no order suits both.
    dir.Write("icons.map.xml", "<icons>\n"
                               "<map guid=\"\xF0\x9F\x98\x80\">a.ico</map>\n"
                               "<map guid=\"\xEF\xBC\xA1\">b.ico</map>\n"
                               "</icons>\n");
    ExpectFindings(QanTool::LintDirectory(dir.Path(), ""), "icons.map.xml",
                   {{3, 1, E, "in code point order"}});

    dir.Write("icons.map.xml", "<icons>\n"
                               "<map guid=\"\xEF\xBC\xA1\">b.ico</map>\n"
                               "<map guid=\"\xF0\x9F\x98\x80\">a.ico</map>\n"
                               "</icons>\n");
    ExpectFindings(QanTool::LintDirectory(dir.Path(), ""), "icons.map.xml",
                   {{3, 1, E, "UTF-16 order"}});
}

std::string TableBytes(const std::vector<QanTools::CursorTable::Entry>& entries) {
    const auto bytes = QanTools::CursorTable::Write(entries);
    return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

TEST(LintCursorTable, OrderAndDuplicatesAreFoundByEntry) {
    TempDir dir;
    dir.Write("cursors.bin", TableBytes({{u"Hand", 1}, {u"Arrow", 2}, {u"Arrow", 3}}));
    ExpectFindings(QanTool::LintDirectory(dir.Path(), ""), "cursors.bin",
                   {{1, 2, E, "'Arrow' (entry 2) is out of order"},
                    {1, 3, W, "duplicate cursor 'Arrow': the library uses entry 2"}});
}

TEST(LintCursorTable, ShortAndNegativeTablesAreErrors) {
    TempDir dir;
    std::string bytes = TableBytes({{u"Arrow", 2}, {u"Hand", 1}});
    bytes.resize(bytes.size() - 2); // cuts the last id
    dir.Write("cursors.bin", bytes);
    ExpectFindings(QanTool::LintDirectory(dir.Path(), ""), "cursors.bin",
                   {{1, 1, E, "ends early: 1 of 2 entries read"}});

    dir.Write("cursors.bin", std::string("\xFF\xFF\xFF\xFF", 4));
    ExpectFindings(QanTool::LintDirectory(dir.Path(), ""), "cursors.bin",
                   {{1, 1, E, "negative cursor count -1"}});
}

TEST(LintCursorTable, ModuleWithoutTableIsAnError) {
    TempDir dir;
    dir.Write("QanIcons.dll", "MZ not really a module");
    ExpectFindings(QanTool::LintDirectory(dir.Path(), ""), "QanIcons.dll",
                   {{1, 1, E, "not a module holding a cursor table"}});
}

} // namespace
} // namespace QanToolTest

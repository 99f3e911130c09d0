// LintTest.cpp: the checker on a directory seeded with one instance of each fault it claims
// to find, one row per fault: the file, its content, and every finding expected for it.
#include "Lint.h"
#include "CursorTableWriter.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

// A string text file whose elements start on line 3, and one with a single element "A".
static std::string Text(const std::string& body) {
    return "<?xml version=\"1.0\"?>\n<strings>\n" + body + "</strings>\n";
}
static std::string One(const std::string& text) {
    return Text("<s id=\"A\">" + text + "</s>\n");
}
// An icon map whose entries start on line 2.
static std::string Map(const std::string& body) {
    return "<icons>\n" + body + "</icons>\n";
}
// A cursor table less its last drop bytes.
static std::string Cursors(const std::vector<QanTool::CursorTable::Entry>& entries, int drop = 0) {
    const auto bytes = QanTool::CursorTable::Write(entries);
    return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size() - drop);
}

using namespace std::string_literals;

TEST(Lint, EachSeededFaultIsFoundWhereItStands) {
    const std::string xml = "strings.xml", csv = "string.csv", map = "icons.map.xml";
    const std::string startup = "startupstrings.xml", over = "override/strings.xml";
    const std::string bin = "cursors.bin", a = "<s id=\"A\">a</s>\n";
    // Each finding: "line:column: severity: " and a part of the message.
    const std::tuple<std::string, std::string, std::vector<std::string>> rows[] = {
        {"caption.csv", "k,A\n", {}}, // beside the clean strings.xml: no finding
        // String text files.
        {xml,
         "<?xml version=\"1.0\"?>\n<strings>" + a + "</strings>\n",
         {"2:10: error: line 2 is never read"}},
        {xml,
         "<?xml version=\"1.0\"?>\n<strings><s id=\"A\">a</s></strings>\n",
         {"1:1: error: it reads no strings"}},
        {xml, Text("<s id=\"A\" lang=\"en\">a</s>\n"), {"3:16: error: more than one quoted"}},
        {xml, Text("<s id=\"A\" >a</s>\n"), {"3:10: error: '>' must follow"}},
        {xml, Text("<s id=\"A\"/>\n"), {"3:1: error: self-closing element"}},
        {xml, One("a <b>c</b>"), {"3:13: error: cannot hold '<'"}},
        {xml, "<?xml version=\"1.0\"?>\n<strings>\n<s id=\"A\">a\n", {"3:1: error: not closed"}},
        {xml,
         Text(a + "<!-- \"z\" -->\n"),
         {"4:1: error: a comment holding a double quote", "4:6: error: the quoted value 'z'"}},
        {xml,
         Text(a + "x=\"z\"\n"),
         {"4:1: error: text between elements holds a double quote", "4:3: error: value 'z'"}},
        {xml, One("\xFF"), {"3:11: error: invalid UTF-8 in the text"}},
        {xml,
         Text("<s id='a\"b' x=\"A\">T</s>\n"),
         {"3:1: error: string 'A' is never read: the library pairs the double quotes",
          "3:9: error: the library reads the quoted value 'b\' x=' here as a string id"}},
        {xml,
         Text("<s id=\"B\">b</s>\n" + a),
         {"4:7: error: 'A' is out of order: it sorts before 'B'"}},
        {xml,
         Text(a + a),
         {"4:7: warning: duplicate id 'A': the library uses the first, on line 3"}},
        {xml,
         One("\\\\n \\q \\\\\\n \\"), // \\n \q \\\n and a backslash at the end
         {"3:11: warning: '\\\\n' is handed out as a backslash followed by 'n'",
          "3:15: warning: '\\q' is not an escape", "3:18: warning: 3 backslashes before 'n'",
          "3:23: warning: a backslash at the end"}},
        // References the decoder leaves as written, each with its own message.
        {xml, One("&bogus;"), {"3:11: warning: unknown entity '&bogus;' is handed out as written"}},
        {xml, One("&nbsp;"), {"3:11: warning: unknown entity '&nbsp;'"}},
        {xml,
         One("&qout;"),
         {"3:11: warning: unknown entity '&qout;' is handed out as written: "
          "did you mean &quot;?"}},
        {xml,
         One("&#x2014 dash"),
         {"3:11: warning: malformed character reference '&#x2014' (no "
          "semicolon after the digits) is handed out as written"}},
        {xml, One("&#xZZ;"), {"3:11: warning: malformed character reference '&#x' (no digits)"}},
        {xml, One("&#X41;"), {"3:11: warning: (no digits; only a lower-case x marks hexadecimal)"}},
        {xml,
         One("&#1114112;"),
         {"3:11: warning: '&#1114112;' names no character (beyond "
          "U+10FFFF)"}},
        {xml, One("&#xD800;"), {"3:11: warning: '&#xD800;' names a surrogate"}},
        {xml, One("&#0;"), {"3:11: warning: '&#0;' names U+0000"}},
        {xml,
         One("a & b"),
         {"3:13: warning: '&' starts no reference and is handed out as "
          "written: write &amp;"}},
        {xml,
         "\xFF\xFE<\0?\0x\0m\0l\0"s,
         {"1:1: error: the file is UTF-16 (little-endian, with "
          "a byte-order mark)"}},
        {xml, One("a\rb"), {"3:12: warning: carriage return inside the text"}},
        {xml, One(std::string("a\0b", 3)), {"3:12: warning: a zero byte ends the text"}},
        {xml, Text("<s id=\"\">a</s>\n"), {"3:8: warning: empty id"}},
        // Across text files.
        {startup, Text("<s id=\"Z\">z</s>\n"), {"3:1: error: start-up id 'Z' is missing"}},
        {startup, One("other"), {"3:1: error: start-up text of 'A' differs from strings.xml:3"}},
        {over,
         Text("<s id=\"Z\">z</s>\n"),
         {"3:1: warning: override id 'Z' is not in strings.xml"}},
        {over, Text(a + a), {"4:7: error: duplicate override id 'A' (also on line 3)"}},
        // Key tables.
        {"caption.csv", "\xEF\xBB\xBFk,A\n", {"1:1: error: byte-order mark"}},
        {csv, "k,A\r\n", {"1:4: error: carriage return before the line feed"}},
        // Root causes once for the whole file, with the repair where fmt has one.
        {csv,
         "a,A\r\nb,B\r\nk,A\r\n",
         {"1:1: error: CR LF line ends (3 rows): every id ends with a "
          "carriage return and names no string, so those keys "
          "answer empty texts; qanres fmt writes LF line ends"}},
        {csv, "key,id\nk,A\n", {"1:1: error: a spreadsheet export (a header row)"}},
        {csv, "\"k\",\"A\"\n", {"1:1: error: a spreadsheet export (quoted fields)"}},
        {csv,
         "k\0,\0A\0\n\0"s,
         {"1:1: error: the file is UTF-16 (little-endian): the library "
          "reads UTF-8 only"}},
        {csv, "k,A", {"1:4: error: the last line has no line feed"}},
        {csv, "k,A\nk\n", {"2:1: error: line without a comma: the library drops it"}},
        {csv,
         "k\n\nm,A\n",
         {"3:1: error: key 'm' is never read: the lines before it have no comma, so the library "
          "joins them with it into the key 'k\\x0A\\x0Am'"}},
        {csv, "b,A\na,A\n", {"2:1: error: key 'a' is out of order: it sorts before 'b'"}},
        {csv, "k\xFF,A\n", {"1:2: error: invalid UTF-8"}},
        {csv, "k,Z\n", {"1:3: error: id 'Z' is in no string text file"}},
        {csv, "k,A\nk,B\n", {"2:1: warning: duplicate key 'k': the library uses the first"}},
        {csv, ",A\n", {"1:1: warning: empty key"}},
        {csv, "k,\n", {"1:2: warning: empty id"}},
        {csv, "k ,A\n", {"1:3: warning: space beside the comma"}},
        // Icon maps. U+FF21 is one UTF-16 unit, 0xFF21; U+1F600 is two, 0xD83D 0xDE00: they
        // sort one way as UTF-16 and the other by code point (a 32-bit wchar_t).
        // The verdict is the library's, so a rejected map is one finding where the library
        // stopped, and nothing about the entries it does not keep.
        {map,
         "<icons>\n<map guid=\"a\">a.ico</icons>\n",
         {"2:22: error: not well-formed XML (mismatched tag): the library rejects the whole map"}},
        {map,
         Map("<map guid=\"K\">k.ico</map><1bad/>\n"),
         {"2:27: error: not well-formed XML (not well-formed (invalid token))"}},
        {map,
         Map("<map guid=\"f\"><map guid=\"g\">g.ico</map>f.ico</map>\n"),
         {"2:15: error: inside another \"map\""}},
        {map,
         Map("<map guid=\"\"><map guid=\"g\">g.ico</map>f.ico</map>\n"),
         {"2:1: error: key '' is out of order: it sorts before 'g'",
          "2:1: warning: a \"map\" with an empty key holds another \"map\": the library reads "
          "both"}},
        {map, Map("<map guid=\"e\"></map>\n"), {"2:1: error: without a file name"}},
        {map, Map("<map id=\"c\">c.ico</map>\n"), {"2:1: error: must be named \"guid\", not 'id'"}},
        {map, Map("<map guid=\"d\" x=\"1\">d.ico</map>\n"), {"2:1: error: exactly one attribute"}},
        {map,
         Map("<map guid=\"\xF0\x9F\x98\x80\">a</map>\n<map guid=\"\xEF\xBC\xA1\">b</map>\n"),
         {"3:1: error: in code point order"}},
        {map,
         Map("<map guid=\"\xEF\xBC\xA1\">b</map>\n<map guid=\"\xF0\x9F\x98\x80\">a</map>\n"),
         {"3:1: error: UTF-16 order"}},
        {map,
         Map("<map guid=\"a\">a</map>\n<map guid=\"a\">b</map>\n"),
         {"3:1: warning: duplicate key 'a': the library uses the first, on line 2"}},
        {map, Map("<map guid=\"h\"> h.ico </map>\n"), {"2:1: warning: white space at its ends"}},
        // Cursor tables; the column is the entry's number.
        {"QanIcons.dll", "MZ not a module", {"1:1: error: not a module holding a cursor table"}},
        {bin, "\xFF\xFF\xFF\xFF", {"1:1: error: negative cursor count -1"}},
        {bin, "", {}}, // an empty table, as a module without the resource gives
        {bin,
         "\x01\x00",
         {"1:1: error: ends early: the count is cut short; the library reads an empty table"}},
        {bin,
         Cursors({{u"Arrow", 2}, {u"Hand", 1}}, 2),
         {"1:2: error: ends early: the id of entry 2 is cut short at byte 34; the library reads 2 "
          "of 2 entries, entry 2 with id 0"}},
        {bin,
         Cursors({{u"Arrow", 2}, {u"Hand", 1}, {u"Zoom", 3}}, 12),
         {"1:3: error: ends early: the name of entry 3 runs past the end of the data at byte 38; "
          "the library reads 2 of 3 entries, and gives the other 1 an empty name and id 0"}},
        {bin,
         Cursors({{u"Arrow", 2}, {u"Hand", 1}, {u"Zoom", 3}}, 14),
         {"1:3: error: ends early: the name length of entry 3 is cut short at byte 38; the library "
          "reads 2 of 3 entries, and gives the other 1"}},
        {bin,
         Cursors({{u"\U0001F600", 1}, {u"Arrow", 2}, {u"Arrow", 3}}),
         {"1:2: error: 'Arrow' (entry 2) is out of order: it sorts before '\xF0\x9F\x98\x80'",
          "1:3: warning: duplicate cursor 'Arrow': the library uses entry 2"}},
        {bin, Cursors({{u"", 1}}), {"1:1: warning: entry 1 has an empty name"}},
        {bin, Cursors({{u"A", 1}}) + "x", {"1:1: warning: bytes after the last cursor entry"}}};
    for (const auto& [file, content, expected] : rows) {
        QanTest::TempDir dir;
        dir.Write(xml, Text(a + "<s id=\"B\">b</s>\n"));
        dir.Write(file, content);
        auto found = QanTool::LintDirectory(dir.Path(), "res/").All();
        std::stable_sort(found.begin(), found.end(), [](const auto& x, const auto& y) {
            return std::tie(x.line, x.column) < std::tie(y.line, y.column);
        });
        std::string all = file + " gave:\n";
        for (const auto& d : found)
            all += QanTool::Format(d) + "\n";
        EXPECT_EQ(found.size(), expected.size()) << all;
        for (std::size_t i = 0; i < std::min(found.size(), expected.size()); ++i) {
            const std::size_t at = expected[i].find(": ", expected[i].find(": ") + 2) + 2;
            const std::string where = "res/" + file + ":" + expected[i].substr(0, at);
            EXPECT_EQ(QanTool::Format(found[i]).rfind(where, 0), 0u) << all;
            EXPECT_NE(found[i].message.find(expected[i].substr(at)), std::string::npos) << all;
        }
    }
}

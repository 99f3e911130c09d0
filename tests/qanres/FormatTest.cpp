// FormatTest.cpp: the formatter's repairs of single files (order, line ends, the header
// lines, element forms) and its refusals of what needs a guess. The whole directory, its
// look-ups after the repair and its untouched files after a refusal, are run end to end.
#include "Format.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <string>
#include <tuple>

TEST(Format, RepairsEveryFileFormAndRefusesWhatNeedsAGuess) {
    using Formatter = bool (*)(std::string_view, std::string&, std::string&);
    const Formatter keys = QanTool::FormatKeyTable, text = QanTool::FormatTextFile,
                    map = QanTool::FormatIconMap;
    // The repaired file, or for a refusal the reason with the place it starts with.
    const std::tuple<Formatter, std::string, std::string, bool> rows[] = {
        // Sorted, duplicates in file order; line feeds only; the byte-order mark and blank
        // lines dropped; spaces and later commas belong to key and id.
        {keys,
         "\xEF\xBB\xBF"
         "c,3\r\n\nb,2\r\nb,1\na,0",
         "a,0\nb,2\nb,1\nc,3\n", true},
        {keys, "k ,x,y\n a,b\n", " a,b\nk ,x,y\n", true},
        {keys, "a,1\nlonely\nb,2\n", "2:1: line without", false},
        // The header alone on lines 1 and 2, elements sorted with their comments; an
        // element on line 2, which the library never reads, moved out with its "/>" and the
        // space before ">" repaired; a text the library reads keeps its carriage return; a
        // formatted file stays as it is.
        {text,
         "<?xml version=\"1.0\"?>\r\n<strings><s id=\"C\" />\r\n  <s id=\"B\">Bee</s>\r\n"
         "  <!-- keep me -->\r\n  <s id=\"A\">Ay\r\nmore</s>\r\n</strings>",
         "<?xml version=\"1.0\"?>\n<strings>\n<!-- keep me -->\n  <s id=\"A\">Ay\r\nmore</s>\n"
         "  <s id=\"B\">Bee</s>\n  <s id=\"C\"></s>\n</strings>\n",
         true},
        // Elements the library reads otherwise than written are refused, not rewritten: a
        // rewrite would change the text or the id a host gets today.
        {text, "<?xml?>\n<r>\n<s id=\"A\" >x</s>\n</r>\n",
         "3:1: the library reads the text of 'A' as '>x', not 'x'", false},
        {text, "<?xml?>\n<r>\n<s id=\"B\">b</s>\n<s id=\"A\"/>\n</r>\n",
         "4:1: the library reads the text of 'A' as '>\\x0A'", false},
        {text, "<?xml?>\n<r>\n<s id='a\"b' x=\"A\">T</s>\n</r>\n",
         "3:1: the library reads no string 'A' here", false},
        {text, "<?xml?>\n<r lang=\"en\">\n<s id=\"A\">a</s>\n</r>\n", "",
         true}, // the quotes of lines 1 and 2 are not read
        {text, "<?xml?>\n\n<r lang=\"en\">\n<s id=\"A\">a</s>\n</r>\n",
         "3:9: the library reads the quoted value 'en' here as a string id", false},
        {text,
         "<?xml version=\"1.0\"?>\n<strings>\n  <s id=\"A\">a</s>\n  <s id=\"A\">second A</s>\n"
         "  <s id=\"B\"></s>\n</strings>\n",
         "", true},
        {text, "<?xml?>\n<r>\n<s id=\"A\" lang=\"en\">x</s>\n</r>\n",
         "3:1: element with more than one quoted attribute", false},
        {text, "<?xml?>\n<r>\n<s id=\"A\">x\n", "3:1: element is not closed", false},
        {text, "<?xml?>\n<r>\n<s id=\"A\">a <b>c</b></s>\n</r>\n",
         "3:13: a string text cannot hold '<'", false},
        {text, "<r>\n<s id=\"A\">x</s>\n</r>\n", "1:1: no XML declaration", false},
        // Icon maps: sorted, comments moving with their entries; a rejected or nested map
        // is refused.
        {map,
         "<icons>\r\n  <!-- b first -->\r\n  <map guid=\"b\">b.ico</map>\r\n"
         "  <map guid=\"a\">a.ico</map>\r\n</icons>",
         "<icons>\n  <map guid=\"a\">a.ico</map>\n  <!-- b first -->\n"
         "  <map guid=\"b\">b.ico</map>\n</icons>\n",
         true},
        {map, "<i><map guid=\"a\"></map></i>", "without a file name", false},
        {map, "<i><g><map guid=\"b\">b</map></g><map guid=\"a\">a</map></i>",
         "not all children of the root", false}};
    for (const auto& [format, in, expected, repaired] : rows) {
        std::string out, reason;
        EXPECT_EQ(format(in, out, reason), repaired) << in << "\ngave: " << out << reason;
        if (repaired) {
            EXPECT_EQ(out, expected.empty() ? in : expected) << in;
            std::string again;
            EXPECT_TRUE(format(out, again, reason) && again == out) << out; // a fixed point
        } else {
            EXPECT_NE(reason.find(expected), std::string::npos) << reason;
        }
    }
}

TEST(Format, EachRepairIsRenamedIntoPlaceLeavingNothingBeside) {
    QanTest::TempDir dir;
    dir.Write("string.csv", "kb,B\r\nka,A");
    const auto plan = QanTool::PlanFormat(dir.Path());
    ASSERT_EQ(plan.changes.size(), 1u) << plan.refusal;
    ASSERT_EQ(QanTool::ApplyFormat(dir.Path(), plan), "");
    EXPECT_EQ(QanTest::ReadAll(dir.Path() / "string.csv"), "ka,A\nkb,B\n");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.Path()), {}), 1);
    EXPECT_TRUE(QanTool::PlanFormat(dir.Path()).changes.empty());
}

// FormatTest.cpp: the formatter's repairs of single files (order, line ends, the header
// lines, element forms) and its refusals of what needs a guess. The whole directory, its
// look-ups after the repair and its untouched files after a refusal, are run end to end.
#include "Format.h"

#include "platform/DurableWrite.h"
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
        // A run of carriage returns ends its line like one (and a second run finds nothing).
        {keys, "b,2\r\r\na,1\r\r", "a,1\nb,2\n", true},
        {text,
         "<?xml version=\"1.0\"?>\r\r\n<strings>\r\r\n  <s "
         "id=\"A\">a\r\r\nb</s>\r\r\n</strings>\r\r",
         "<?xml version=\"1.0\"?>\n<strings>\n  <s id=\"A\">a\r\r\nb</s>\n</strings>\n", true},
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
        // A root without strings, as an empty start tag: its own line end is the one the
        // header lines get, not another line after them.
        {text, "<?xml version=\"1.0\"?>\n<strings/>\n", "", true},
        {text, "<?xml version=\"1.0\"?>\r\n<strings/>", "<?xml version=\"1.0\"?>\n<strings/>\n",
         true},
        {text, "<?xml version=\"1.0\"?><strings/>\r", "<?xml version=\"1.0\"?>\n<strings/>\n",
         true},
        // A carriage return that ends the file ends its last line.
        {text, "<?xml version=\"1.0\"?>\n<strings>\n</strings>\r",
         "<?xml version=\"1.0\"?>\n<strings>\n</strings>\n", true},
        {map, "<icons><map guid=\"a\">a.ico</map></icons>\r",
         "<icons><map guid=\"a\">a.ico</map></icons>\n", true},
        // What follows an empty root start tag is checked like what follows an end tag:
        // laid out on line 3, a quote there would be read as a string id.
        {text, "<?xml version=\"1.0\"?><strings/>\"s\">x", "1:32: content after the root element",
         false},
        {text, "<?xml version=\"1.0\"?>\n<strings/>\n<!-- c -->\n", "", true},
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
         "1:28: the \"map\" elements are not siblings", false},
        // The library's verdict decides: what it rejects is refused where it stopped, and
        // entries it reads from one element or an entity's text are not moved.
        {map, "<icons><map guid=\"K\">k.ico</map><1bad/></icons>", "1:34: not well-formed XML",
         false},
        {map, "<i>\n<map guid=\"\"><map guid=\"b\">b</map>x</map>\n</i>",
         "2:1: the \"map\" elements are not siblings", false},
        {map,
         "<!DOCTYPE i [<!ENTITY e \"<map guid='b'>b</map>\">]>\n<i>&e;<map guid=\"a\">a</map></i>",
         "2:4: the \"map\" elements are not siblings", false},
        // Sorted maps stay as they are at any depth; a byte-order mark, the prolog and the
        // text before the first entry stay in front.
        {map, "<i><g><map guid=\"a\">a</map><map guid=\"b\">b</map></g></i>\n", "", true},
        {map,
         "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<i>note\n<map guid=\"b\">b</map> "
         "<!-- a --> <map guid=\"a\">a</map></i>",
         "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<i>note <!-- a --> <map guid=\"a\">a</map>\n"
         "<map guid=\"b\">b</map></i>\n",
         true}};
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

std::size_t FilesIn(const std::filesystem::path& dir) {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(dir))
        count += entry.is_directory() ? 0 : 1;
    return count;
}

TEST(Format, EachRepairIsRenamedIntoPlaceKeepingItsModeAndLeavingNothingBeside) {
    QanTest::TempDir dir;
    dir.Write("string.csv", "kb,B\r\nka,A");
    dir.Write("caption.csv", "c,C\r\n");
    constexpr auto readOnly = std::filesystem::perms::owner_read |
                              std::filesystem::perms::group_read |
                              std::filesystem::perms::others_read;
    std::filesystem::permissions(dir.Path() / "string.csv", readOnly);
    const auto plan = QanTool::PlanFormat(dir.Path());
    ASSERT_EQ(plan.changes.size(), 2u) << plan.refusal;
    const auto result = QanTool::ApplyFormat(dir.Path(), plan);
    ASSERT_EQ(result.error, "");
    EXPECT_EQ(result.replaced, (std::vector<std::string>{"string.csv", "caption.csv"}));
    EXPECT_EQ(QanTest::ReadAll(dir.Path() / "string.csv"), "ka,A\nkb,B\n");
    EXPECT_EQ(std::filesystem::status(dir.Path() / "string.csv").permissions() &
                  std::filesystem::perms::mask,
              readOnly);
    EXPECT_EQ(FilesIn(dir.Path()), 2u);
    EXPECT_TRUE(QanTool::PlanFormat(dir.Path()).changes.empty());
}

// Every way of failing before the first rename leaves every original as it was and no
// new file behind.
TEST(Format, NothingIsReplacedWhenAnyFileCannotBeWrittenOrChangedMeanwhile) {
    QanTest::TempDir dir;
    dir.Write("string.csv", "kb,B\nka,A\n");
    dir.Write("caption.csv", "cb,B\nca,A\n");
    auto plan = QanTool::PlanFormat(dir.Path());
    ASSERT_EQ(plan.changes.size(), 2u);

    auto edited = plan; // an editor saves caption.csv while fmt runs
    dir.Write("caption.csv", "ca,A\n");
    auto result = QanTool::ApplyFormat(dir.Path(), edited);
    EXPECT_NE(result.error.find("caption.csv changed since fmt read it"), std::string::npos)
        << result.error;
    EXPECT_TRUE(result.replaced.empty());
    EXPECT_EQ(QanTest::ReadAll(dir.Path() / "string.csv"), "kb,B\nka,A\n");
    EXPECT_EQ(QanTest::ReadAll(dir.Path() / "caption.csv"), "ca,A\n");
    EXPECT_EQ(FilesIn(dir.Path()), 2u);

    dir.Write("caption.csv", "cb,B\nca,A\n");
    auto unwritable = QanTool::PlanFormat(dir.Path());
    unwritable.changes.push_back({"no such folder/strings.xml", "x", "y"});
    result = QanTool::ApplyFormat(dir.Path(), unwritable);
    EXPECT_NE(result.error, "");
    EXPECT_TRUE(result.replaced.empty());
    EXPECT_EQ(QanTest::ReadAll(dir.Path() / "string.csv"), "kb,B\nka,A\n");
    EXPECT_EQ(FilesIn(dir.Path()), 2u);
}

#ifndef _WIN32
// A link is never replaced by a regular file, and a new file is never created through one.
TEST(Format, LinksAreRefusedAndNeverFollowedWhenWriting) {
    QanTest::TempDir dir, elsewhere;
    const auto target = elsewhere.Write("string.csv", "kb,B\nka,A\n");
    std::filesystem::create_symlink(target, dir.Path() / "string.csv");
    const auto plan = QanTool::PlanFormat(dir.Path());
    EXPECT_TRUE(plan.changes.empty());
    EXPECT_NE(plan.refusal.find("string.csv is a symbolic link"), std::string::npos);
    EXPECT_TRUE(std::filesystem::is_symlink(dir.Path() / "string.csv"));
    EXPECT_EQ(QanTest::ReadAll(target), "kb,B\nka,A\n");

    const auto victim = elsewhere.Write("victim", "kept");
    std::filesystem::create_symlink(victim, dir.Path() / "new");
    EXPECT_NE(Framework::Platform::CreateFileDurably(dir.Path() / "new", "overwritten",
                                                     std::filesystem::perms::owner_all),
              "");
    EXPECT_EQ(QanTest::ReadAll(victim), "kept");
}
#endif

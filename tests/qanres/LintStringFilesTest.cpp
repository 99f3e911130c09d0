// LintStringFilesTest.cpp: the checker on string text files and key tables seeded with one
// instance of each fault, each finding checked for its position and message.
#include "LintTestSupport.h"

#include "support/TempDir.h"

namespace QanToolTest {
namespace {

using QanTest::TempDir;

constexpr const char* kHeader = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n";

class LintStringFiles : public ::testing::Test {
protected:
    void SetUp() override {
        dir.Write("startupstrings.xml", std::string(kHeader) +
                                            "<strings><s id=\"EARLY\">Never read</s>\n"
                                            "  <s id=\"B\">Bee</s>\n"
                                            "  <s id=\"A\">Ay</s>\n"
                                            "  <s id=\"C\">Sea</s>\n"
                                            "  <s id=\"ONLY_STARTUP\">x</s>\n"
                                            "</strings>\n");
        dir.Write("strings.xml", std::string(kHeader) + "<strings>\n"
                                                        "  <s id=\"A\">Ay</s>\n"
                                                        "  <s id=\"B\">Bee</s>\n"
                                                        "  <s id=\"B\">Bee again</s>\n"
                                                        "  <s id=\"C\">Sea!</s>\n"
                                                        "  <s id=\"D\" lang=\"en\">Dee</s>\n"
                                                        "  <s id=\"E\" >Eee</s>\n"
                                                        "  <s id=\"F\"/>\n"
                                                        "  <s id=\"G\">x\\\\n y \\q z\\</s>\n"
                                                        "  <s id=\"H\">bad \xFF byte</s>\n"
                                                        "  <!-- a \"quoted\" comment -->\n"
                                                        "  <s id=\"I\">&bogus; entity</s>\n"
                                                        "</strings>\n");
        dir.Write("override/strings.xml", std::string(kHeader) + "<strings>\n"
                                                                 "  <s id=\"Z\">Zed</s>\n"
                                                                 "  <s id=\"A\">Ay 1</s>\n"
                                                                 "  <s id=\"A\">Ay 2</s>\n"
                                                                 "</strings>\n");
        dir.Write("string.csv", "a,A\n"
                                "c,B\r\n"
                                "b,A\n"
                                "no comma\n"
                                "d,A\n"
                                "d,B\n"
                                "e ,A\n"
                                "f,NOPE\n"
                                "g,A");
        dir.Write("caption.csv", "\xEF\xBB\xBF"
                                 "a,A\n");
        findings = QanTool::LintDirectory(dir.Path(), "");
    }

    TempDir dir;
    QanTool::DiagnosticList findings;
};

TEST_F(LintStringFiles, StartupFileFaultsAreFoundWhereTheyStand) {
    ExpectFindings(findings, "startupstrings.xml",
                   {{2, 10, E, "line 2 is never read"},
                    {4, 9, E, "'A' is out of order: it sorts before 'B' on line 3"},
                    {5, 1, E, "start-up text of 'C' differs from strings.xml:6"},
                    {6, 1, E, "'ONLY_STARTUP' is missing from strings.xml"}});
}

TEST_F(LintStringFiles, FullFileFaultsAreFoundWhereTheyStand) {
    ExpectFindings(findings, "strings.xml",
                   {{5, 9, W, "duplicate id 'B': the library uses the first, on line 4"},
                    {7, 18, E, "more than one quoted attribute"},
                    {8, 12, E, "'>' must follow the id's closing quote"},
                    {9, 3, E, "self-closing element"},
                    {10, 14, W, "'\\\\n' is handed out as a backslash followed by 'n'"},
                    {10, 20, W, "'\\q' is not an escape"},
                    {10, 24, W, "a backslash at the end of the text"},
                    {11, 17, E, "invalid UTF-8 in the text"},
                    {12, 3, E, "a comment holding a double quote"},
                    {12, 10, E, "reads the quoted value 'quoted' here as a string id"},
                    {13, 9, E, "'I' is out of order: it sorts before 'quoted' on line 12"},
                    {13, 13, W, "'&' does not start an entity"}});
}

TEST_F(LintStringFiles, OverrideFileMayBeUnsortedButNotDuplicated) {
    ExpectFindings(findings, "override/strings.xml",
                   {{3, 1, W, "override id 'Z' is not in strings.xml"},
                    {5, 9, E, "duplicate override id 'A' (also on line 4)"}});
}

TEST_F(LintStringFiles, KeyTableFaultsAreFoundWhereTheyStand) {
    ExpectFindings(findings, "string.csv",
                   {{2, 4, E, "carriage return before the line feed"},
                    {3, 1, E, "key 'b' is out of order: it sorts before 'c' on line 2"},
                    {4, 1, E, "line without a comma"},
                    {6, 1, W, "duplicate key 'd': the library uses the first, on line 5"},
                    {7, 3, W, "space beside the comma"},
                    {8, 3, E, "id 'NOPE' is in no string text file"},
                    {9, 4, E, "the last line has no line feed"}});
}

TEST_F(LintStringFiles, ByteOrderMarkInAKeyTableIsAnError) {
    ExpectFindings(findings, "caption.csv", {{1, 1, E, "byte-order mark"}});
}

TEST(LintTextFileLines, TooFewLinesMeanNoStringsAreRead) {
    TempDir dir;
    // The second line feed is the file's last byte: the library's search stops short of it.
    dir.Write("strings.xml", "<?xml version=\"1.0\"?>\n<strings><s id=\"A\">Ay</s></strings>\n");
    const auto findings = QanTool::LintDirectory(dir.Path(), "");
    const auto found = FindingsFor(findings, "strings.xml");
    ASSERT_FALSE(found.empty());
    EXPECT_NE(found[0].message.find("reads no strings"), std::string::npos);
    EXPECT_TRUE(findings.HasErrors());
}

TEST(LintTextFileLines, DisplayDirectoryPrefixesEveryFinding) {
    TempDir dir;
    dir.Write("string.csv", "b,1\na,2\n");
    const auto findings = QanTool::LintDirectory(dir.Path(), "res/");
    ASSERT_EQ(findings.All().size(), 1u);
    EXPECT_EQ(QanTool::Format(findings.All()[0]).rfind("res/string.csv:2:1: error: key 'a'", 0),
              0u);
}

} // namespace
} // namespace QanToolTest

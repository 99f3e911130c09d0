// FormatTest.cpp: the formatter's repairs (order, line ends, the header lines, element
// forms) keep every byte of content and satisfy the checker; its refusals change nothing.
#include "Format.h"
#include "Lint.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace {

using QanTest::ReadAll;
using QanTest::TempDir;

std::string FormatKeys(std::string_view in) {
    std::string out, reason;
    EXPECT_TRUE(QanTool::FormatKeyTable(in, out, reason)) << reason;
    return out;
}

std::string FormatText(std::string_view in) {
    std::string out, reason;
    EXPECT_TRUE(QanTool::FormatTextFile(in, out, reason)) << reason;
    return out;
}

std::string Refusal(bool (*format)(std::string_view, std::string&, std::string&),
                    std::string_view in) {
    std::string out, reason;
    EXPECT_FALSE(format(in, out, reason)) << "formatted as:\n" << out;
    return reason;
}

TEST(FormatKeyTable, SortsKeepingDuplicatesInFileOrderAndEndsEveryLineWithLineFeed) {
    EXPECT_EQ(FormatKeys("\xEF\xBB\xBF"
                         "c,3\r\n\nb,2\r\nb,1\na,0"),
              "a,0\nb,2\nb,1\nc,3\n");
}

TEST(FormatKeyTable, KeepsSpacesAndLaterCommasWhichBelongToKeyAndId) {
    EXPECT_EQ(FormatKeys("k ,x,y\n a,b\n"), " a,b\nk ,x,y\n");
}

TEST(FormatKeyTable, RefusesALineWithoutComma) {
    EXPECT_EQ(Refusal(QanTool::FormatKeyTable, "a,1\nlonely\nb,2\n").rfind("2:1: line without", 0),
              0u);
}

TEST(FormatTextFile, LaysOutHeaderSortsAndRepairsElementForms) {
    const std::string in = "<?xml version=\"1.0\"?>\r\n"
                           "<strings><s id=\"B\">Bee</s>\r\n"
                           "  <s id=\"A\" >Ay\r\nmore</s>\r\n"
                           "  <!-- keep me -->\r\n"
                           "  <s id=\"C\"/>\r\n"
                           "</strings>";
    EXPECT_EQ(FormatText(in), "<?xml version=\"1.0\"?>\n"
                              "<strings>\n"
                              "<s id=\"A\">Ay\nmore</s>\n"
                              "  <s id=\"B\">Bee</s>\n"
                              "  <!-- keep me -->\n"
                              "  <s id=\"C\"></s>\n"
                              "</strings>\n");
}

TEST(FormatTextFile, FormattedFileIsLeftAsItIs) {
    const std::string done = "<?xml version=\"1.0\"?>\n<strings>\n  <s id=\"A\">a</s>\n"
                             "  <s id=\"A\">second A</s>\n  <s id=\"B\"></s>\n</strings>\n";
    EXPECT_EQ(FormatText(done), done);
}

TEST(FormatTextFile, RefusesWhatNeedsAGuess) {
    EXPECT_NE(
        Refusal(QanTool::FormatTextFile, "<?xml?>\n<r>\n<s id=\"A\" lang=\"en\">x</s>\n</r>\n")
            .find("3:1: element with more than one quoted attribute"),
        std::string::npos);
    EXPECT_NE(Refusal(QanTool::FormatTextFile, "<?xml?>\n<r>\n<s id=\"A\">x\n")
                  .find("element is not closed"),
              std::string::npos);
    EXPECT_NE(Refusal(QanTool::FormatTextFile, "<?xml?>\n<r>\n<s id=\"A\">a <b>c</b></s>\n</r>\n")
                  .find("3:13: a string text cannot hold '<'"),
              std::string::npos);
    EXPECT_NE(Refusal(QanTool::FormatTextFile, "<r>\n<s id=\"A\">x</s>\n</r>\n")
                  .find("no XML declaration"),
              std::string::npos);
}

TEST(FormatIconMap, SortsFlatMapMovingCommentsWithTheirEntries) {
    const std::string in = "<icons>\r\n"
                           "  <!-- b first -->\r\n"
                           "  <map guid=\"b\">b.ico</map>\r\n"
                           "  <map guid=\"a\">a.ico</map>\r\n"
                           "</icons>";
    std::string out, reason;
    ASSERT_TRUE(QanTool::FormatIconMap(in, out, reason)) << reason;
    EXPECT_EQ(out, "<icons>\n"
                   "  <map guid=\"a\">a.ico</map>\n"
                   "  <!-- b first -->\n"
                   "  <map guid=\"b\">b.ico</map>\n"
                   "</icons>\n");
}

TEST(FormatIconMap, RefusesARejectedOrNestedMap) {
    EXPECT_NE(Refusal(QanTool::FormatIconMap, "<i><map guid=\"a\"></map></i>")
                  .find("without a file name"),
              std::string::npos);
    EXPECT_NE(Refusal(QanTool::FormatIconMap,
                      "<i><g><map guid=\"b\">b</map></g><map guid=\"a\">a</map></i>")
                  .find("not all children of the root"),
              std::string::npos);
}

TEST(FormatDirectory, RepairedDirectoryPassesTheChecker) {
    TempDir dir;
    dir.Write("strings.xml", "<?xml version=\"1.0\"?>\r\n<strings>\r\n<s id=\"B\">b</s>\r\n"
                             "<s id=\"A\">a</s>\r\n</strings>\r\n");
    dir.Write("string.csv", "kb,B\r\nka,A");
    dir.Write("icons.map.xml",
              "<icons>\n<map guid=\"z\">z.ico</map>\n<map guid=\"y\">y.ico</map>\n</icons>");
    ASSERT_TRUE(QanTool::LintDirectory(dir.Path(), "").HasErrors());

    const auto plan = QanTool::PlanFormat(dir.Path());
    ASSERT_TRUE(plan.refusal.empty()) << plan.refusal;
    EXPECT_EQ(plan.changes.size(), 3u);
    ASSERT_EQ(QanTool::ApplyFormat(dir.Path(), plan), "");

    const auto findings = QanTool::LintDirectory(dir.Path(), "");
    EXPECT_TRUE(findings.All().empty()) << QanTool::Format(findings.All().front());
    EXPECT_EQ(ReadAll(dir.Path() / "string.csv"), "ka,A\nkb,B\n");
    EXPECT_FALSE(std::filesystem::exists(dir.Path() / "string.csv.qanres-new"));
    EXPECT_TRUE(QanTool::PlanFormat(dir.Path()).changes.empty());
}

TEST(FormatDirectory, OneRefusedFileMeansNoChangeAnywhere) {
    TempDir dir;
    dir.Write("string.csv", "b,B\na,A\n");
    dir.Write("caption.csv", "x,X\nno comma\n");
    const auto plan = QanTool::PlanFormat(dir.Path());
    EXPECT_EQ(plan.refusal,
              "caption.csv:2:1: line without a comma: key and id cannot be told apart");
    EXPECT_TRUE(plan.changes.empty());
}

} // namespace

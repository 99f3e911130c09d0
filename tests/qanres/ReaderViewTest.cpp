// ReaderViewTest.cpp: the checker's copy of the library's byte scans follows the same
// narrowed search spans, since its findings are only as good as that copy.
#include "KeyTable.h"
#include "TextFile.h"

#include <gtest/gtest.h>

namespace {

TEST(ReadAsLibrary, NeedsTwoLineFeedsBeforeTheLastByte) {
    EXPECT_TRUE(QanTool::ReadAsLibrary("").rows.empty());
    EXPECT_TRUE(QanTool::ReadAsLibrary("a\n<s id=\"x\">y</s>").rows.empty());
    EXPECT_EQ(QanTool::ReadAsLibrary("a\nb\n").skipEnd, std::string_view::npos);
    const auto view = QanTool::ReadAsLibrary("a\nb\n<s id=\"x\">y</s>");
    ASSERT_EQ(view.rows.size(), 1u);
    EXPECT_EQ(view.rows[0].id, "x");
    EXPECT_EQ(view.rows[0].text, "y");
}

TEST(ReadAsLibrary, TwoQuotedAttributesMisreadTheText) {
    const auto view = QanTool::ReadAsLibrary("a\nb\n<s id=\"x\" n=\"2\">t</s>");
    ASSERT_EQ(view.rows.size(), 1u);
    EXPECT_EQ(view.rows[0].id, "x");
    EXPECT_EQ(view.rows[0].text, "n=\"2\">t");
}

TEST(ReadKeyTableAsLibrary, LineWithoutCommaJoinsTheNextAndUnendedLastLineIsDropped) {
    const auto rows = QanTool::ReadKeyTableAsLibrary("a\nb,1\nc,2,3\nd,4");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].key, "a\nb");
    EXPECT_EQ(rows[0].id, "1");
    EXPECT_EQ(rows[1].key, "c");
    EXPECT_EQ(rows[1].id, "2,3");
}

} // namespace

// LintTestSupport.cpp: comparison of checker findings with expectations.
#include "LintTestSupport.h"

#include <algorithm>

namespace QanToolTest {

std::vector<QanTool::Diagnostic> FindingsFor(const QanTool::DiagnosticList& list,
                                             const std::string& file) {
    std::vector<QanTool::Diagnostic> out;
    for (const auto& d : list.All())
        if (d.file == file)
            out.push_back(d);
    std::stable_sort(out.begin(), out.end(), [](const auto& a, const auto& b) {
        return a.line != b.line ? a.line < b.line : a.column < b.column;
    });
    return out;
}

void ExpectFindings(const QanTool::DiagnosticList& list, const std::string& file,
                    const std::vector<Expected>& expected) {
    const auto found = FindingsFor(list, file);
    std::string all;
    for (const auto& d : found)
        all += "  " + QanTool::Format(d) + "\n";
    ASSERT_EQ(found.size(), expected.size()) << "findings for " << file << ":\n" << all;
    for (std::size_t i = 0; i < found.size(); ++i) {
        SCOPED_TRACE(QanTool::Format(found[i]));
        EXPECT_EQ(found[i].line, expected[i].line);
        EXPECT_EQ(found[i].column, expected[i].column);
        EXPECT_EQ(found[i].severity, expected[i].severity);
        EXPECT_NE(found[i].message.find(expected[i].fragment), std::string::npos)
            << "expected the message to mention: " << expected[i].fragment;
    }
}

} // namespace QanToolTest

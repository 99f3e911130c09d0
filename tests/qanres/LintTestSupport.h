// LintTestSupport.h: runs the checker on a test directory and compares its findings for
// one file with the expected (line, column, severity, message fragment) list.
#pragma once

#include "Lint.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace QanToolTest {

struct Expected {
    int line;
    int column;
    QanTool::Severity severity;
    std::string fragment; // a part of the message that names the fault
};

inline constexpr auto E = QanTool::Severity::Error;
inline constexpr auto W = QanTool::Severity::Warning;

// The findings for file (relative name), in line and column order.
std::vector<QanTool::Diagnostic> FindingsFor(const QanTool::DiagnosticList& list,
                                             const std::string& file);

// Expects exactly the listed findings for file, in order.
void ExpectFindings(const QanTool::DiagnosticList& list, const std::string& file,
                    const std::vector<Expected>& expected);

} // namespace QanToolTest

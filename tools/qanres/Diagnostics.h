// Diagnostics.h: findings of the resource-directory checker, printed the way compilers
// print them ("file:line:column: error: message") so editors can jump to them.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace QanTool {

enum class Severity { Warning, Error };

struct Diagnostic {
    std::string file; // as given on the command line, joined with the file name
    int line = 0;     // 1-based; 0 for a finding about the whole file
    int column = 0;   // 1-based byte column
    Severity severity = Severity::Error;
    std::string message;
};

// Where a byte offset of a file lies, in 1-based lines and byte columns.
struct Position {
    int line = 1;
    int column = 1;
};

// Maps byte offsets to lines and columns; built once per file (one scan for line feeds).
class LineIndex {
public:
    explicit LineIndex(std::string_view bytes);
    Position At(std::size_t offset) const;

private:
    std::vector<std::size_t> lineStarts;
};

class DiagnosticList {
public:
    void Add(std::string file, Position at, Severity severity, std::string message);
    const std::vector<Diagnostic>& All() const { return items; }
    bool HasErrors() const;
    std::size_t Count(Severity severity) const;
    // Sorted by file, line and column, so that output is stable whatever order checks ran.
    std::vector<const Diagnostic*> Sorted() const;
    // Prints the findings one a line, in Sorted() order, as Format() writes them.
    void Print(std::ostream& out) const;

private:
    std::vector<Diagnostic> items;
};

std::string Format(const Diagnostic& diagnostic);

} // namespace QanTool

// Diagnostics.cpp: line index and compiler-style printing of checker findings.
#include "Diagnostics.h"

#include <algorithm>
#include <cstring>

namespace QanTool {

LineIndex::LineIndex(std::string_view bytes) {
    lineStarts.push_back(0);
    const char* begin = bytes.data();
    const char* end = begin + bytes.size();
    for (const char* p = begin; p < end;) {
        const void* lf = std::memchr(p, '\n', static_cast<std::size_t>(end - p));
        if (!lf)
            break;
        p = static_cast<const char*>(lf) + 1;
        lineStarts.push_back(static_cast<std::size_t>(p - begin));
    }
}

Position LineIndex::At(std::size_t offset) const {
    auto it = std::upper_bound(lineStarts.begin(), lineStarts.end(), offset);
    const auto line = static_cast<std::size_t>(it - lineStarts.begin()); // >= 1
    return {static_cast<int>(line), static_cast<int>(offset - lineStarts[line - 1] + 1)};
}

void DiagnosticList::Add(std::string file, Position at, Severity severity, std::string message) {
    items.push_back({std::move(file), at.line, at.column, severity, std::move(message)});
}

bool DiagnosticList::HasErrors() const {
    return std::any_of(items.begin(), items.end(),
                       [](const Diagnostic& d) { return d.severity == Severity::Error; });
}

std::string Format(const Diagnostic& d) {
    std::string out = d.file;
    if (d.line > 0)
        out += ":" + std::to_string(d.line) + ":" + std::to_string(d.column);
    out += d.severity == Severity::Error ? ": error: " : ": warning: ";
    out += d.message;
    return out;
}

std::size_t DiagnosticList::Count(Severity severity) const {
    return static_cast<std::size_t>(std::count_if(
        items.begin(), items.end(), [&](const Diagnostic& d) { return d.severity == severity; }));
}

void DiagnosticList::Print(std::ostream& out) const {
    for (const Diagnostic* d : Sorted())
        out << Format(*d) << '\n';
}

std::vector<const Diagnostic*> DiagnosticList::Sorted() const {
    std::vector<const Diagnostic*> sorted;
    for (const auto& d : items)
        sorted.push_back(&d);
    std::stable_sort(sorted.begin(), sorted.end(), [](const Diagnostic* a, const Diagnostic* b) {
        if (a->file != b->file)
            return a->file < b->file;
        if (a->line != b->line)
            return a->line < b->line;
        return a->column < b->column;
    });
    return sorted;
}

} // namespace QanTool

// LintFmtFuzz.cpp: qanres lint and fmt on a fuzzed resource directory (the input cut
// into its text files, key tables and icon map, written as real files). A refused fmt
// changes no byte; an accepted one writes exactly its plan and leaves no other file; fmt
// after fmt has nothing left to do; and lint after fmt reports none of the faults that fmt
// repairs.
#include "Format.h"
#include "IconMap.h"
#include "KeyTable.h"
#include "Lint.h"
#include "ScratchDirectory.h"
#include "TextFile.h"

#include <cstdlib>
#include <cstring>
#include <set>

namespace {

void Check(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "violated: %s\n", what);
        std::abort();
    }
}

// The findings that fmt's rewrites remove: the order of ids and keys (for icon map keys
// in UTF-16 order, the order fmt sorts by), the layout of the two lines the library
// skips, tags the library misreads, and a key table's byte-order mark, carriage returns,
// last line without a line feed and blank lines.
constexpr const char* kRepairedFindings[] = {
    "must ascend in byte order",
    "(wide keys must ascend in UTF-16 order",
    "the library skips the first two lines",
    "'>' must follow the id's closing quote directly",
    "self-closing element",
    "byte-order mark: it becomes part of the first key",
    "carriage return before the line feed",
    "the last line has no line feed",
    "line without a comma",
};

// What a file says, whatever its layout: the id and text of each string element (a
// self-closing one has an empty text), the key and id of each key-table line that is not
// blank, the key and file of each icon map entry. fmt may reorder them and turns a run of
// carriage returns before a line feed into the line feed outside the texts (so also in an
// id, and at the end of a key table's id); a text keeps every byte.
using Content = std::multiset<std::pair<std::string, std::string>>;

std::string LineFeedsOnly(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::size_t end = i;
        while (end < text.size() && text[end] == '\r')
            ++end;
        if (end > i && end < text.size() && text[end] == '\n') {
            i = end - 1; // a run of carriage returns before a line feed ends the line
            continue;
        }
        out += text[i];
    }
    return out;
}

std::string_view WithoutReturnsAtEnd(std::string_view id) {
    while (!id.empty() && id.back() == '\r')
        id.remove_suffix(1);
    return id;
}

Content ContentOf(const std::string& name, std::string_view bytes) {
    Content content;
    if (name == QanTool::kIconMap) {
        for (const auto& entry : QanTool::ReadIconMap(bytes).entries)
            content.emplace(LineFeedsOnly(entry.key), LineFeedsOnly(entry.file));
    } else if (name.ends_with(".csv")) {
        if (bytes.substr(0, 3) == "\xEF\xBB\xBF")
            bytes.remove_prefix(3);
        for (const auto& line : QanTool::ReadKeyLines(bytes))
            if (line.text.find_first_not_of(" \t\r\n") != std::string_view::npos)
                content.emplace(line.key, WithoutReturnsAtEnd(line.id));
    } else {
        for (const auto& element : QanTool::ReadAsMarkup(bytes).elements)
            if (element.quotedValues > 0)
                content.emplace(LineFeedsOnly(element.id), element.selfClosing ? "" : element.text);
    }
    return content;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static QanFuzz::ScratchDirectory directory;
    directory.Fill(QanFuzz::SplitInput(data, size));
    const auto& dir = directory.Path();
    const auto before = directory.Snapshot();

    (void)QanTool::LintDirectory(dir, "d");
    Check(directory.Snapshot() == before, "lint changes no file");

    const QanTool::FormatPlan plan = QanTool::PlanFormat(dir);
    if (!plan.refusal.empty()) {
        Check(plan.changes.empty(), "a refused plan holds no change");
        const QanTool::FormatResult result = QanTool::ApplyFormat(dir, plan);
        Check(result.replaced.empty(), "a refused plan replaces nothing");
        Check(directory.Snapshot() == before, "a refusal changes no byte");
        return 0;
    }
    const QanTool::FormatResult result = QanTool::ApplyFormat(dir, plan);
    Check(result.error.empty(), "fmt writes its plan");
    auto expected = before;
    for (const auto& change : plan.changes) {
        Check(before.at(change.name) == change.original, "a change starts from the file as read");
        expected[change.name] = change.bytes;
        if (ContentOf(change.name, change.bytes) != ContentOf(change.name, change.original)) {
            std::fprintf(stderr, "%s before:\n%s\nafter:\n%s\n", change.name.c_str(),
                         change.original.c_str(), change.bytes.c_str());
            Check(false, "fmt keeps every string, key and icon as written");
        }
    }
    Check(directory.Snapshot() == expected, "fmt writes exactly its plan");

    const QanTool::FormatPlan again = QanTool::PlanFormat(dir);
    if (!again.refusal.empty())
        std::fprintf(stderr, "refused: %s\n", again.refusal.c_str());
    Check(again.refusal.empty(), "fmt accepts what it wrote");
    for (const auto& change : again.changes)
        std::fprintf(stderr, "%s formatted:\n%s\nagain:\n%s\n", change.name.c_str(),
                     change.original.c_str(), change.bytes.c_str());
    Check(again.changes.empty(), "fmt twice is fmt once");

    // A finding is known by the words of its message. A file whose ids or texts hold those
    // very words (the fuzzer learns them from this check) leaves them out of it: a message
    // quoting such an id proves nothing.
    const auto written = directory.Snapshot();
    const auto inSomeFile = [&written](const char* words) {
        for (const auto& [name, bytes] : written)
            if (bytes.find(words) != std::string::npos)
                return true;
        return false;
    };
    const QanTool::DiagnosticList findings = QanTool::LintDirectory(dir, "d");
    for (const auto& finding : findings.All())
        for (const char* repaired : kRepairedFindings)
            if (finding.message.find(repaired) != std::string::npos && !inSomeFile(repaired)) {
                std::fprintf(stderr, "%s\n", QanTool::Format(finding).c_str());
                Check(false, "lint after fmt reports nothing fmt repairs");
            }
    return 0;
}

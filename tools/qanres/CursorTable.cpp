// CursorTable.cpp: encoding of the cursor table bytes; reading them out of a module file
// with the library's own PE resource reader, and reading the table with its own reader.
#include "CursorTable.h"

#include "Files.h"

#include "base/Unicode.h"

#include "Bytes.h"
#include "CursorTableWriter.h"

#include "platform/PeResources.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <iterator>
#include <span>
#include <stdexcept>

namespace QanTool {
namespace {

// The library's names are wchar_t: UTF-16 on Windows, code points elsewhere.
std::u16string WideToUtf16(const QanStringT<wchar_t>& name) {
    std::u16string out;
    for (const wchar_t unit : name) {
        const auto c = static_cast<char32_t>(unit);
        if (c >= 0x10000) {
            out.push_back(static_cast<char16_t>(Framework::Unicode::HighSurrogateOf(c)));
            out.push_back(static_cast<char16_t>(Framework::Unicode::LowSurrogateOf(c)));
        } else {
            out.push_back(static_cast<char16_t>(c));
        }
    }
    return out;
}

std::string_view Trim(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t'))
        s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r'))
        s.remove_suffix(1);
    return s;
}

} // namespace

std::vector<CursorEntry> ParseCursorList(std::string_view text,
                                         std::vector<CursorListProblem>& problems) {
    std::vector<CursorEntry> entries;
    int lineNumber = 0;
    while (!text.empty()) {
        ++lineNumber;
        const std::size_t lf = text.find('\n');
        std::string_view line = Trim(text.substr(0, lf));
        text.remove_prefix(lf == std::string_view::npos ? text.size() : lf + 1);
        if (line.empty() || line.front() == '#')
            continue;
        const std::size_t split = line.find_last_of(" \t");
        if (split == std::string_view::npos) {
            problems.push_back({lineNumber, "expected a name and an id"});
            continue;
        }
        const std::string_view name = Trim(line.substr(0, split));
        const std::string_view number = line.substr(split + 1);
        std::uint32_t id = 0;
        auto [end, ec] = std::from_chars(number.data(), number.data() + number.size(), id);
        if (ec != std::errc() || end != number.data() + number.size()) {
            problems.push_back({lineNumber, "the id '" + std::string(number) +
                                                "' is not an unsigned 32-bit number"});
            continue;
        }
        if (name.empty()) {
            problems.push_back({lineNumber, "the name is empty"});
            continue;
        }
        if (Framework::Unicode::FindInvalidUtf8(name) != std::string_view::npos) {
            problems.push_back({lineNumber, "the name is not valid UTF-8"});
            continue;
        }
        entries.push_back({ToUtf16(name), id, lineNumber});
    }
    return entries;
}

std::string EncodeCursorTable(std::vector<CursorEntry> entries) {
    // The library's look-up is a binary search by UTF-16 code unit; equal names keep
    // their list order, so the first listed is the one found.
    std::stable_sort(entries.begin(), entries.end(),
                     [](const CursorEntry& a, const CursorEntry& b) { return a.name < b.name; });
    std::vector<QanTool::CursorTable::Entry> table;
    for (const auto& e : entries)
        table.push_back({e.name, e.id});
    const auto bytes = QanTool::CursorTable::Write(table);
    return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

CursorTableReport ReadCursorTableBytes(std::string_view bytes) {
    const auto span = std::as_bytes(std::span<const char>(bytes.data(), bytes.size()));
    CursorTableReport report;
    try {
        report.table = Framework::Internal::ReadCursorTable(span);
    } catch (const std::length_error&) {
        // The library's deliberate refusal of a negative count.
        report.negativeCount = Framework::Internal::ReadCursorCount(span);
        return report;
    }
    for (const auto& entry : report.table.entries)
        report.names.push_back(WideToUtf16(entry.name));
    return report;
}

std::string StopMessage(const Framework::Internal::CursorTable& table) {
    using Stop = Framework::Internal::CursorTableStop;
    const std::string at = " at byte " + std::to_string(table.stopOffset);
    const std::string entry = std::to_string(StopEntry(table));
    switch (table.stop) {
    case Stop::Complete:
        return "complete";
    case Stop::TrailingBytes:
        return "bytes after the last cursor entry" + at;
    case Stop::NoCount:
        return "the count is cut short";
    case Stop::NoNameLength:
        return "the name length of entry " + entry + " is cut short" + at;
    case Stop::NameTooLong:
        return "the name of entry " + entry + " runs past the end of the data" + at;
    case Stop::NoId:
        return "the id of entry " + entry + " is cut short" + at;
    }
    return "unknown";
}

std::string WhatIsRead(const Framework::Internal::CursorTable& table) {
    std::string read = "the library reads " + std::to_string(table.entries.size()) + " of " +
                       std::to_string(table.Size()) + " entries";
    if (table.stop == Framework::Internal::CursorTableStop::NoId)
        read += ", entry " + std::to_string(table.entries.size()) + " with id 0";
    if (table.blankCount > 0)
        read +=
            ", and gives the other " + std::to_string(table.blankCount) + " an empty name and id 0";
    return read;
}

int StopEntry(const Framework::Internal::CursorTable& table) {
    using Stop = Framework::Internal::CursorTableStop;
    std::size_t entry = table.entries.size();
    if (table.stop == Stop::NoNameLength || table.stop == Stop::NameTooLong)
        ++entry; // the one whose name failed is not among the entries
    return static_cast<int>(std::max<std::size_t>(entry, 1));
}

int DumpCursorTable(std::string_view bytes, std::ostream& out, std::ostream& err) {
    const CursorTableReport report = ReadCursorTableBytes(bytes);
    if (report.negativeCount) {
        err << "qanres: negative cursor count " << *report.negativeCount
            << ": the library fails to start\n";
        return 1;
    }
    const auto& table = report.table;
    out << "count: " << table.Size() << '\n';
    for (std::size_t i = 0; i < table.entries.size(); ++i)
        out << FromUtf16(report.names[i]) << '\t' << table.entries[i].id << '\n';
    using Stop = Framework::Internal::CursorTableStop;
    if (table.stop == Stop::TrailingBytes)
        err << "qanres: " << StopMessage(table) << " are never read\n";
    if (table.stop != Stop::Complete && table.stop != Stop::TrailingBytes &&
        !(table.stop == Stop::NoCount && bytes.empty())) {
        err << "qanres: the table ends early: " << StopMessage(table) << "; " << WhatIsRead(table)
            << '\n';
        return 1;
    }
    return table.entries.empty() ? 1 : 0;
}

std::optional<std::string> ReadCursorTableFile(const std::string& path) {
    auto file = ReadWholeFile(path);
    if (!file)
        return std::nullopt;
    if (!Framework::Platform::IsPeImage(
            std::as_bytes(std::span<const char>(file->data(), file->size()))))
        return file;
    return ReadCursorResource(path);
}

std::optional<std::string> ReadCursorResource(const std::string& path) {
    const auto whole = ReadWholeFile(path);
    if (!whole)
        return std::nullopt;
    const std::string& file = *whole;
    const auto bytes = std::as_bytes(std::span<const char>(file.data(), file.size()));
    if (!Framework::Platform::IsPeImage(bytes))
        return std::nullopt;
    const auto data = Framework::Platform::FindPeRawData(bytes, 2);
    if (data.empty())
        return std::nullopt;
    return std::string(reinterpret_cast<const char*>(data.data()), data.size());
}

} // namespace QanTool

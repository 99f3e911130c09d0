// CursorTable.cpp: encoding and decoding of the cursor table bytes, and reading them out
// of a module file with the library's own PE resource reader.
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

namespace QanTool {
namespace {

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

DecodedCursorTable DecodeCursorTable(std::string_view bytes) {
    using QanTool::CursorTable::ReadStatus;
    const auto read = QanTool::CursorTable::Read(
        std::as_bytes(std::span<const char>(bytes.data(), bytes.size())));
    DecodedCursorTable table;
    table.count = read.storedCount;
    for (const auto& e : read.entries)
        table.entries.push_back({e.name, e.id, 0});
    table.truncated = read.status == ReadStatus::Truncated;
    table.trailingBytes = read.status == ReadStatus::TrailingBytes;
    // The strict read drops an entry whose id is cut off; the library keeps its name with
    // id 0, so that name is looked up like any other.
    if (table.truncated && table.count > 0 &&
        table.entries.size() < static_cast<std::size_t>(table.count)) {
        std::size_t at = 4;
        for (const auto& e : table.entries)
            at += 8 + 2 * e.name.size();
        auto byte = [&](std::size_t i) {
            return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i]));
        };
        if (at + 4 <= bytes.size()) {
            const std::uint32_t units =
                byte(at) | byte(at + 1) << 8 | byte(at + 2) << 16 | byte(at + 3) << 24;
            at += 4;
            if ((bytes.size() - at) / 2 >= units) {
                std::u16string name;
                for (std::uint32_t i = 0; i < units; ++i, at += 2)
                    name += static_cast<char16_t>(byte(at) | byte(at + 1) << 8);
                table.entries.push_back({std::move(name), 0, 0});
                table.lastIdMissing = true;
            }
        }
    }
    return table;
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

// CursorTable.cpp: encoding and decoding of the cursor table bytes, and reading them out
// of a module file with the library's own PE resource reader.
#include "CursorTable.h"

#include "Bytes.h"

#include "platform/PeResources.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <iterator>
#include <span>

namespace QanTool {
namespace {

void PutU32(std::string& out, std::uint32_t v) {
    for (int i = 0; i < 4; ++i)
        out.push_back(static_cast<char>((v >> (8 * i)) & 0xFF));
}

bool GetU32(std::string_view bytes, std::size_t& pos, std::uint32_t& v) {
    if (bytes.size() - pos < 4)
        return false;
    v = 0;
    for (int i = 0; i < 4; ++i)
        v |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[pos + i])) << (8 * i);
    pos += 4;
    return true;
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
        if (FindInvalidUtf8(name) != std::string_view::npos) {
            problems.push_back({lineNumber, "the name is not valid UTF-8"});
            continue;
        }
        entries.push_back({ToUtf16(name), id, lineNumber});
    }
    return entries;
}

std::string EncodeCursorTable(std::vector<CursorEntry> entries) {
    std::stable_sort(entries.begin(), entries.end(),
                     [](const CursorEntry& a, const CursorEntry& b) { return a.name < b.name; });
    std::string out;
    PutU32(out, static_cast<std::uint32_t>(entries.size()));
    for (const auto& e : entries) {
        PutU32(out, static_cast<std::uint32_t>(e.name.size()));
        for (char16_t unit : e.name) {
            out.push_back(static_cast<char>(unit & 0xFF));
            out.push_back(static_cast<char>(unit >> 8));
        }
        PutU32(out, e.id);
    }
    return out;
}

DecodedCursorTable DecodeCursorTable(std::string_view bytes) {
    DecodedCursorTable table;
    std::size_t pos = 0;
    std::uint32_t raw = 0;
    if (!GetU32(bytes, pos, raw)) {
        table.truncated = true;
        return table;
    }
    table.count = static_cast<std::int32_t>(raw);
    for (std::int32_t i = 0; i < table.count; ++i) {
        std::uint32_t units = 0;
        if (!GetU32(bytes, pos, units) || (bytes.size() - pos) / 2 < units) {
            table.truncated = true;
            break;
        }
        CursorEntry e;
        for (std::uint32_t u = 0; u < units; ++u, pos += 2)
            e.name.push_back(
                static_cast<char16_t>(static_cast<unsigned char>(bytes[pos]) |
                                      (static_cast<unsigned char>(bytes[pos + 1]) << 8)));
        if (!GetU32(bytes, pos, e.id)) {
            table.truncated = true;
            break;
        }
        table.entries.push_back(std::move(e));
    }
    return table;
}

std::optional<std::string> ReadCursorResource(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return std::nullopt;
    const std::string file((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    const auto bytes = std::as_bytes(std::span<const char>(file.data(), file.size()));
    if (!Framework::Platform::IsPeImage(bytes))
        return std::nullopt;
    const auto data = Framework::Platform::FindPeRawData(bytes, 2);
    if (data.empty())
        return std::nullopt;
    return std::string(reinterpret_cast<const char*>(data.data()), data.size());
}

} // namespace QanTool

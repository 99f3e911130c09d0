// CursorTableWriter.cpp: the cursor table archive written byte by byte, so that the
// result is the same little-endian form on every host.
#include "CursorTableWriter.h"

#include <cstdio>

namespace QanTool::CursorTable {
namespace {

void PutU32(std::vector<std::byte>& out, std::uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8)
        out.push_back(static_cast<std::byte>(value >> shift & 0xFF));
}

} // namespace

std::vector<std::byte> Write(std::span<const Entry> entries) {
    std::vector<std::byte> out;
    PutU32(out, static_cast<std::uint32_t>(entries.size()));
    for (const Entry& entry : entries) {
        PutU32(out, static_cast<std::uint32_t>(entry.name.size()));
        for (const char16_t unit : entry.name) {
            out.push_back(static_cast<std::byte>(unit & 0xFF));
            out.push_back(static_cast<std::byte>(unit >> 8));
        }
        PutU32(out, entry.id);
    }
    return out;
}

std::string WriteRcScript(std::span<const Entry> entries, int resourceId) {
    std::string rc = "// The cursor table: a count, then per cursor its name and resource id.\n";
    rc += std::to_string(resourceId) + " RCDATA\n{\n    " + std::to_string(entries.size()) + "L";
    char word[16];
    for (const Entry& entry : entries) {
        rc += ",\n    " + std::to_string(entry.name.size()) + "L";
        for (const char16_t unit : entry.name) {
            std::snprintf(word, sizeof word, ", 0x%04X", static_cast<unsigned>(unit));
            rc += word;
        }
        rc += ", " + std::to_string(entry.id) + "L";
    }
    rc += "\n}\n";
    return rc;
}

std::string WriteRcScriptForBinary(std::string_view binaryPath, int resourceId) {
    std::string rc = std::to_string(resourceId) + " RCDATA \"";
    for (const char c : binaryPath) {
        if (c == '\\' || c == '"')
            rc += '\\';
        rc += c;
    }
    rc += "\"\n";
    return rc;
}

} // namespace QanTool::CursorTable

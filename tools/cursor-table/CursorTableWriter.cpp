// CursorTableWriter.cpp: the cursor table archive written and read byte by byte, so that
// the result is the same little-endian form on every host.
#include "CursorTableWriter.h"

#include <cstdio>
#include <optional>

namespace QanTool::CursorTable {
namespace {

void PutU32(std::vector<std::byte>& out, std::uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8)
        out.push_back(static_cast<std::byte>(value >> shift & 0xFF));
}

class Cursor {
public:
    explicit Cursor(std::span<const std::byte> bytes) : bytes(bytes) {}
    std::size_t Left() const { return bytes.size() - position; }
    std::optional<std::uint32_t> U32() {
        if (Left() < 4)
            return std::nullopt;
        std::uint32_t value = 0;
        for (int i = 3; i >= 0; --i)
            value = value << 8 | static_cast<std::uint32_t>(bytes[position + i]);
        position += 4;
        return value;
    }
    std::optional<std::u16string> Units(std::uint32_t count) {
        if (Left() / 2 < count)
            return std::nullopt;
        std::u16string text(count, u'\0');
        for (auto& unit : text) {
            unit = static_cast<char16_t>(static_cast<unsigned>(bytes[position]) |
                                         static_cast<unsigned>(bytes[position + 1]) << 8);
            position += 2;
        }
        return text;
    }

private:
    std::span<const std::byte> bytes;
    std::size_t position = 0;
};

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

ReadResult Read(std::span<const std::byte> bytes) {
    ReadResult result;
    Cursor cursor(bytes);
    const auto count = cursor.U32();
    if (!count) {
        // No count at all: the library reads this as an empty table.
        result.status = bytes.empty() ? ReadStatus::Complete : ReadStatus::Truncated;
        return result;
    }
    result.storedCount = static_cast<std::int32_t>(*count);
    if (result.storedCount < 0) {
        result.status = ReadStatus::NegativeCount;
        return result;
    }
    for (std::int32_t i = 0; i < result.storedCount; ++i) {
        const auto length = cursor.U32();
        const auto name = length ? cursor.Units(*length) : std::nullopt;
        const auto id = name ? cursor.U32() : std::nullopt;
        if (!id) {
            result.status = ReadStatus::Truncated;
            return result;
        }
        result.entries.push_back({*name, *id});
    }
    result.status = cursor.Left() == 0 ? ReadStatus::Complete : ReadStatus::TrailingBytes;
    return result;
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

// CursorTableWriter.cpp: the cursor table archive written and read byte by byte, so that
// the result is the same little-endian form on every host.
#include "CursorTableWriter.h"

#include <algorithm>
#include <cstdio>
#include <optional>

namespace QanTools::CursorTable {
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

// Code points of UTF-16 text, unpaired surrogates as themselves.
std::u32string CodePoints(std::u16string_view text) {
    std::u32string points;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char32_t unit = text[i];
        if (unit >= 0xD800 && unit <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
            text[i + 1] <= 0xDFFF) {
            points.push_back(0x10000 + ((unit - 0xD800) << 10) + (text[i + 1] - 0xDC00));
            ++i;
        } else {
            points.push_back(unit);
        }
    }
    return points;
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

bool IsSorted(std::span<const Entry> entries) {
    for (std::size_t i = 1; i < entries.size(); ++i) {
        const auto& before = entries[i - 1].name;
        const auto& after = entries[i].name;
        if (after < before || CodePoints(after) < CodePoints(before))
            return false;
    }
    return true;
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

std::u16string Utf16FromUtf8(std::string_view text) {
    std::u16string out;
    std::size_t i = 0;
    auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    while (i < text.size()) {
        const unsigned char lead = byte(i);
        std::size_t length = lead < 0x80                    ? 1
                             : lead >= 0xC2 && lead <= 0xDF ? 2
                             : lead >= 0xE0 && lead <= 0xEF ? 3
                             : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                            : 0;
        char32_t point = length == 1   ? lead
                         : length == 2 ? lead & 0x1F
                         : length == 3 ? lead & 0x0F
                                       : lead & 0x07;
        std::size_t taken = 1;
        bool valid = length != 0;
        for (; valid && taken < length; ++taken) {
            if (i + taken >= text.size() || (byte(i + taken) & 0xC0) != 0x80) {
                valid = false;
                break;
            }
            const unsigned char next = byte(i + taken);
            if (taken == 1 && ((lead == 0xE0 && next < 0xA0) || (lead == 0xED && next > 0x9F) ||
                               (lead == 0xF0 && next < 0x90) || (lead == 0xF4 && next > 0x8F))) {
                valid = false;
                break;
            }
            point = point << 6 | (next & 0x3F);
        }
        if (!valid) {
            out.push_back(u'\uFFFD');
            i += std::max<std::size_t>(taken, 1); // one replacement per maximal subpart
            continue;
        }
        i += length;
        if (point >= 0x10000) {
            out.push_back(static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10)));
            out.push_back(static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF)));
        } else {
            out.push_back(static_cast<char16_t>(point));
        }
    }
    return out;
}

std::string Utf8FromUtf16(std::u16string_view text) {
    std::string out;
    for (const char32_t point : CodePoints(text)) {
        const char32_t c = point >= 0xD800 && point <= 0xDFFF ? 0xFFFD : point;
        if (c < 0x80) {
            out.push_back(static_cast<char>(c));
        } else if (c < 0x800) {
            out.push_back(static_cast<char>(0xC0 | c >> 6));
            out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        } else if (c < 0x10000) {
            out.push_back(static_cast<char>(0xE0 | c >> 12));
            out.push_back(static_cast<char>(0x80 | (c >> 6 & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        } else {
            out.push_back(static_cast<char>(0xF0 | c >> 18));
            out.push_back(static_cast<char>(0x80 | (c >> 12 & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (c >> 6 & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        }
    }
    return out;
}

} // namespace QanTools::CursorTable

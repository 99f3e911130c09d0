// CursorTable.cpp: the archive reader of the cursor table. Names are UTF-16LE with a
// 32-bit unit count and no terminator; a read that would pass the end fails.
#include "icons/CursorTable.h"

#include "base/Unicode.h"

#include <algorithm>
#include <stdexcept>

namespace Framework::Internal {
namespace {

class ArchiveReader {
public:
    explicit ArchiveReader(std::span<const std::byte> bytes) : bytes(bytes) {}

    // The next byte to read; after a failed read, the first byte of that read.
    std::size_t Position() const { return position; }

    std::optional<std::uint32_t> ReadU32() {
        if (bytes.size() - position < 4)
            return std::nullopt;
        std::uint32_t value = 0;
        for (int i = 3; i >= 0; --i)
            value = value << 8 | Byte(position + static_cast<std::size_t>(i));
        position += 4;
        return value;
    }

    // A length that runs past the data fails before anything is allocated.
    std::optional<QanStringT<wchar_t>> ReadUtf16() {
        const std::size_t start = position;
        const auto units = ReadU32();
        if (!units)
            return std::nullopt;
        if ((bytes.size() - position) / 2 < *units) {
            position = start;
            return std::nullopt;
        }
        QanStringT<wchar_t> text;
        text.reserve(*units);
        const std::size_t end = position + std::size_t{*units} * 2;
        while (position < end) {
            const char32_t unit = Unit(position);
            position += 2;
            if constexpr (sizeof(wchar_t) == 2) {
                text.push_back(static_cast<wchar_t>(unit));
                continue;
            }
            // wchar_t holds whole code points here: pair surrogates up, and let an
            // unpaired one stand as U+FFFD.
            if (Unicode::IsHighSurrogate(unit) && position < end) {
                const char32_t low = Unit(position);
                if (Unicode::IsLowSurrogate(low)) {
                    position += 2;
                    text.push_back(static_cast<wchar_t>(Unicode::CombineSurrogates(unit, low)));
                    continue;
                }
            }
            text.push_back(static_cast<wchar_t>(
                Unicode::IsSurrogate(unit) ? Unicode::kReplacementCharacter : unit));
        }
        return text;
    }

private:
    std::uint32_t Byte(std::size_t at) const { return static_cast<std::uint32_t>(bytes[at]); }
    char32_t Unit(std::size_t at) const {
        return static_cast<char32_t>(Byte(at) | Byte(at + 1) << 8);
    }

    std::span<const std::byte> bytes;
    std::size_t position = 0;
};

} // namespace

std::optional<std::int32_t> ReadCursorCount(std::span<const std::byte> bytes) {
    const auto stored = ArchiveReader(bytes).ReadU32();
    if (!stored)
        return std::nullopt;
    return static_cast<std::int32_t>(*stored);
}

CursorTable ReadCursorTable(std::span<const std::byte> bytes) {
    ArchiveReader archive(bytes);
    // The count starts at 0 so that a failed read leaves an empty table.
    std::int32_t count = 0;
    const auto stored = archive.ReadU32();
    if (stored)
        count = static_cast<std::int32_t>(*stored);

    // Sizing the table to a negative count, widened with its sign, is the standard
    // vector's length error; it is raised here without attempting the allocation, and
    // is meant to leave the service's construction.
    const auto wanted = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(count));
    if (wanted > std::vector<CursorEntry>().max_size())
        throw std::length_error("vector too long");

    CursorTable table;
    if (!stored) {
        table.stop = CursorTableStop::NoCount;
        return table;
    }
    table.blankCount = wanted;
    // Each entry read needs at least eight bytes, so the data bounds what is reserved.
    table.entries.reserve(std::min<std::size_t>(wanted, bytes.size() / 8));
    while (table.blankCount > 0) {
        const std::size_t nameAt = archive.Position();
        auto name = archive.ReadUtf16();
        if (!name) {
            table.stop = bytes.size() - nameAt < 4 ? CursorTableStop::NoNameLength
                                                   : CursorTableStop::NameTooLong;
            table.stopOffset = nameAt;
            return table;
        }
        --table.blankCount;
        CursorEntry& entry = table.entries.emplace_back();
        entry.name = std::move(*name);
        const std::size_t idAt = archive.Position();
        const auto id = archive.ReadU32();
        if (!id) {
            // The name stays, the id stays 0, and no further read is made.
            table.stop = CursorTableStop::NoId;
            table.stopOffset = idAt;
            return table;
        }
        entry.id = *id;
    }
    if (archive.Position() < bytes.size()) {
        table.stop = CursorTableStop::TrailingBytes;
        table.stopOffset = archive.Position();
    }
    return table;
}

} // namespace Framework::Internal

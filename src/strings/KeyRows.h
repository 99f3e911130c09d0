// KeyRows.h: a key table as the string collection keeps it: the file's bytes and, for each
// row, where its key and its id begin in them. A row takes 8 bytes instead of two views' 32,
// and the key tables hold about four rows for every text row.
#pragma once

#include <framework/QanString.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace Framework::Internal {

class KeyRows {
public:
    // Offsets in bytes; a file read whole is below 4 GiB, so they fit 32 bits. A row's key
    // runs from its keyOffset to the comma before its idOffset, and its id from there to
    // the line feed before the next row's keyOffset: the scan starts each key right after
    // the line feed that ends the row before, so the lengths need not be kept.
    struct Row {
        std::uint32_t keyOffset;
        std::uint32_t idOffset;
    };

    KeyRows() = default;
    KeyRows(const KeyRows&) = delete;
    KeyRows& operator=(const KeyRows&) = delete;
    KeyRows(KeyRows&&) noexcept = default;
    KeyRows& operator=(KeyRows&&) noexcept = default;

    std::size_t size() const { return rows.empty() ? 0 : rows.size() - 1; }
    // The key and the id of a row, as views into the bytes. Example: rows.Key(0) == "CAP_OPEN".
    QanStringViewT<char> Key(std::size_t row) const {
        return {bytes.get() + rows[row].keyOffset, rows[row].idOffset - 1 - rows[row].keyOffset};
    }
    QanStringViewT<char> Id(std::size_t row) const {
        return {bytes.get() + rows[row].idOffset, rows[row + 1].keyOffset - 1 - rows[row].idOffset};
    }
    const char* Bytes() const { return bytes.get(); }
    std::uint32_t KeyOffset(std::size_t row) const { return rows[row].keyOffset; }
    const void* RowAddress(std::size_t row) const { return &rows[row]; }

    // One per row, and after the last row one more whose keyOffset is one past the last
    // row's line feed (none when there are no rows).
    std::vector<Row> rows;
    std::unique_ptr<char[]> bytes;
};

} // namespace Framework::Internal

// KeyRows.h: a key table as the string collection keeps it: the file's bytes and, for each
// row, where its key and its id lie in them. A row takes 16 bytes instead of two views' 32,
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
    // Offsets and lengths in bytes; a file read whole is below 4 GiB, so they fit 32 bits.
    struct Row {
        std::uint32_t keyOffset;
        std::uint32_t keyLength;
        std::uint32_t idOffset;
        std::uint32_t idLength;
    };

    KeyRows() = default;
    KeyRows(const KeyRows&) = delete;
    KeyRows& operator=(const KeyRows&) = delete;
    KeyRows(KeyRows&&) noexcept = default;
    KeyRows& operator=(KeyRows&&) noexcept = default;

    std::size_t size() const { return rows.size(); }
    // The key and the id of a row, as views into the bytes. Example: rows.Key(0) == "CAP_OPEN".
    QanStringViewT<char> Key(std::size_t row) const {
        return {bytes.get() + rows[row].keyOffset, rows[row].keyLength};
    }
    QanStringViewT<char> Id(std::size_t row) const {
        return {bytes.get() + rows[row].idOffset, rows[row].idLength};
    }
    const char* Bytes() const { return bytes.get(); }
    const Row& At(std::size_t row) const { return rows[row]; }
    const void* RowAddress(std::size_t row) const { return &rows[row]; }

    std::vector<Row> rows;
    std::unique_ptr<char[]> bytes;
};

} // namespace Framework::Internal

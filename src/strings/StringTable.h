// StringTable.h: rows of byte views into one whole-file buffer that the table owns, used
// for the string text files (id to text) and the key tables (resource key to id).
#pragma once

#include <framework/QanString.h>

#include <memory>
#include <vector>

namespace Framework::Internal {

// One row: both views are byte ranges of the file as read, never copied or trimmed.
struct StringTableEntry {
    QanStringViewT<char> key;
    QanStringViewT<char> text;
};

// Key order: ordinal byte comparison (memcmp over the common length, then the shorter
// first). The files that are loaded unsorted must be written in this order.
inline int CompareKeys(QanStringViewT<char> a, QanStringViewT<char> b) noexcept {
    return a.compare(b);
}

struct EntryKeyLess {
    bool operator()(const StringTableEntry& a, const StringTableEntry& b) const noexcept {
        return CompareKeys(a.key, b.key) < 0;
    }
    bool operator()(const StringTableEntry& a, QanStringViewT<char> key) const noexcept {
        return CompareKeys(a.key, key) < 0;
    }
    bool operator()(QanStringViewT<char> key, const StringTableEntry& b) const noexcept {
        return CompareKeys(key, b.key) < 0;
    }
};

// Rows first, buffer second: destruction releases the buffer, then the rows. The views of
// entries point into buffer (texts laid over by overrides point into the override table's
// buffer), so a table is moved, never copied.
class StringTable {
public:
    StringTable() = default;
    StringTable(const StringTable&) = delete;
    StringTable& operator=(const StringTable&) = delete;
    StringTable(StringTable&&) noexcept = default;
    StringTable& operator=(StringTable&&) noexcept = default;
    ~StringTable() = default;

    std::vector<StringTableEntry> entries;
    std::unique_ptr<char[]> buffer;
    std::size_t size = 0; // of the bytes in buffer
};

} // namespace Framework::Internal

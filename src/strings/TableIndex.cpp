// TableIndex.cpp: the lower bound's steps replayed over node values. A step of the lower
// bound on (first, length) compares the row first + length / 2 and goes on with its right
// part when that row's key is less than the wanted one, its left part otherwise.
#include "strings/TableIndex.h"

#include <algorithm>

namespace Framework::Internal {
namespace {

// Up to eight bytes of key from offset, big-endian, zero-filled: unequal values order as
// the keys do (a key that ends first has a zero where the other has a non-zero byte).
std::uint64_t KeyBits(QanStringViewT<char> key, std::size_t offset) noexcept {
    std::uint64_t bits = 0;
    const std::size_t available = offset < key.size() ? key.size() - offset : 0;
    const std::size_t take = std::min<std::size_t>(available, 8);
    for (std::size_t i = 0; i < take; ++i)
        bits |= static_cast<std::uint64_t>(static_cast<unsigned char>(key[offset + i]))
                << (56 - 8 * i);
    return bits;
}

// Rows left to the plain search below the index; a few rows share cache lines.
constexpr std::size_t kRowsPerLeaf = 16;
constexpr unsigned kMaxLevels = 20;

// The row each node compares, in-order so that the rows are visited in ascending order.
void CollectProbes(std::vector<std::uint32_t>& probes, std::size_t node, unsigned level,
                   unsigned levels, std::size_t first, std::size_t length) {
    if (level == levels || length == 0)
        return;
    const std::size_t half = length / 2;
    CollectProbes(probes, 2 * node, level + 1, levels, first, half);
    probes[node] = static_cast<std::uint32_t>(first + half);
    CollectProbes(probes, 2 * node + 1, level + 1, levels, first + half + 1, length - half - 1);
}

} // namespace

TableIndex::TableIndex(const std::vector<StringTableEntry>& rows) {
    // Row numbers are kept in 32 bits: a file of at most 4 GiB - 1 bytes holds fewer rows.
    if (rows.size() < 2 * kRowsPerLeaf || rows.size() > UINT32_MAX)
        return;
    while (levels < kMaxLevels && (rows.size() >> levels) > kRowsPerLeaf)
        ++levels;
    const std::size_t slots = std::size_t{1} << levels;
    constexpr std::uint32_t kNone = UINT32_MAX;
    std::vector<std::uint32_t> probes(slots, kNone);
    CollectProbes(probes, 1, 0, levels, 0, rows.size());

    bool first = true;
    for (std::size_t node = 1; node < slots; ++node) {
        if (probes[node] == kNone)
            continue;
        const QanStringViewT<char> key = rows[probes[node]].key;
        if (first) {
            prefix.assign(key.data(), key.size());
            first = false;
        } else {
            const auto differ = std::mismatch(prefix.begin(), prefix.end(), key.begin(), key.end());
            prefix.resize(static_cast<std::size_t>(differ.first - prefix.begin()));
        }
    }
    nodes.assign(slots, 0);
    for (std::size_t node = 1; node < slots; ++node)
        if (probes[node] != kNone)
            nodes[node] = KeyBits(rows[probes[node]].key, prefix.size());
}

std::optional<std::size_t> TableIndex::Find(const std::vector<StringTableEntry>& rows,
                                            QanStringViewT<char> key) const {
    std::size_t first = 0;
    std::size_t length = rows.size();
    if (levels > 0) {
        // A key without the shared prefix compares alike with every node: a value below or
        // above all of them sends it one way, and an equal value falls back to the bytes.
        std::uint64_t wanted;
        const auto differ = std::mismatch(prefix.begin(), prefix.end(), key.begin(), key.end());
        if (differ.first == prefix.end())
            wanted = KeyBits(key, prefix.size());
        else if (differ.second == key.end() || static_cast<unsigned char>(*differ.second) <
                                                   static_cast<unsigned char>(*differ.first))
            wanted = 0;
        else
            wanted = UINT64_MAX;
        std::size_t node = 1;
        for (unsigned level = 0; level < levels && length > 0; ++level) {
            const std::size_t half = length / 2;
            const std::uint64_t bits = nodes[node];
            const bool rowLess =
                bits != wanted ? bits < wanted : CompareKeys(rows[first + half].key, key) < 0;
            if (rowLess) {
                first += half + 1;
                length -= half + 1;
                node = 2 * node + 1;
            } else {
                length = half;
                node = 2 * node;
            }
        }
    }
    const auto begin = rows.begin() + static_cast<std::ptrdiff_t>(first);
    const auto found =
        std::lower_bound(begin, begin + static_cast<std::ptrdiff_t>(length), key, EntryKeyLess{});
    if (found == rows.end() || CompareKeys(found->key, key) != 0)
        return std::nullopt;
    return static_cast<std::size_t>(found - rows.begin());
}

} // namespace Framework::Internal

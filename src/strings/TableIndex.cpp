// TableIndex.cpp: the lower bound's steps replayed over node values. A step of the lower
// bound on (first, length) compares the row first + length / 2 and goes on with its right
// part when that row's key is less than the wanted one, its left part otherwise.
#include "strings/TableIndex.h"

#include "base/Prefetch.h"

#include <algorithm>
#include <bit>

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
constexpr unsigned kMaxLevels = 22;
constexpr std::uint32_t kNone = UINT32_MAX;

struct Probe {
    std::uint32_t row = kNone;
    std::uint32_t lower = kNone; // the bounding ancestors' rows: the last node passed on
    std::uint32_t upper = kNone; // the right, and the last passed on the left
};

// The row each node compares and its bounds, and the nodes in-order (ascending rows).
void CollectProbes(std::vector<Probe>& probes, std::vector<std::uint32_t>& inOrder,
                   std::size_t node, unsigned level, unsigned levels, std::size_t first,
                   std::size_t length, std::uint32_t lower, std::uint32_t upper) {
    if (level == levels || length == 0)
        return;
    const std::size_t half = length / 2;
    const auto row = static_cast<std::uint32_t>(first + half);
    CollectProbes(probes, inOrder, 2 * node, level + 1, levels, first, half, lower, row);
    probes[node] = {row, lower, upper};
    inOrder.push_back(static_cast<std::uint32_t>(node));
    CollectProbes(probes, inOrder, 2 * node + 1, level + 1, levels, first + half + 1,
                  length - half - 1, row, upper);
}

std::size_t CommonPrefix(QanStringViewT<char> a, QanStringViewT<char> b) {
    return static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first -
                                    a.begin());
}

} // namespace

template <class Rows>
TableIndex::TableIndex(const Rows& rows) {
    // Row numbers are kept in 32 bits: a file of at most 4 GiB - 1 bytes holds fewer rows.
    if (rows.size() < 2 * kRowsPerLeaf || rows.size() >= kNone)
        return;
    while (levels < kMaxLevels && (rows.size() >> levels) > kRowsPerLeaf)
        ++levels;
    const std::size_t slots = std::size_t{1} << levels;
    std::vector<Probe> probes(slots);
    std::vector<std::uint32_t> inOrder;
    inOrder.reserve(slots);
    CollectProbes(probes, inOrder, 1, 0, levels, 0, rows.size(), kNone, kNone);

    // One pass over the nodes in ascending row order (the in-order of the tree) fills them
    // as for ordered node keys, checks that order against the key before, and finds the
    // prefix that all node keys share. A node's bounds are ancestors on the current path:
    // the lower one was passed already, and the upper one is shared by the nodes before it
    // in its left subtree, so their keys stay in cache.
    nodes.assign(slots, Node{0, 0, 0, 0, 0});
    ordered = true;
    QanStringViewT<char> previous;
    // The rows are far apart, so they and then their keys (and their upper bounds') are
    // asked for some nodes ahead.
    constexpr std::size_t kRowsAhead = 16, kKeysAhead = 8;
    for (std::size_t i = 0; i < inOrder.size(); ++i) {
        if (i + kRowsAhead < inOrder.size()) {
            const Probe& ahead = probes[inOrder[i + kRowsAhead]];
            Prefetch(rows.RowAddress(ahead.row));
            if (ahead.upper != kNone)
                Prefetch(rows.RowAddress(ahead.upper));
        }
        if (i + kKeysAhead < inOrder.size()) {
            const Probe& ahead = probes[inOrder[i + kKeysAhead]];
            Prefetch(rows.Key(ahead.row).data());
            if (ahead.upper != kNone)
                Prefetch(rows.Key(ahead.upper).data());
        }
        const Probe& probe = probes[inOrder[i]];
        const QanStringViewT<char> key = rows.Key(probe.row);
        if (i == 0) {
            prefix.assign(key.data(), key.size());
        } else {
            if (CompareKeys(previous, key) > 0)
                ordered = false;
            prefix.resize(CommonPrefix(prefix, key));
        }
        previous = key;
        Node& at = nodes[inOrder[i]];
        at.length = static_cast<std::uint32_t>(key.size());
        if (probe.lower != kNone)
            at.lowCommon = static_cast<std::uint32_t>(CommonPrefix(rows.Key(probe.lower), key));
        if (probe.upper != kNone)
            at.highCommon = static_cast<std::uint32_t>(CommonPrefix(key, rows.Key(probe.upper)));
        at.lowBits = KeyBits(key, at.lowCommon);
        at.highBits = KeyBits(key, at.highCommon);
    }
    if (ordered)
        return;
    // Node keys out of order (an unsorted table): every node keeps the eight bytes after
    // the shared prefix instead.
    for (const std::uint32_t node : inOrder) {
        const QanStringViewT<char> key = rows.Key(probes[node].row);
        nodes[node] =
            Node{KeyBits(key, prefix.size()), 0, static_cast<std::uint32_t>(prefix.size()), 0,
                 static_cast<std::uint32_t>(key.size())};
    }
}

template <class Rows>
std::optional<std::size_t> TableIndex::Find(const Rows& rows, QanStringViewT<char> key) const {
    std::size_t first = 0;
    std::size_t length = rows.size();
    if (levels > 0 && ordered) {
        // The bytes the wanted key shares with the last node passed on the right (low) and
        // on the left (high); it lies between those two nodes.
        std::size_t low = 0, high = 0;
        std::size_t node = 1;
        for (unsigned level = 0; level < levels && length > 0; ++level) {
            const std::size_t half = length / 2;
            // Both grandchildren's cache lines are asked for now, so that the next levels'
            // misses overlap with this one's work.
            if (4 * node + 3 < nodes.size()) {
                Prefetch(&nodes[4 * node]);
                Prefetch(&nodes[4 * node + 2]);
            }
            const Node& at = nodes[node];
            bool rowLess;
            std::size_t common; // shared by the wanted key and the node's key
            if (at.lowCommon > low) {
                // The node agrees with the low bound where the wanted key leaves it upwards.
                rowLess = true;
                common = low;
            } else if (at.highCommon > high) {
                rowLess = false;
                common = high;
            } else if (at.lowCommon < low) {
                // The node leaves the low bound upwards where the wanted key still follows it.
                rowLess = false;
                common = at.lowCommon;
            } else if (at.highCommon < high) {
                rowLess = true;
                common = at.highCommon;
            } else {
                // Both agree with the bounds as far as the wanted key does: compared from there.
                const std::size_t from = std::max(low, high);
                const std::uint64_t bits = low >= high ? at.lowBits : at.highBits;
                const std::uint64_t wanted = KeyBits(key, from);
                if (bits != wanted) {
                    rowLess = bits < wanted;
                    const auto same = static_cast<std::size_t>(std::countl_zero(bits ^ wanted) / 8);
                    common = from + std::min({same, at.length - from, key.size() - from});
                } else {
                    const QanStringViewT<char> rowKey = rows.Key(first + half);
                    common = CommonPrefix(rowKey, key);
                    rowLess =
                        common == rowKey.size()
                            ? common < key.size()
                            : common < key.size() && static_cast<unsigned char>(rowKey[common]) <
                                                         static_cast<unsigned char>(key[common]);
                }
            }
            if (rowLess) {
                low = common;
                first += half + 1;
                length -= half + 1;
                node = 2 * node + 1;
            } else {
                high = common;
                length = half;
                node = 2 * node;
            }
        }
    } else if (levels > 0) {
        // A key without the shared prefix compares alike with every node: a value below or
        // above all of them sends it one way, and an equal value falls back to the bytes.
        std::uint64_t outside = 0;
        bool inside = true;
        const auto differ = std::mismatch(prefix.begin(), prefix.end(), key.begin(), key.end());
        if (differ.first != prefix.end()) {
            inside = false;
            if (differ.second != key.end() && static_cast<unsigned char>(*differ.second) >
                                                  static_cast<unsigned char>(*differ.first))
                outside = UINT64_MAX;
        }
        const std::uint64_t wanted = inside ? KeyBits(key, prefix.size()) : outside;
        std::size_t node = 1;
        for (unsigned level = 0; level < levels && length > 0; ++level) {
            const std::size_t half = length / 2;
            const std::uint64_t bits = nodes[node].lowBits;
            const bool rowLess =
                bits != wanted ? bits < wanted : CompareKeys(rows.Key(first + half), key) < 0;
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
    // The few rows left, then their keys, are fetched together rather than one by one.
    if (length <= 2 * kRowsPerLeaf) {
        for (std::size_t row = first; row < first + length; row += 2)
            Prefetch(rows.RowAddress(row));
        for (std::size_t row = first; row < first + length; ++row)
            Prefetch(rows.Key(row).data());
    }
    // The lower bound over the rows left.
    while (length > 0) {
        const std::size_t half = length / 2;
        if (CompareKeys(rows.Key(first + half), key) < 0) {
            first += half + 1;
            length -= half + 1;
        } else {
            length = half;
        }
    }
    if (first == rows.size() || CompareKeys(rows.Key(first), key) != 0)
        return std::nullopt;
    return first;
}

// The two kinds of rows indexed: text tables' views and key tables' compact rows.
template TableIndex::TableIndex(const EntryKeys&);
template TableIndex::TableIndex(const KeyRows&);
template std::optional<std::size_t> TableIndex::Find(const EntryKeys&, QanStringViewT<char>) const;
template std::optional<std::size_t> TableIndex::Find(const KeyRows&, QanStringViewT<char>) const;

} // namespace Framework::Internal

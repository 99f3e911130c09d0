// The index must make every decision the plain lower bound makes, so it is checked against
// FindInTable on tables that are sorted, unsorted, full of equal keys or of keys that share
// long prefixes, with wanted keys inside, between and outside the table's keys.
#include "strings/TableIndex.h"
#include "strings/FindInTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {
using namespace Framework::Internal;

struct Shape {
    const char* name;
    std::size_t rows;
    std::string prefix; // before every key
    int alphabet;       // letters a key's varying bytes are drawn from
    std::size_t length; // most varying bytes a key has
    bool sorted;
    int duplicates; // one row in this many repeats an earlier key
    int strays;     // one row in this many lacks the prefix
    int swaps = 0;  // pairs of rows swapped after the sort
};

std::string RandomKey(std::mt19937& random, const Shape& shape) {
    std::uniform_int_distribution<std::size_t> length(0, shape.length);
    std::uniform_int_distribution<int> letter(0, shape.alphabet - 1);
    // A stray begins below or above the prefix, so that it sorts to either end.
    const bool stray = shape.strays && random() % shape.strays == 0;
    std::string key = stray ? (random() % 2 ? "A" : "~") : shape.prefix;
    for (std::size_t i = length(random); i > 0; --i) {
        // Letters 0 and 1 are the bytes 0x00 and 0xFF: the edges of the zero fill.
        const int pick = letter(random);
        key += pick == 0 ? '\0' : pick == 1 ? '\xFF' : static_cast<char>('a' + pick);
    }
    return key;
}

TEST(TableIndex, AnswersAsTheBinarySearch) {
    const Shape shapes[] = {
        {"sorted, short keys", 5000, "", 6, 4, true, 0, 0},
        {"sorted, equal keys", 3000, "", 4, 3, true, 3, 0},
        {"sorted, long shared prefix", 4000, "scope.module.name.", 5, 12, true, 0, 0},
        {"sorted, keys equal in 8 bytes after the prefix", 2000, "p", 3, 14, true, 0, 0},
        {"sorted, a few keys without the prefix", 4000, "scope.", 5, 6, true, 0, 1000},
        {"unsorted", 5000, "", 8, 6, false, 0, 0},
        {"unsorted, equal keys", 3000, "ids_", 5, 3, false, 4, 0},
        {"unsorted, a few keys without the prefix", 4000, "scope.", 5, 6, false, 3, 50},
        // Mostly rows between the nodes move, so the index keeps its ordered form while
        // the table is not in order.
        {"sorted, then pairs of rows swapped", 4000, "scope.module.", 5, 8, true, 5, 200, 300},
        {"sorted, then many pairs swapped", 4000, "", 5, 8, true, 0, 0, 3000},
        {"small", 40, "k", 4, 3, false, 5, 0},
        {"too small to index", 10, "", 4, 3, true, 0, 0},
        {"empty", 0, "", 4, 3, true, 0, 0},
    };
    std::mt19937 random(12345);
    for (const Shape& shape : shapes) {
        std::vector<std::string> keys;
        for (std::size_t i = 0; i < shape.rows; ++i) {
            if (shape.duplicates && i > 0 && random() % shape.duplicates == 0)
                keys.push_back(keys[random() % keys.size()]);
            else
                keys.push_back(RandomKey(random, shape));
        }
        if (shape.sorted)
            std::stable_sort(keys.begin(), keys.end());
        for (int i = 0; i < shape.swaps; ++i)
            std::swap(keys[random() % keys.size()], keys[random() % keys.size()]);
        // Each row's text is its own number, so that an answer names its row.
        std::vector<std::string> numbers(keys.size());
        StringTable table;
        for (std::size_t i = 0; i < keys.size(); ++i) {
            numbers[i] = std::to_string(i);
            table.entries.push_back({keys[i], numbers[i]});
        }
        const TableIndex index(table.entries);

        std::vector<std::string> wanted = keys;
        for (int i = 0; i < 3000; ++i)
            wanted.push_back(RandomKey(random, shape));
        // Keys that leave the shared prefix early, or end inside it.
        for (const char* other : {"", "a", "s", "scope", "scope.m", "scope.n", "z", "\xFF", "p"})
            wanted.push_back(other);
        int wrong = 0;
        for (const std::string& key : wanted) {
            const auto plain = FindInTable(table, key);
            const auto row = index.Find(table.entries, key);
            // The same row, not only an equal key: the first of equal keys wins.
            const bool same = plain ? row && table.entries[*row].text == *plain : !row;
            wrong += !same;
            if (!same && wrong < 4)
                ADD_FAILURE() << shape.name << ": key of " << key.size() << " bytes";
        }
        EXPECT_EQ(wrong, 0) << shape.name;
    }
}

} // namespace

// The tokenizer beneath the tagged-text reader: leading and adjacent delimiters are
// skipped, the position moves past the ending delimiter, and the end is a negative position.
#include "text/Tokenize.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace {
using Framework::Internal::Tokenize;

// Every token up to the end, and the position after each call.
std::vector<std::wstring> AllTokens(std::wstring_view text, std::wstring_view delims,
                                    std::vector<std::ptrdiff_t>* positions = nullptr) {
    std::vector<std::wstring> tokens;
    std::ptrdiff_t pos = 0;
    for (;;) {
        const std::wstring_view token = Tokenize(text, delims, pos);
        if (positions != nullptr) {
            positions->push_back(pos);
        }
        if (pos < 0) {
            EXPECT_TRUE(token.empty());
            return tokens;
        }
        tokens.emplace_back(token);
    }
}

TEST(Tokenize, PositionMovesPastTheEndingDelimiter) {
    std::vector<std::ptrdiff_t> positions;
    EXPECT_EQ(AllTokens(L"ab,c", L",", &positions), (std::vector<std::wstring>{L"ab", L"c"}));
    EXPECT_EQ(positions, (std::vector<std::ptrdiff_t>{3, 5, -1}));
}

TEST(Tokenize, LeadingAndAdjacentDelimitersAreSkipped) {
    std::vector<std::ptrdiff_t> positions;
    EXPECT_EQ(AllTokens(L"\u0001CT=a\u0001\u0001TT=b\u0001", L"\u0001", &positions),
              (std::vector<std::wstring>{L"CT=a", L"TT=b"}));
    EXPECT_EQ(positions, (std::vector<std::ptrdiff_t>{6, 12, -1}));
    EXPECT_EQ(AllTokens(L"A\n\n\nC", L"\n"), (std::vector<std::wstring>{L"A", L"C"}));
}

TEST(Tokenize, NothingButDelimitersEndsAtOnce) {
    EXPECT_TRUE(AllTokens(L"", L",").empty());
    EXPECT_TRUE(AllTokens(L",,,", L",").empty());
}

TEST(Tokenize, AnyCodeUnitOfTheSetDelimits) {
    EXPECT_EQ(AllTokens(L"a;b,c", L";,"), (std::vector<std::wstring>{L"a", L"b", L"c"}));
    const std::wstring withNul(L"a\0b", 3);
    EXPECT_EQ(AllTokens(withNul, std::wstring_view(L"\0", 1)),
              (std::vector<std::wstring>{L"a", L"b"}));
}

TEST(Tokenize, StartsAtTheGivenPosition) {
    std::ptrdiff_t pos = 1;
    EXPECT_EQ(Tokenize(L"ab,cd", L",", pos), L"b");
    EXPECT_EQ(pos, 3);
    EXPECT_EQ(Tokenize(L"ab,cd", L",", pos), L"cd");
    EXPECT_EQ(pos, 6);
    pos = -1;
    EXPECT_EQ(Tokenize(L"ab", L",", pos), L"");
    EXPECT_EQ(pos, -1);
    pos = 7; // past the end
    EXPECT_EQ(Tokenize(L"ab", L",", pos), L"");
    EXPECT_EQ(pos, -1);
}

} // namespace

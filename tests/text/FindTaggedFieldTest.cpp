// The field reader beneath every getter: lenient two-letter tag match in tagged texts, the
// three-line rule in untagged ones, and code units passed through without decoding.
#include "text/FindTaggedField.h"

#include <gtest/gtest.h>

#include <string>

namespace {
using Framework::Internal::FindTaggedField;

struct Found {
    bool found;
    std::wstring out;
    bool operator==(const Found&) const = default;
};

Found Find(const std::wstring& text, const wchar_t* tag) {
    std::wstring out = L"stale";
    const bool found = FindTaggedField(text, tag, out);
    return {found, out};
}

TEST(FindTaggedFieldTagged, ComparesOnlyTheTwoTagLetters) {
    // The third code unit is skipped unchecked, whatever it is.
    EXPECT_EQ(Find(L"\u0001CTX=abc", L"CT"), (Found{true, L"=abc"}));
    EXPECT_EQ(Find(L"\u0001CT:abc", L"CT"), (Found{true, L"abc"}));
    EXPECT_EQ(Find(L"\u0001CT", L"CT"), (Found{true, L""}));
    EXPECT_EQ(Find(L"\u0001CT=", L"CT"), (Found{true, L""}));
}

TEST(FindTaggedFieldTagged, TagIsComparedWholeAndCaseSensitively) {
    EXPECT_EQ(Find(L"\u0001ct=Open", L"CT"), (Found{false, L""}));
    EXPECT_EQ(Find(L"\u0001ct=Open", L"ct"), (Found{true, L"Open"}));
    EXPECT_EQ(Find(L"\u0001CT=Open", L"C"), (Found{false, L""}));
    EXPECT_EQ(Find(L"\u0001CT=Open", L"CT="), (Found{false, L""}));
    EXPECT_EQ(Find(L"\u0001CT=Open", nullptr), (Found{false, L""}));
}

TEST(FindTaggedFieldTagged, FirstMatchingFieldWinsAcrossAnyMarkers) {
    const std::wstring text = L"\u0001CT=one\u0001\u0001TT=tip\u0001CT=two\u0001";
    EXPECT_EQ(Find(text, L"CT"), (Found{true, L"one"}));
    EXPECT_EQ(Find(text, L"TT"), (Found{true, L"tip"}));
    EXPECT_EQ(Find(text, L"TH"), (Found{false, L""}));
    // A later marker in an untagged text means nothing: the whole line is the caption.
    EXPECT_EQ(Find(L"A\u0001CT=x", L"CT"), (Found{true, L"A\u0001CT=x"}));
}

TEST(FindTaggedFieldUntagged, LinesAreLongPromptTipAndCaption) {
    EXPECT_EQ(Find(L"A\nB\nC", L"LP"), (Found{true, L"A"}));
    EXPECT_EQ(Find(L"A\nB\nC", L"TT"), (Found{true, L"B"}));
    EXPECT_EQ(Find(L"A\nB\nC", L"CT"), (Found{true, L"C"}));
    EXPECT_EQ(Find(L"A\nB\nC\nD", L"CT"), (Found{true, L"C"}));
    for (const wchar_t* tag : {L"TH", L"TG", L"NV", L"lp", L"L", L"LPX"}) {
        EXPECT_EQ(Find(L"A\nB\nC", tag), (Found{false, L""})) << tag;
    }
}

TEST(FindTaggedFieldUntagged, CaptionFallsBackToLineTwoThenLineOne) {
    EXPECT_EQ(Find(L"A\nB", L"CT"), (Found{true, L"B"}));
    EXPECT_EQ(Find(L"Open", L"CT"), (Found{true, L"Open"}));
    EXPECT_EQ(Find(L"Open", L"TT"), (Found{true, L""}));
    EXPECT_EQ(Find(L"A\n", L"CT"), (Found{true, L"A"}));
}

TEST(FindTaggedFieldUntagged, AdjacentNewlinesSeparateLikeOne) {
    // Runs of newlines are skipped, so an empty line does not count as a line.
    EXPECT_EQ(Find(L"A\n\nC", L"CT"), (Found{true, L"C"}));
    EXPECT_EQ(Find(L"A\n\nC", L"TT"), (Found{true, L"C"}));
    EXPECT_EQ(Find(L"A\n\nC\nD", L"CT"), (Found{true, L"D"}));
    EXPECT_EQ(Find(L"\nA\nB", L"LP"), (Found{true, L"A"}));
    EXPECT_EQ(Find(L"\n\n", L"CT"), (Found{true, L""}));
}

TEST(FindTaggedFieldContent, CodeUnitsPassThroughUndecoded) {
    std::wstring value = L"x";
    value += static_cast<wchar_t>(0xD800); // a lone surrogate
    value += static_cast<wchar_t>(0xFFFF);
    value += L'\0';
    if constexpr (sizeof(wchar_t) == 4) {
        value += static_cast<wchar_t>(0x1F600);
        value += static_cast<wchar_t>(0x7FFFFFFF);
    }
    EXPECT_EQ(Find(L"\u0001TT=" + value + L"\u0001CT=c", L"TT"), (Found{true, value}));
    EXPECT_EQ(Find(value + L"\nB", L"LP"), (Found{true, value}));
    EXPECT_EQ(Find(L"", L"CT"), (Found{false, L""}));
}

} // namespace

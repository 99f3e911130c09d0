// The six TextParser getters: their fallbacks, GetTipText's success on a missing tip, and
// the ampersand collapse that only the tip's caption fallback applies.
#include <framework/TextParser.h>

#include <gtest/gtest.h>

#include <string>

namespace {
using Framework::TextParser;
using Getter = bool (*)(const wchar_t*, QanStringT<wchar_t>&);

struct Got {
    bool found;
    std::wstring out;
    bool operator==(const Got&) const = default;
};

Got Call(Getter getter, const wchar_t* text) {
    std::wstring out = L"stale"; // every getter empties out first
    const bool found = getter(text, out);
    return {found, out};
}

const Got kMissing{false, L""};

TEST(TextParserGetters, EmptyTextIsMissingButTipReportsSuccess) {
    EXPECT_EQ(Call(TextParser::GetCaptionText, L""), kMissing);
    EXPECT_EQ(Call(TextParser::GetLongPromptText, L""), kMissing);
    EXPECT_EQ(Call(TextParser::GetTipText, L""), (Got{true, L""}));
    EXPECT_EQ(Call(TextParser::GetTipHeaderText, L""), kMissing);
    EXPECT_EQ(Call(TextParser::GetTipGuid, L""), kMissing);
    EXPECT_EQ(Call(TextParser::GetVersionNewIn, L""), kMissing);
}

TEST(TextParserGetters, UntaggedTextHasThreeFieldsOnly) {
    EXPECT_EQ(Call(TextParser::GetCaptionText, L"A\nB\nC"), (Got{true, L"C"}));
    EXPECT_EQ(Call(TextParser::GetLongPromptText, L"A\nB\nC"), (Got{true, L"A"}));
    EXPECT_EQ(Call(TextParser::GetTipText, L"A\nB\nC"), (Got{true, L"B"}));
    EXPECT_EQ(Call(TextParser::GetTipHeaderText, L"A\nB\nC"), kMissing);
    EXPECT_EQ(Call(TextParser::GetTipGuid, L"A\nB\nC"), kMissing);
    EXPECT_EQ(Call(TextParser::GetVersionNewIn, L"A\nB\nC"), kMissing);
    EXPECT_EQ(Call(TextParser::GetCaptionText, L"A\n\nC"), (Got{true, L"C"}));
    EXPECT_EQ(Call(TextParser::GetCaptionText, L"A\nB"), (Got{true, L"B"}));
}

TEST(TextParserGetters, OneLineIsCaptionLongPromptAndTip) {
    EXPECT_EQ(Call(TextParser::GetCaptionText, L"Open"), (Got{true, L"Open"}));
    EXPECT_EQ(Call(TextParser::GetLongPromptText, L"Open"), (Got{true, L"Open"}));
    EXPECT_EQ(Call(TextParser::GetTipText, L"Open"), (Got{true, L"Open"}));
}

TEST(TextParserGetters, TaggedFieldsAreReadByTheirOwnGetter) {
    const wchar_t* text =
        L"\u0001NV=7.1\u0001TG={42}\u0001TH=Head\u0001TT=Tip\u0001LP=Long\u0001CT=Cap";
    EXPECT_EQ(Call(TextParser::GetCaptionText, text), (Got{true, L"Cap"}));
    EXPECT_EQ(Call(TextParser::GetLongPromptText, text), (Got{true, L"Long"}));
    EXPECT_EQ(Call(TextParser::GetTipText, text), (Got{true, L"Tip"}));
    EXPECT_EQ(Call(TextParser::GetTipHeaderText, text), (Got{true, L"Head"}));
    EXPECT_EQ(Call(TextParser::GetTipGuid, text), (Got{true, L"{42}"}));
    EXPECT_EQ(Call(TextParser::GetVersionNewIn, text), (Got{true, L"7.1"}));
    EXPECT_EQ(Call(TextParser::GetCaptionText, L"\u0001CT=one\u0001CT=two"), (Got{true, L"one"}));
    EXPECT_EQ(Call(TextParser::GetCaptionText, L"\u0001ct=Open"), kMissing);
}

TEST(TextParserGetters, CaptionAndLongPromptFallBackToTipWhenEmpty) {
    EXPECT_EQ(Call(TextParser::GetLongPromptText, L"\u0001LP=\u0001TT=Tip"), (Got{true, L"Tip"}));
    EXPECT_EQ(Call(TextParser::GetCaptionText, L"\u0001TT=Tip"), (Got{true, L"Tip"}));
    EXPECT_EQ(Call(TextParser::GetCaptionText, L"\u0001CT=\u0001TT=Tip"), (Got{true, L"Tip"}));
    // The second look-up decides both out and the result.
    EXPECT_EQ(Call(TextParser::GetCaptionText, L"\u0001CT="), kMissing);
    EXPECT_EQ(Call(TextParser::GetLongPromptText, L"\u0001LP=\u0001TT="), (Got{true, L""}));
    // A present caption is not replaced by the tip.
    EXPECT_EQ(Call(TextParser::GetCaptionText, L"\u0001TT=Tip\u0001CT=Cap"), (Got{true, L"Cap"}));
}

TEST(TextParserGetters, TipWithoutTipFieldSucceedsEmpty) {
    EXPECT_EQ(Call(TextParser::GetTipText, L"\u0001CT=&Save && close"), (Got{true, L""}));
    EXPECT_EQ(Call(TextParser::GetTipText, L"\u0001ct=x"), (Got{true, L""}));
}

TEST(TextParserGetters, TipKeepsItsOwnAmpersands) {
    EXPECT_EQ(Call(TextParser::GetTipText, L"\u0001TT=&Save && close"),
              (Got{true, L"&Save && close"}));
    EXPECT_EQ(Call(TextParser::GetTipText, L"Long\n&Tip"), (Got{true, L"&Tip"}));
}

TEST(TextParserGetters, TipFallsBackToCaptionWithoutMnemonics) {
    EXPECT_EQ(Call(TextParser::GetTipText, L"\u0001CT=&Save\u0001TT="), (Got{true, L"Save"}));
    EXPECT_EQ(Call(TextParser::GetTipText, L"\u0001TT=\u0001CT=A&&B&"), (Got{true, L"A&B"}));
    EXPECT_EQ(Call(TextParser::GetTipText, L"\u0001TT=\u0001CT=&&&x&&&&"), (Got{true, L"&x&&"}));
    EXPECT_EQ(Call(TextParser::GetTipText, L"&Open"), (Got{true, L"Open"}));
    // The fallback's own result is returned: no caption field means false.
    EXPECT_EQ(Call(TextParser::GetTipText, L"\u0001TT="), kMissing);
    EXPECT_EQ(Call(TextParser::GetTipText, L"\u0001TT=\u0001CT="), (Got{true, L""}));
}

TEST(TextParserGetters, TextMayLiveInsideOut) {
    std::wstring text = L"\u0001TT=\u0001CT=&Cap";
    EXPECT_TRUE(TextParser::GetTipText(text.c_str(), text));
    EXPECT_EQ(text, L"Cap");
    text = L"\u0001CT=\u0001TT=Tip";
    EXPECT_TRUE(TextParser::GetCaptionText(text.c_str(), text));
    EXPECT_EQ(text, L"Tip");
}

} // namespace

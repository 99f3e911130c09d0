// Merging an existing text with explicit fields: untagged texts become the caption, and a
// tagged text is walked field by field only across doubled markers.
#include <framework/TextParser.h>

#include <gtest/gtest.h>

#include <string>

namespace {
using Framework::TextParser;

// CombineString with only the text given.
std::wstring Combine(const wchar_t* text) {
    return TextParser::CombineString(text, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
}

TEST(CombineStringUntagged, WholeTextBecomesTheCaption) {
    EXPECT_EQ(Combine(L"Open"), L"\u0001CT=Open");
    EXPECT_EQ(Combine(L"A\nB\nC"), L"\u0001CT=A\nB\nC");
    EXPECT_EQ(Combine(L""), L"\u0001CT=");
    EXPECT_EQ(Combine(L"a\u0001CT=b"), L"\u0001CT=a\u0001CT=b");
    EXPECT_EQ(TextParser::CombineString(L"A\nB", L"Cap", nullptr, nullptr, nullptr, nullptr, L"2"),
              L"\u0001CT=Cap\u0001NV=2");
    EXPECT_EQ(TextParser::CombineString(L"Open", nullptr, L"l", L"t", L"h", L"g", L"v"),
              L"\u0001CT=Open\u0001LP=l\u0001TT=t\u0001TH=h\u0001TG=g\u0001NV=v");
}

TEST(CombineStringWalk, SingleMarkersEndTheWalkAfterTheFirstField) {
    const std::wstring merged =
        TextParser::CombineString(L"\u0001CT=Open\u0001TT=Opens a file", nullptr, nullptr,
                                  L"New tip", nullptr, nullptr, nullptr);
    EXPECT_EQ(merged, L"\u0001CT=Open\u0001TT=Opens a file\u0001TT=New tip");
    std::wstring tip;
    EXPECT_TRUE(TextParser::GetTipText(merged.c_str(), tip));
    EXPECT_EQ(tip, L"Opens a file");
    // The later caption rides inside the first field's value and is not recognised.
    EXPECT_EQ(TextParser::CombineString(L"\u0001TH=H\u0001CT=C", L"X", nullptr, nullptr, nullptr,
                                        nullptr, nullptr),
              L"\u0001CT=X\u0001TH=H\u0001CT=C");
}

TEST(CombineStringWalk, DoubleMarkersContinueWithATrailingMarkerKept) {
    EXPECT_EQ(Combine(L"\u0001TH=H\u0001\u0001CT=C"), L"\u0001CT=C\u0001TH=H\u0001");
    EXPECT_EQ(Combine(L"\u0001NV=6\u0001\u0001TG=5\u0001\u0001TH=4\u0001\u0001TT=3\u0001\u0001"
                      L"LP=2\u0001\u0001CT=1"),
              L"\u0001CT=1\u0001LP=2\u0001\u0001TT=3\u0001\u0001TH=4\u0001\u0001TG=5\u0001\u0001"
              L"NV=6\u0001");
    EXPECT_EQ(Combine(L"\u0001CT=\u0001\u0001TT=t"), L"\u0001CT=\u0001\u0001TT=t");
    // A third marker is read as the start of the next tag, which then matches nothing.
    EXPECT_EQ(Combine(L"\u0001CT=a\u0001\u0001\u0001TT=b"), L"\u0001CT=a\u0001");
}

TEST(CombineStringWalk, MarkersAtTheEndOrAlone) {
    EXPECT_EQ(Combine(L"\u0001CT=a\u0001"), L"\u0001CT=a\u0001");
    EXPECT_EQ(Combine(L"\u0001CT=a\u0001\u0001"), L"\u0001CT=a\u0001");
    EXPECT_EQ(Combine(L"\u0001"), L"");
    EXPECT_EQ(Combine(L"\u0001\u0001"), L"");
    EXPECT_EQ(Combine(L"\u0001\u0001\u0001"), L"");
    EXPECT_EQ(Combine(L"\u0001C"), L"");
    EXPECT_EQ(TextParser::CombineString(L"\u0001\u0001\u0001", L"X", nullptr, nullptr, nullptr,
                                        nullptr, nullptr),
              L"\u0001CT=X");
}

TEST(CombineStringWalk, UnknownAndLenientTagsAreDropped) {
    EXPECT_EQ(Combine(L"\u0001XX=1\u0001\u0001CT=C"), L"\u0001CT=C");
    EXPECT_EQ(Combine(L"\u0001ct=c"), L"");
    // Unlike the getters, the walk checks the "=" too.
    EXPECT_EQ(Combine(L"\u0001CTX=a"), L"");
}

TEST(CombineStringWalk, FirstFieldAndCallerArgumentsWin) {
    EXPECT_EQ(Combine(L"\u0001CT=A\u0001\u0001CT=B"), L"\u0001CT=A\u0001");
    EXPECT_EQ(TextParser::CombineString(L"\u0001CT=A\u0001\u0001TT=B", L"X", nullptr, nullptr,
                                        nullptr, nullptr, nullptr),
              L"\u0001CT=X\u0001TT=B");
    EXPECT_EQ(
        TextParser::CombineString(L"\u0001CT=A", L"", nullptr, nullptr, nullptr, nullptr, nullptr),
        L"\u0001CT=");
}

} // namespace

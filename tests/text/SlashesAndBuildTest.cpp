// Converting the hand-written slash form into markers, and building a tagged text from
// separate fields in the fixed order CT LP TT TH TG NV.
#include <framework/TextParser.h>

#include <gtest/gtest.h>

#include <string>

namespace {
using Framework::TextParser;

TEST(ReplaceSlashes, EverySlashFormBecomesAMarkerWherever) {
    EXPECT_EQ(TextParser::ReplaceSlashes(L"/CT=Open/TT=Tip"), L"\u0001CT=Open\u0001TT=Tip");
    EXPECT_EQ(TextParser::ReplaceSlashes(L"/NV=6/TG=5/TH=4/TT=3/LP=2/CT=1"),
              L"\u0001NV=6\u0001TG=5\u0001TH=4\u0001TT=3\u0001LP=2\u0001CT=1");
    EXPECT_EQ(TextParser::ReplaceSlashes(L"a/CT=b"), L"a\u0001CT=b");
    EXPECT_EQ(TextParser::ReplaceSlashes(L"//CT=/CT=a/"), L"/\u0001CT=\u0001CT=a/");
}

TEST(ReplaceSlashes, OtherSlashesStayAsWritten) {
    for (const wchar_t* text : {L"/ct=x", L"/XX=x", L"/CT x", L"/CT", L"/C", L"/", L"a/b", L""}) {
        EXPECT_EQ(TextParser::ReplaceSlashes(text), text);
    }
}

TEST(ReplaceSlashes, OnlyALeadingFormMakesATaggedText) {
    std::wstring caption;
    EXPECT_TRUE(TextParser::GetCaptionText(TextParser::ReplaceSlashes(L"a/CT=b").c_str(), caption));
    EXPECT_EQ(caption, L"a\u0001CT=b");
    EXPECT_TRUE(TextParser::GetCaptionText(
        TextParser::ReplaceSlashes(L"/TH=Head/CT=Cap/TT=Tip").c_str(), caption));
    EXPECT_EQ(caption, L"Cap");
}

TEST(BuildString, FieldsComeInFixedOrder) {
    EXPECT_EQ(TextParser::BuildString(nullptr, nullptr, L"T", L"H", nullptr, nullptr),
              L"\u0001TT=T\u0001TH=H");
    EXPECT_EQ(TextParser::BuildString(L"c", L"l", L"t", L"h", L"g", L"v"),
              L"\u0001CT=c\u0001LP=l\u0001TT=t\u0001TH=h\u0001TG=g\u0001NV=v");
}

TEST(BuildString, NullIsAbsentButEmptyIsAField) {
    EXPECT_EQ(TextParser::BuildString(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), L"");
    EXPECT_EQ(TextParser::BuildString(nullptr, L"", nullptr, nullptr, nullptr, L""),
              L"\u0001LP=\u0001NV=");
}

TEST(BuildString, ValuesAreCopiedLiterally) {
    // A value is never used as a format.
    EXPECT_EQ(TextParser::BuildString(L"%s%d%%", nullptr, nullptr, nullptr, nullptr, nullptr),
              L"\u0001CT=%s%d%%");
}

} // namespace

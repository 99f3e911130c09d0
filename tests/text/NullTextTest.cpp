// Null pointers: a null text reads as the empty text everywhere, while null field arguments
// of BuildString and CombineString keep their meaning of an absent field.
#include "text/FindTaggedField.h"

#include <framework/TextParser.h>

#include <gtest/gtest.h>

#include <string>

namespace {
using Framework::TextParser;

TEST(NullText, GettersReadItAsEmpty) {
    std::wstring out = L"stale";
    EXPECT_FALSE(TextParser::GetCaptionText(nullptr, out));
    EXPECT_EQ(out, L"");
    out = L"stale";
    EXPECT_FALSE(TextParser::GetLongPromptText(nullptr, out));
    EXPECT_EQ(out, L"");
    out = L"stale";
    EXPECT_TRUE(TextParser::GetTipText(nullptr, out));
    EXPECT_EQ(out, L"");
    out = L"stale";
    EXPECT_FALSE(TextParser::GetTipHeaderText(nullptr, out));
    EXPECT_EQ(out, L"");
    out = L"stale";
    EXPECT_FALSE(TextParser::GetTipGuid(nullptr, out));
    EXPECT_EQ(out, L"");
    out = L"stale";
    EXPECT_FALSE(TextParser::GetVersionNewIn(nullptr, out));
    EXPECT_EQ(out, L"");
}

TEST(NullText, BuildersTreatItAsEmptyOrAbsent) {
    EXPECT_EQ(TextParser::ReplaceSlashes(nullptr), L"");
    EXPECT_EQ(
        TextParser::CombineString(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
        L"\u0001CT=");
    EXPECT_EQ(TextParser::CombineString(nullptr, nullptr, nullptr, L"T", nullptr, nullptr, nullptr),
              L"\u0001CT=\u0001TT=T");
}

TEST(NullText, NullTagFindsNothing) {
    std::wstring out = L"stale";
    EXPECT_FALSE(Framework::Internal::FindTaggedField(L"Open", nullptr, out));
    EXPECT_EQ(out, L"");
}

} // namespace

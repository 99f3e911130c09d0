// Null pointers: a null text reads as the empty text everywhere, while null field arguments
// of BuildString and CombineString keep their meaning of an absent field.
#include "text/FindTaggedField.h"

#include <framework/TextParser.h>

#include <gtest/gtest.h>

#include <string>

namespace {
using Framework::TextParser;

TEST(NullText, GettersReadItAsEmpty) {
    using Getter = bool (*)(const wchar_t*, QanStringT<wchar_t>&);
    const struct {
        Getter getter;
        bool found;
    } getters[] = {{TextParser::GetCaptionText, false}, {TextParser::GetLongPromptText, false},
                   {TextParser::GetTipText, true},      {TextParser::GetTipHeaderText, false},
                   {TextParser::GetTipGuid, false},     {TextParser::GetVersionNewIn, false}};
    for (const auto& entry : getters) {
        std::wstring out = L"stale";
        EXPECT_EQ(entry.getter(nullptr, out), entry.found);
        EXPECT_EQ(out, L"");
    }
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

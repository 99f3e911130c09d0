// One tagged text for a legacy key: the plain string when there is one, else caption,
// tooltip body and header packed in either order, doubled backslashes collapsed.
#include "legacy/LegacyStringLookup.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace {
using namespace Framework::Internal;

const std::wstring M = L"\x0001";

// A string look-up over a map that records what it was asked.
struct Lookup {
    std::map<std::pair<std::wstring, StringKind>, std::wstring> texts;
    mutable std::vector<StringKind> asked;

    StringLookup Fn() const {
        return [this](const QanStringT<wchar_t>& key, StringKind kind) {
            asked.push_back(kind);
            const auto it = texts.find({key, kind});
            return it == texts.end() ? QanStringT<wchar_t>() : it->second;
        };
    }
};

TEST(LegacyComposeText, EmptyKeyLooksNothingUp) {
    Lookup lookup;
    lookup.texts[{L"", String}] = L"never";
    for (auto order : {LegacyFieldOrder::BodyFirst, LegacyFieldOrder::HeaderFirst})
        EXPECT_EQ(ComposeLegacyText(lookup.Fn(), L"", order), L"");
    EXPECT_TRUE(lookup.asked.empty());
}

TEST(LegacyComposeText, PlainStringIsReturnedAsItStands) {
    Lookup lookup;
    lookup.texts[{L"k", String}] = L"C:\\\\dir\\\\file";
    lookup.texts[{L"k", Caption}] = L"unused";
    for (auto order : {LegacyFieldOrder::BodyFirst, LegacyFieldOrder::HeaderFirst})
        EXPECT_EQ(ComposeLegacyText(lookup.Fn(), L"k", order), L"C:\\\\dir\\\\file");
    EXPECT_EQ(lookup.asked, (std::vector<StringKind>{String, String}));
}

TEST(LegacyComposeText, FieldsAreAskedAndPackedInOrder) {
    Lookup lookup;
    lookup.texts[{L"k", Caption}] = L"Open";
    lookup.texts[{L"k", TooltipBody}] = L"Opens a file";
    EXPECT_EQ(ComposeLegacyText(lookup.Fn(), L"k", LegacyFieldOrder::BodyFirst),
              M + L"CT=Open" + M + L"TT=Opens a file");
    EXPECT_EQ(lookup.asked, (std::vector<StringKind>{String, Caption, TooltipBody, TooltipHeader}));
    EXPECT_EQ(ComposeLegacyText(lookup.Fn(), L"k", LegacyFieldOrder::HeaderFirst),
              M + L"CT=Open" + M + L"TT=Opens a file");

    lookup.texts[{L"k", TooltipHeader}] = L"File";
    EXPECT_EQ(ComposeLegacyText(lookup.Fn(), L"k", LegacyFieldOrder::BodyFirst),
              M + L"CT=Open" + M + L"TT=Opens a file" + M + L"TH=File");
    EXPECT_EQ(ComposeLegacyText(lookup.Fn(), L"k", LegacyFieldOrder::HeaderFirst),
              M + L"CT=Open" + M + L"TH=File" + M + L"TT=Opens a file");
}

TEST(LegacyComposeText, MissingFieldsAreLeftOut) {
    Lookup lookup;
    lookup.texts[{L"h", TooltipHeader}] = L"Only header";
    EXPECT_EQ(ComposeLegacyText(lookup.Fn(), L"h", LegacyFieldOrder::BodyFirst),
              M + L"TH=Only header");
    EXPECT_EQ(ComposeLegacyText(lookup.Fn(), L"none", LegacyFieldOrder::BodyFirst), L"");
    EXPECT_EQ(ComposeLegacyText(lookup.Fn(), L"none", LegacyFieldOrder::HeaderFirst), L"");
}

TEST(LegacyComposeText, ComposedTextCollapsesBackslashPairs) {
    Lookup lookup;
    lookup.texts[{L"k", Caption}] = L"a\\\\b";         // two: one stays
    lookup.texts[{L"k", TooltipBody}] = L"c\\\\\\d";   // three: two stay
    lookup.texts[{L"k", TooltipHeader}] = L"\\\\\\\\"; // four: two stay
    EXPECT_EQ(ComposeLegacyText(lookup.Fn(), L"k", LegacyFieldOrder::BodyFirst),
              M + L"CT=a\\b" + M + L"TT=c\\\\d" + M + L"TH=\\\\");
    // A pair split across two fields is no pair.
    Lookup split;
    split.texts[{L"k", Caption}] = L"x\\";
    split.texts[{L"k", TooltipBody}] = L"\\y";
    EXPECT_EQ(ComposeLegacyText(split.Fn(), L"k", LegacyFieldOrder::BodyFirst),
              M + L"CT=x\\" + M + L"TT=\\y");
}

} // namespace

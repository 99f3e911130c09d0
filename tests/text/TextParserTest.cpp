// TextParser: the getters with each one's fallback, the field reader beneath them, and the
// builders. Texts here write the field marker U+0001 as "|", which no text otherwise holds.
#include "text/FindTaggedField.h"

#include <framework/TextParser.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <string>
#include <tuple>

using Framework::TextParser;
using Framework::Internal::FindTaggedField;
using Fields = std::array<const wchar_t*, 6>; // caption, long prompt, tip, header, GUID, version
static constexpr const wchar_t* N = nullptr;

// The text with each "|" turned into the field marker.
static std::wstring Marked(std::wstring text) {
    std::replace(text.begin(), text.end(), L'|', L'\x0001');
    return text;
}

// For each text, what each getter gives, in the order of Fields; N: false with out empty.
TEST(TextParserGetters, EveryGetterOnEveryText) {
    bool (*const getters[6])(const wchar_t*, QanStringT<wchar_t>&) = {
        TextParser::GetCaptionText,   TextParser::GetLongPromptText, TextParser::GetTipText,
        TextParser::GetTipHeaderText, TextParser::GetTipGuid,        TextParser::GetVersionNewIn};
    const std::pair<const wchar_t*, Fields> rows[] = {
        // Untagged: line 1 long prompt, line 2 tip, line 3 caption, and no other field.
        {L"A\nB\nC", {L"C", L"A", L"B", N, N, N}},
        {L"\nA\nB\nC\nD", {L"C", L"A", L"B", N, N, N}},
        {L"A\nB", {L"B", L"A", L"B", N, N, N}},
        {L"Open", {L"Open", L"Open", L"Open", N, N, N}},
        // Runs of newlines separate like one; a later marker means nothing untagged.
        {L"A\n\nC", {L"C", L"A", L"C", N, N, N}},
        {L"a|CT=b", {L"a|CT=b", L"a|CT=b", L"a|CT=b", N, N, N}},
        // Tagged: each getter reads its own field; the first match wins across any markers.
        {L"|NV=7.1|TG={42}|TH=H|TT=T|LP=L|CT=C", {L"C", L"L", L"T", L"H", L"{42}", L"7.1"}},
        {L"|CT=one||TT=tip|CT=two|", {L"one", L"tip", L"tip", N, N, N}},
        {L"|CT=Open|TT=Opens a file|TT=New tip",
         {L"Open", L"Opens a file", L"Opens a file", N, N, N}},
        // Two case-sensitive tag letters are compared; the third is skipped unchecked.
        {L"|ct=Open", {N, N, L"", N, N, N}},
        {L"|THX=abc", {N, N, L"", L"=abc", N, N}},
        {L"|TH", {N, N, L"", L"", N, N}},
        // An empty or missing caption or long prompt falls back to the tip, which decides.
        {L"|LP=|TT=Tip", {L"Tip", L"Tip", L"Tip", N, N, N}},
        {L"|CT=", {N, N, L"", N, N, N}},
        // A missing tip succeeds empty; only the tip's caption fallback drops mnemonics.
        {L"|CT=&Save && close", {L"&Save && close", N, L"", N, N, N}},
        {L"|TT=&Save && close", {L"&Save && close", L"&Save && close", L"&Save && close", N, N, N}},
        {L"|CT=&Save|TT=", {L"&Save", L"", L"Save", N, N, N}},
        {L"|TT=|CT=&&&x&&&&&", {L"&&&x&&&&&", L"", L"&x&&", N, N, N}},
        {L"|TT=", {L"", L"", N, N, N, N}},
        {L"|TT=|CT=", {L"", L"", L"", N, N, N}},
        // The empty and the null text have no fields, yet the tip reports success.
        {L"", {N, N, L"", N, N, N}},
        {nullptr, {N, N, L"", N, N, N}}};
    for (const auto& [text, fields] : rows) {
        const std::wstring marked = text ? Marked(text) : L"";
        for (int i = 0; i < 6; ++i) {
            SCOPED_TRACE(testing::Message() << text << ", getter " << i);
            std::wstring out = L"stale"; // every getter empties out first
            EXPECT_EQ(getters[i](text ? marked.c_str() : nullptr, out), fields[i] != nullptr);
            EXPECT_EQ(out, fields[i] ? Marked(fields[i]) : L"");
        }
    }
}

TEST(FindTaggedField, CodeUnitsPassThroughUndecoded) {
    const std::wstring value{L'x', wchar_t(0xD800), wchar_t(0xFFFF), L'\0', wchar_t(WCHAR_MAX)};
    std::wstring out;
    EXPECT_TRUE(FindTaggedField(Marked(L"|TT=") + value + Marked(L"|CT=c"), L"TT", out));
    EXPECT_EQ(out, value);
    EXPECT_TRUE(FindTaggedField(value + L"\nB", L"LP", out));
    EXPECT_EQ(out, value);
}

// Every exact slash form becomes a marker wherever it stands; fields are built in the fixed
// order CT LP TT TH TG NV (the full order, empty and all-null fields are seen through
// CombineString below).
TEST(TextParserBuilders, SlashFormsAndBuiltFieldOrder) {
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"/CT=Open/TT=Tip", L"|CT=Open|TT=Tip"},
        {L"a/CT=b", L"a|CT=b"},
        {L"/NV=6/TG=5/TH=4/TT=3/LP=2//CT=1/", L"|NV=6|TG=5|TH=4|TT=3|LP=2/|CT=1/"},
        {L"/ct=x/XX=x/CT x a/b/CT", L"/ct=x/XX=x/CT x a/b/CT"},
        {nullptr, L""}};
    for (const auto& [text, expected] : rows) {
        EXPECT_EQ(TextParser::ReplaceSlashes(text), Marked(expected)) << text;
    }
    EXPECT_EQ(TextParser::BuildString(N, N, L"T", L"H", N, N), Marked(L"|TT=T|TH=H"));
}

// The walk over a tagged text goes on only across doubled markers, and the field before
// them keeps one marker; explicit arguments, copied literally, win over the text's fields.
TEST(CombineString, UntaggedCaptionAndTheMarkerWalk) {
    const std::tuple<const wchar_t*, Fields, const wchar_t*> rows[] = {
        // An untagged text, whole, becomes the caption unless one is given.
        {L"Open", {}, L"|CT=Open"},
        {L"A\nB|CT=C", {}, L"|CT=A\nB|CT=C"},
        {nullptr, {N, N, L"T"}, L"|CT=|TT=T"},
        {L"A\nB", {L"%s%%", L"l", L"t", L"h", L"g", L"v"}, L"|CT=%s%%|LP=l|TT=t|TH=h|TG=g|NV=v"},
        // Single markers: only the first field is read, its value running to the end.
        {L"|CT=Open|TT=Opens a file", {N, N, L"New tip"}, L"|CT=Open|TT=Opens a file|TT=New tip"},
        // Double markers continue the walk; a third starts a tag that matches nothing.
        {L"|NV=6||TG=5||TH=4||TT=3||LP=2||CT=1", {}, L"|CT=1|LP=2||TT=3||TH=4||TG=5||NV=6|"},
        {L"|CT=a|||TT=b", {}, L"|CT=a|"},
        // A doubled marker at the end, markers alone, a cut tag.
        {L"|CT=a||", {}, L"|CT=a|"},
        {L"|", {}, L""},
        {L"|||", {L"X"}, L"|CT=X"},
        {L"|C", {}, L""},
        // Unknown tags are dropped; the walk, unlike the getters, checks the "=".
        {L"|XX=1||CT=C", {}, L"|CT=C"},
        {L"|CTX=a", {}, L""},
        // The first field of a tag wins, and a given argument, even empty, wins over both.
        {L"|CT=A||CT=B", {}, L"|CT=A|"},
        {L"|CT=A||TT=B", {L"X"}, L"|CT=X|TT=B"},
        {L"|CT=A", {L""}, L"|CT="}};
    for (const auto& [text, f, expected] : rows) {
        const std::wstring in = text ? Marked(text) : L"";
        const auto merged =
            TextParser::CombineString(text ? in.c_str() : N, f[0], f[1], f[2], f[3], f[4], f[5]);
        EXPECT_EQ(merged, Marked(expected)) << text;
    }
}

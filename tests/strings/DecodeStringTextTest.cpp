// Turning stored texts into handed-out texts: UTF-8, entities, then backslash escapes.
#include "strings/DecodeStringText.h"
#include "strings/UnescapeControl.h"
#include "strings/XmlEntities.h"

#include <gtest/gtest.h>

namespace {
using namespace Framework::Internal;

std::wstring Decode(std::string_view stored) {
    return DecodeStringText(stored);
}

TEST(DecodeUtf8, DecodesEveryPlane) {
    EXPECT_EQ(Decode("plain ASCII"), L"plain ASCII");
    EXPECT_EQ(Decode("gr\xC3\xBC\xC3\x9F"), L"gr\u00FC\u00DF");
    EXPECT_EQ(Decode("\xE6\x97\xA5\xE6\x9C\xAC"), L"\u65E5\u672C");
    EXPECT_EQ(Decode("a\xF0\x9F\x98\x80z"), L"a\U0001F600z"); // a surrogate pair on Windows
    EXPECT_EQ(Decode(""), L"");
}

TEST(DecodeUtf8, InvalidBytesBecomeReplacementCharacters) {
    EXPECT_EQ(Decode("a\xFFz"), L"a\uFFFDz");
    EXPECT_EQ(Decode("a\xE6\x97z"), L"a\uFFFDz"); // one per maximal subpart
    EXPECT_EQ(Decode("\xC0\xAF"), L"\uFFFD\uFFFD");
    EXPECT_EQ(Decode("end\xE6"), L"end\uFFFD");
}

TEST(DecodeUtf8, ZeroByteEndsTheText) {
    EXPECT_EQ(Decode(std::string_view("ab\0cd", 5)), L"ab");
    EXPECT_EQ(Decode(std::string_view("\0cd", 3)), L"");
}

TEST(XmlEntities, PredefinedEntitiesAndCharacterReferences) {
    EXPECT_EQ(Decode("&lt;b&gt; &amp; &quot;q&quot; &apos;a&apos;"), L"<b> & \"q\" 'a'");
    EXPECT_EQ(Decode("&#65;&#x42;&#x6a;&#x6A;&#0065;"), L"ABjjA");
    EXPECT_EQ(Decode("&#x1F600;|&#128512;"), L"\U0001F600|\U0001F600");
    EXPECT_EQ(Decode("&#x10FFFF;"), L"\U0010FFFF");
    EXPECT_EQ(Decode("&#xFFFD;&#xE000;&#xD7FF;"), L"\uFFFD\uE000\uD7FF");
}

TEST(XmlEntities, SinglePassLeftToRight) {
    EXPECT_EQ(Decode("&amp;lt;"), L"&lt;");
    EXPECT_EQ(Decode("&amp;amp;"), L"&amp;");
    EXPECT_EQ(Decode("&&amp;&"), L"&&&");
}

TEST(XmlEntities, AnythingElseStaysAsWritten) {
    for (const char* kept : {"&nbsp;",
                             "&LT;",
                             "&lt",
                             "&amp",
                             "&",
                             "a & b",
                             "&#;",
                             "&#x;",
                             "&#12a;",
                             "&#X41;",
                             "&#x41",
                             "&#xD800;",
                             "&#xDFFF;",
                             "&#55296;",
                             "&#x110000;",
                             "&#1114112;",
                             "&#99999999999999999999999;",
                             "&#xFFFFFFFFFFFFFFFF41;",
                             "&# 65;",
                             "&#-65;"}) {
        std::wstring expected;
        for (const char* c = kept; *c; ++c)
            expected.push_back(static_cast<wchar_t>(*c));
        EXPECT_EQ(Decode(kept), expected) << kept;
    }
}

TEST(XmlEntities, ReferenceAfterAnUnknownOneIsStillDecoded) {
    EXPECT_EQ(Decode("&bogus;&lt;&#x;&#65;"), L"&bogus;<&#x;A");
}

TEST(XmlEntities, InPlaceDecodingLeavesTextWithoutAmpersandUntouched) {
    std::wstring text = L"no references \\n here";
    UnReplaceXmlEntities(text);
    EXPECT_EQ(text, L"no references \\n here");
}

TEST(BackslashEscapes, ControlCharacters) {
    EXPECT_EQ(Decode("a\\nb"), L"a\nb");
    EXPECT_EQ(Decode("a\\rb"), L"a\rb");
    EXPECT_EQ(Decode("a\\tb"), L"a\tb");
    EXPECT_EQ(Decode("\\n\\r\\t"), L"\n\r\t");
    EXPECT_EQ(Decode("\\n\\n"), L"\n\n");
    EXPECT_EQ(Decode("\\x \\"), L"\\x \\"); // other letters and a lone backslash stay
}

// Per letter: one backslash makes the control character, two make a backslash and the
// letter, three make two backslashes and the letter (the look-behind sees only the one
// character before the pair).
TEST(BackslashEscapes, OneTwoAndThreeBackslashesBeforeTheLetter) {
    const struct {
        char letter;
        wchar_t control;
    } cases[] = {{'n', L'\n'}, {'r', L'\r'}, {'t', L'\t'}};
    for (const auto& c : cases) {
        const std::wstring letter(1, static_cast<wchar_t>(c.letter));
        EXPECT_EQ(Decode(std::string("\\") + c.letter), std::wstring(1, c.control));
        EXPECT_EQ(Decode(std::string("\\\\") + c.letter), L"\\" + letter);
        EXPECT_EQ(Decode(std::string("\\\\\\") + c.letter), L"\\\\" + letter);
        EXPECT_EQ(Decode(std::string("x\\\\") + c.letter + "y"), L"x\\" + letter + L"y");
    }
}

TEST(BackslashEscapes, DoubleBackslashesAndSlashes) {
    EXPECT_EQ(Decode("C:\\\\dir\\\\file"), L"C:\\dir\\file");
    EXPECT_EQ(Decode("\\\\\\\\"), L"\\\\");
    EXPECT_EQ(Decode("http:\\/\\/host"), L"http://host");
    EXPECT_EQ(Decode("\\/\\/\\/"), L"//\\/");
    EXPECT_EQ(Decode("\\/"), L"\\/");
}

TEST(BackslashEscapes, EntitiesAreDecodedFirst) {
    EXPECT_EQ(Decode("&#92;n"), L"\n");
    EXPECT_EQ(Decode("&#x5C;&#x5C;"), L"\\");
    EXPECT_EQ(Decode("a&lt;\\n&gt;b"), L"a<\n>b");
    EXPECT_EQ(Decode("&amp;#92;n"), L"&#92;n"); // single pass: no second entity round
}

TEST(UnescapeControl, EscapeLetterFollowsTheControlCharacter) {
    EXPECT_EQ(UnescapeControl(L"\\t\\r\\n", 9), L"\t\\r\\n");
    EXPECT_EQ(UnescapeControl(L"\\t\\r\\n", 13), L"\\t\r\\n");
    EXPECT_EQ(UnescapeControl(L"\\t\\r\\n", 10), L"\\t\\r\n");
    // Any other character is written for "\n".
    EXPECT_EQ(UnescapeControl(L"a\\nb", L'#'), L"a#b");
}

TEST(UnescapeControl, ShortTextsAndTheLastCharacter) {
    EXPECT_EQ(UnescapeControl(L"", 10), L"");
    EXPECT_EQ(UnescapeControl(L"\\", 10), L"\\");
    EXPECT_EQ(UnescapeControl(L"n", 10), L"n");
    EXPECT_EQ(UnescapeControl(L"ab\\", 10), L"ab\\");
    EXPECT_EQ(UnescapeControl(L"\\n", 10), L"\n");
    EXPECT_EQ(UnescapeControl(L"x\\n", 10), L"x\n");
}

TEST(UnescapeControl, LookBehindSeesThisPassInput) {
    // The pair after "\\" is left alone even though that backslash is itself escaped.
    EXPECT_EQ(UnescapeControl(L"\\\\n", 10), L"\\\\n");
    EXPECT_EQ(UnescapeControl(L"\\\\\\n", 10), L"\\\\\\n");
    // A control character written earlier in the pass is not a backslash.
    EXPECT_EQ(UnescapeControl(L"\\n\\n\\n", 10), L"\n\n\n");
}

} // namespace

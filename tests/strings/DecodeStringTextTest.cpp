// Turning stored texts into handed-out texts: UTF-8, then entities, then backslash escapes.
#include "strings/DecodeStringText.h"
#include "strings/UnescapeControl.h"

#include <gtest/gtest.h>

namespace {
using namespace Framework::Internal;
using namespace std::literals;

TEST(DecodeStringText, DecodeSteps) {
    const std::pair<std::string_view, std::wstring_view> cases[] = {
        {"", L""},
        {"gr\xC3\xBC\xC3\x9F \xE6\x97\xA5 a\xF0\x9F\x98\x80z",
         L"gr\u00FC\u00DF \u65E5 a\U0001F600z"},
        // One replacement character per maximal invalid subpart; a zero byte ends the text
        // (here right after the start of a sequence).
        {"a\xFFz|a\xE6\x97z|\xC0\xAF|end\xE6\0cd"sv, L"a\uFFFDz|a\uFFFDz|\uFFFD\uFFFD|end\uFFFD"},
        {"&lt;b&gt; &amp; &quot;q&quot; &apos;a&apos;", L"<b> & \"q\" 'a'"},
        {"&#65;&#x42;&#x6a;&#x6A;&#0065;|&#x1F600;|&#128512;|&#x10FFFF;|&#xFFFD;&#xE000;&#xD7FF;",
         L"ABjjA|\U0001F600|\U0001F600|\U0010FFFF|\uFFFD\uE000\uD7FF"},
        // Entities: one pass, left to right; a reference after an unknown one still counts.
        {"&amp;lt;|&amp;amp;|&&amp;&|&bogus;&lt;&#x;&#65;", L"&lt;|&amp;|&&&|&bogus;<&#x;A"},
        // One backslash before n, r, t gives the control character, two give a backslash
        // and the letter, three two backslashes and the letter.
        {"a\\nb\\rc\\td\\n\\n", L"a\nb\rc\td\n\n"},
        {"\\\\n|\\\\r|x\\\\ty", L"\\n|\\r|x\\ty"},
        {"\\\\\\n|\\\\\\r|\\\\\\t", L"\\\\n|\\\\r|\\\\t"},
        {"\\x \\|C:\\\\dir\\\\\\\\", L"\\x \\|C:\\dir\\\\"},
        {"http:\\/\\/host|\\/\\/\\/|\\/", L"http://host|//\\/|\\/"},
        // Entities come first, so an entity backslash takes part in the escapes; but there
        // is no second entity round.
        {"&#92;n|&#x5C;&#x5C;|&lt;\\n&gt;", L"\n|\\|<\n>"},
        {"&amp;#92;n", L"&#92;n"}};
    for (const auto& [stored, handed] : cases)
        EXPECT_EQ(DecodeStringText(stored), handed) << stored;
}

TEST(DecodeStringText, UnknownOrMalformedReferencesStayAsWritten) {
    const std::string kept = "&nbsp;|&LT;|&lt|&amp|&|a & b|&#;|&#x;|&#12a;|&#X41;|&#xD800;|"
                             "&#xDFFF;|&#55296;|&#x110000;|&#1114112;|&#99999999999999999999999;|"
                             "&#xFFFFFFFFFFFFFFFF41;|&# 65;|&#-65;|&#0;|&#x00;|&#x41";
    EXPECT_EQ(DecodeStringText(kept), std::wstring(kept.begin(), kept.end()));
}

// The escape letter is "t" for 9, "r" for 13 and "n" for any other character; the
// look-behind sees only the one character before the pair as this pass received it.
TEST(UnescapeControl, LetterAndLookBehind) {
    const auto UnescapeControl = [](std::wstring text, wchar_t ch) {
        UnescapeControlInPlace(text, ch);
        return text;
    };
    EXPECT_EQ(UnescapeControl(L"\\t\\r\\n\\\\t", 9), L"\t\\r\\n\\\\t");
    EXPECT_EQ(UnescapeControl(L"\\t\\r\\n", 13), L"\\t\r\\n");
    EXPECT_EQ(UnescapeControl(L"\\t\\r\\n\\n", L'#'), L"\\t\\r##");
    EXPECT_EQ(UnescapeControl(L"\\", 10), L"\\");
}

} // namespace

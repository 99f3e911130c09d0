// Stripping menu decorations: ampersands (1), accelerator after a tab (2), printf
// conversions (4) and hyphens (8), alone and in every combination.
#include <framework/StripMenuText.h>

#include <gtest/gtest.h>

#include <string>

namespace {

std::wstring Strip(std::wstring text, unsigned flags) {
    StripMenuText(text, flags);
    return text;
}

TEST(StripMenuText, AmpersandsAndAccelerators) {
    EXPECT_EQ(Strip(L"&Open...\tCtrl+O", 3), L"Open...");
    EXPECT_EQ(Strip(L"&Open...\tCtrl+O", 1), L"Open...\tCtrl+O");
    EXPECT_EQ(Strip(L"&Open...\tCtrl+O", 2), L"&Open...");
    EXPECT_EQ(Strip(L"Save && Close", 1), L"Save & Close");
    EXPECT_EQ(Strip(L"A&&&B", 1), L"A&B");
    EXPECT_EQ(Strip(L"Open&", 1), L"Open");
    EXPECT_EQ(Strip(L"\tCtrl+O", 2), L"");
    EXPECT_EQ(Strip(L"a\tb\tc", 2), L"a");
}

TEST(StripMenuText, ConversionsLookOnlyAtTheNextCharacter) {
    EXPECT_EQ(Strip(L"Page %d of %s", 4), L"Page  of ");
    EXPECT_EQ(Strip(L"100%", 4), L"100%");
    EXPECT_EQ(Strip(L"%%d", 4), L"%");
    EXPECT_EQ(Strip(L"%5d", 4), L"%5d");
    EXPECT_EQ(Strip(L"%ls", 4), L"%ls");
    EXPECT_EQ(Strip(L"%c%C%d%i%o%u%x%e%E%f%g%G%n%s%S", 4), L"");
    EXPECT_EQ(Strip(L"%X%D%a%p%I%%", 4), L"%X%D%a%p%I%%");
}

TEST(StripMenuText, HyphensAndOrderOfChecks) {
    EXPECT_EQ(Strip(L"Anti-alias", 8), L"Antialias");
    EXPECT_EQ(Strip(L"&%d", 5), L"");
    EXPECT_EQ(Strip(L"%&&", 5), L"%&");
    EXPECT_EQ(Strip(L"&-", 9), L"");
    // "%" keeps itself when "-" follows; the "d" after the removed "-" is plain text.
    EXPECT_EQ(Strip(L"%-d", 12), L"%d");
    EXPECT_EQ(Strip(L"&\tx", 3), L"");
}

TEST(StripMenuText, EveryFlagCombination) {
    const std::wstring text = L"&Save-As %d && more\tCtrl+-";
    const wchar_t* expected[16] = {
        L"&Save-As %d && more\tCtrl+-", // 0
        L"Save-As %d & more\tCtrl+-",   // 1
        L"&Save-As %d && more",         // 2
        L"Save-As %d & more",           // 3
        L"&Save-As  && more\tCtrl+-",   // 4
        L"Save-As  & more\tCtrl+-",     // 5
        L"&Save-As  && more",           // 6
        L"Save-As  & more",             // 7
        L"&SaveAs %d && more\tCtrl+",   // 8
        L"SaveAs %d & more\tCtrl+",     // 9
        L"&SaveAs %d && more",          // 10
        L"SaveAs %d & more",            // 11
        L"&SaveAs  && more\tCtrl+",     // 12
        L"SaveAs  & more\tCtrl+",       // 13
        L"&SaveAs  && more",            // 14
        L"SaveAs  & more",              // 15
    };
    for (unsigned flags = 0; flags < 16; ++flags) {
        EXPECT_EQ(Strip(text, flags), expected[flags]) << "flags " << flags;
        // Bits above the four are ignored.
        EXPECT_EQ(Strip(text, flags | 0xFFFFFFF0u), expected[flags]) << "flags " << flags;
    }
}

TEST(StripMenuText, EmptyTextAndEmbeddedNul) {
    for (unsigned flags = 0; flags < 16; ++flags) {
        EXPECT_EQ(Strip(L"", flags), L"");
    }
    const std::wstring withNul(L"a\0%\0&\0b\tc", 9);
    EXPECT_EQ(Strip(withNul, 2), std::wstring(L"a\0%\0&\0b", 7));
    EXPECT_EQ(Strip(withNul, 5), std::wstring(L"a\0%\0\0b\tc", 8));
}

} // namespace

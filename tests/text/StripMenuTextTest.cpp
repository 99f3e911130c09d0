// Stripping menu decorations: ampersands (1), accelerator after a tab (2), printf
// conversions (4) and hyphens (8), in one pass that checks "&", "-", tab, "%" in that order.
#include <framework/StripMenuText.h>

#include <gtest/gtest.h>

#include <string>
#include <tuple>

TEST(StripMenuText, DecorationsAndEveryFlagCombination) {
    const std::wstring all = L"&Save-As %d && more\tCtrl+-\tx";
    const std::tuple<std::wstring, unsigned, std::wstring> rows[] = {
        {L"&Open...\tCtrl+O", 3, L"Open..."},
        {L"&Open...\tCtrl+O", 1, L"Open...\tCtrl+O"},
        {L"&Open...\tCtrl+O", 2, L"&Open..."},
        {L"Save && Close", 1, L"Save & Close"},
        {L"A&&&B", 1, L"A&B"},
        {L"Open&", 1, L"Open"},
        {L"\tCtrl+O", 2, L""},
        {L"Anti-alias", 8, L"Antialias"},
        {L"", 15, L""},
        // A conversion is "%" and the one next character, which must be in the set exactly.
        {L"Page %d of %s", 4, L"Page  of "},
        {L"100%", 4, L"100%"},
        {L"%%d", 4, L"%"},
        {L"%5d", 4, L"%5d"},
        {L"%ls", 4, L"%ls"},
        {L"%c%C%d%i%o%u%x%e%E%f%g%G%n%s%S", 4, L""},
        {L"%X%D%a%p%I%%", 4, L"%X%D%a%p%I%%"},
        // A kept "%" does not join with what follows a removed "-" or "&".
        {L"%-d %&d", 15, L"%d %d"},
        {std::wstring(L"a\0%\0&\0b\tc", 9), 7, std::wstring(L"a\0%\0\0b", 6)},
        // All sixteen flag values on one text; flags 0 changes nothing.
        {all, 0, all},
        {all, 1, L"Save-As %d & more\tCtrl+-\tx"},
        {all, 2, L"&Save-As %d && more"},
        {all, 3, L"Save-As %d & more"},
        {all, 4, L"&Save-As  && more\tCtrl+-\tx"},
        {all, 5, L"Save-As  & more\tCtrl+-\tx"},
        {all, 6, L"&Save-As  && more"},
        {all, 7, L"Save-As  & more"},
        {all, 8, L"&SaveAs %d && more\tCtrl+\tx"},
        {all, 9, L"SaveAs %d & more\tCtrl+\tx"},
        {all, 10, L"&SaveAs %d && more"},
        {all, 11, L"SaveAs %d & more"},
        {all, 12, L"&SaveAs  && more\tCtrl+\tx"},
        {all, 13, L"SaveAs  & more\tCtrl+\tx"},
        {all, 14, L"&SaveAs  && more"},
        {all, 15, L"SaveAs  & more"}};
    for (const auto& [text, flags, expected] : rows) {
        for (const unsigned other : {0u, 0xFFFFFFF0u}) { // bits above the four are ignored
            std::wstring stripped = text;
            StripMenuText(stripped, flags | other);
            EXPECT_EQ(stripped, expected) << text << " with flags " << (flags | other);
        }
    }
}

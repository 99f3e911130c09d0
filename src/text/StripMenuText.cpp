// StripMenuText.cpp: removes the chosen decorations from a menu text in one left-to-right
// pass over its code units; the character after the last one reads as U+0000.
#include <framework/StripMenuText.h>

#include <cstddef>
#include <utility>

namespace {

constexpr unsigned kAmpersands = 1;
constexpr unsigned kAccelerator = 2;
constexpr unsigned kFormatSpecifiers = 4;
constexpr unsigned kHyphens = 8;

// Only the one character after "%" is looked at: flags, widths and length modifiers are
// not understood, so «%5d» and «%ls» keep their "%". Intended.
bool IsConversionLetter(wchar_t c) {
    constexpr wchar_t letters[] = L"cCdiouxeEfgGnsS";
    for (std::size_t i = 0; letters[i] != L'\0'; ++i) {
        if (letters[i] == c) {
            return true;
        }
    }
    return false;
}

} // namespace

void StripMenuText(QanStringT<wchar_t>& text, unsigned flags) {
    QanStringT<wchar_t> result;
    result.reserve(text.size());
    std::size_t i = 0;
    while (i < text.size()) {
        const wchar_t c = text[i];
        const wchar_t n = i + 1 < text.size() ? text[i + 1] : L'\0';
        if (c == L'&' && (flags & kAmpersands) != 0) {
            if (n == L'&') {
                result += L'&';
                i += 2;
            } else {
                i += 1;
            }
        } else if (c == L'-' && (flags & kHyphens) != 0) {
            i += 1;
        } else if (c == L'\t' && (flags & kAccelerator) != 0) {
            break;
        } else if (c == L'%' && (flags & kFormatSpecifiers) != 0) {
            // A doubled "%" is no escape here: «%%d» keeps the first "%" and drops "%d".
            if (IsConversionLetter(n)) {
                i += 2;
            } else {
                result += L'%';
                i += 1;
            }
        } else {
            result += c;
            i += 1;
        }
    }
    text = std::move(result);
}

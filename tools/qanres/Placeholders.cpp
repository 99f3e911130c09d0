// Placeholders.cpp: one reading of the placeholders that hosts fill in, for the
// pseudo-localiser (which keeps them) and compare (which counts them).
#include "Placeholders.h"

namespace QanTool {
namespace {

bool IsDigit(char32_t c) {
    return c >= U'0' && c <= U'9';
}

std::size_t Digits(std::u32string_view s, std::size_t i) {
    std::size_t j = i;
    while (j < s.size() && IsDigit(s[j]))
        ++j;
    return j - i;
}

} // namespace

std::size_t PlaceholderLength(std::u32string_view s, std::size_t i) {
    if (s[i] == U'{') {
        const std::size_t n = Digits(s, i + 1);
        return n && i + 1 + n < s.size() && s[i + 1 + n] == U'}' ? n + 2 : 0;
    }
    if (i + 1 >= s.size())
        return 0;
    if (s[i + 1] == U'%')
        return 2;
    // printf: %[argnum$][flags][width][.precision][length]conversion
    std::size_t j = i + 1;
    if (std::size_t n = Digits(s, j); n && j + n < s.size() && s[j + n] == U'$')
        j += n + 1;
    while (j < s.size() && std::u32string_view(U"-+ #0'").find(s[j]) != std::u32string_view::npos)
        ++j;
    auto number = [&] {
        if (j < s.size() && s[j] == U'*') {
            ++j;
            if (std::size_t n = Digits(s, j); n && j + n < s.size() && s[j + n] == U'$')
                j += n + 1;
        } else {
            j += Digits(s, j);
        }
    };
    number();
    if (j < s.size() && s[j] == U'.') {
        ++j;
        number();
    }
    for (std::u32string_view length :
         {U"hh", U"ll", U"I64", U"I32", U"h", U"l", U"L", U"q", U"j", U"z", U"Z", U"t", U"I"}) {
        if (s.substr(j, length.size()) == length) {
            j += length.size();
            break;
        }
    }
    if (j < s.size() &&
        std::u32string_view(U"diouxXeEfFgGaAcCsSpn").find(s[j]) != std::u32string_view::npos)
        return j + 1 - i;
    // Message-style "%1" (with an optional "!format!").
    if (std::size_t n = Digits(s, i + 1); n && s[i + 1] != U'0') {
        j = i + 1 + n;
        if (j < s.size() && s[j] == U'!') {
            const std::size_t close = s.find(U'!', j + 1);
            if (close != std::u32string_view::npos)
                j = close + 1;
        }
        return j - i;
    }
    return 0;
}

} // namespace QanTool

// XmlEntities.cpp: entity reversal by compaction in place: every reference is at least as
// long as what it stands for, so the writer never overtakes the reader.
#include "strings/XmlEntities.h"

#include "base/Unicode.h"

#include <cstddef>
#include <iterator>
#include <string_view>

namespace Framework::Internal {
namespace {

constexpr char32_t kMaxScalar = 0x10FFFF;

constexpr std::string_view kNamedEntities[] = {"lt;", "gt;", "amp;", "quot;", "apos;"};
constexpr char kNamedValues[] = {'<', '>', '&', '"', '\''};

template <class Char>
int DigitValue(Char c, bool hex) {
    if (c >= Char('0') && c <= Char('9'))
        return static_cast<int>(c - Char('0'));
    if (hex && c >= Char('a') && c <= Char('f'))
        return static_cast<int>(c - Char('a')) + 10;
    if (hex && c >= Char('A') && c <= Char('F'))
        return static_cast<int>(c - Char('A')) + 10;
    return -1;
}

template <class Char>
bool IsNameCharacter(Char c) {
    return (c >= Char('a') && c <= Char('z')) || (c >= Char('A') && c <= Char('Z')) ||
           (c >= Char('0') && c <= Char('9'));
}

template <class Char>
bool StartsWith(std::basic_string_view<Char> text, std::size_t at, std::string_view ascii) {
    if (text.size() < at || text.size() - at < ascii.size())
        return false;
    for (std::size_t i = 0; i < ascii.size(); ++i)
        if (text[at + i] != static_cast<Char>(ascii[i]))
            return false;
    return true;
}

// Writes one scalar value at text[at]; returns the number of code units written.
std::size_t PutScalar(QanStringT<wchar_t>& text, std::size_t at, char32_t value) {
    if constexpr (sizeof(wchar_t) == 2) {
        if (value >= 0x10000) {
            text[at] = static_cast<wchar_t>(Unicode::HighSurrogateOf(value));
            text[at + 1] = static_cast<wchar_t>(Unicode::LowSurrogateOf(value));
            return 2;
        }
    }
    text[at] = static_cast<wchar_t>(value);
    return 1;
}

} // namespace

template <class Char>
Reference ReadReference(std::basic_string_view<Char> text) {
    for (std::size_t n = 0; n < std::size(kNamedEntities); ++n)
        if (StartsWith(text, 1, kNamedEntities[n]))
            return {ReferenceVerdict::Decoded, 1 + kNamedEntities[n].size(),
                    static_cast<char32_t>(kNamedValues[n])};
    if (text.size() < 2 || text[1] != Char('#')) {
        std::size_t i = 1;
        while (i < text.size() && IsNameCharacter(text[i]))
            ++i;
        if (i > 1 && i < text.size() && text[i] == Char(';'))
            return {ReferenceVerdict::UnknownName, i + 1, 0};
        return {ReferenceVerdict::NotAReference, i, 0};
    }
    // Only a lower-case "x" marks a hexadecimal reference, as in XML.
    const bool hex = text.size() > 2 && text[2] == Char('x');
    std::size_t i = hex ? 3 : 2;
    const std::size_t firstDigit = i;
    char32_t number = 0;
    bool tooLarge = false;
    for (int digit; i < text.size() && (digit = DigitValue(text[i], hex)) >= 0; ++i) {
        number = number * (hex ? 16 : 10) + static_cast<char32_t>(digit);
        if (number > kMaxScalar) {
            tooLarge = true;
            number = kMaxScalar + 1; // keeps the product from wrapping on long digit runs
        }
    }
    if (i == firstDigit)
        return {ReferenceVerdict::NoDigits, i, 0};
    if (i == text.size() || text[i] != Char(';'))
        return {ReferenceVerdict::NoSemicolon, i, 0};
    if (tooLarge)
        return {ReferenceVerdict::OutOfRange, i + 1, 0};
    // Surrogates are no characters, and a zero character is no XML character either: it
    // would cut the text short for callers that copy it into a buffer. Both stay written.
    if (number == 0)
        return {ReferenceVerdict::Zero, i + 1, 0};
    if (Unicode::IsSurrogate(number))
        return {ReferenceVerdict::Surrogate, i + 1, 0};
    return {ReferenceVerdict::Decoded, i + 1, number};
}

template Reference ReadReference(std::basic_string_view<char> text);
template Reference ReadReference(std::basic_string_view<wchar_t> text);

void UnReplaceXmlEntities(QanStringT<wchar_t>& text) {
    std::size_t read = text.find(L'&');
    if (read == QanStringT<wchar_t>::npos)
        return;
    std::size_t write = read;
    const std::size_t size = text.size();
    while (read < size) {
        if (text[read] == L'&') {
            const Reference reference = ReadReference(QanStringViewT<wchar_t>(text).substr(read));
            if (reference.verdict == ReferenceVerdict::Decoded) {
                // The shortest reference ("&#9;") has four units and yields at most two.
                write += PutScalar(text, write, reference.value);
                read += reference.length;
                continue;
            }
        }
        text[write++] = text[read++];
    }
    text.resize(write);
}

} // namespace Framework::Internal

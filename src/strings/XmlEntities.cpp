// XmlEntities.cpp: entity reversal by compaction in place: every reference is at least as
// long as what it stands for, so the writer never overtakes the reader.
#include "strings/XmlEntities.h"

#include "base/Unicode.h"

#include <cstddef>

namespace Framework::Internal {
namespace {

constexpr char32_t kMaxScalar = 0x10FFFF;

struct NamedEntity {
    QanStringViewT<wchar_t> name; // with its closing ";"
    wchar_t value;
};

constexpr NamedEntity kNamedEntities[] = {
    {L"lt;", L'<'}, {L"gt;", L'>'}, {L"amp;", L'&'}, {L"quot;", L'"'}, {L"apos;", L'\''},
};

int DigitValue(wchar_t c, bool hex) {
    if (c >= L'0' && c <= L'9')
        return c - L'0';
    if (hex && c >= L'a' && c <= L'f')
        return c - L'a' + 10;
    if (hex && c >= L'A' && c <= L'F')
        return c - L'A' + 10;
    return -1;
}

// The reference that starts with "&" at text[0]: its length and value, or 0 when it is
// not one that is decoded.
std::size_t MatchReference(QanStringViewT<wchar_t> text, char32_t& value) {
    for (const NamedEntity& entity : kNamedEntities) {
        if (text.substr(1, entity.name.size()) == entity.name) {
            value = entity.value;
            return 1 + entity.name.size();
        }
    }
    if (text.size() < 2 || text[1] != L'#')
        return 0;
    // Only a lower-case "x" marks a hexadecimal reference, as in XML.
    const bool hex = text.size() > 2 && text[2] == L'x';
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
    if (i == firstDigit || i == text.size() || text[i] != L';' || tooLarge)
        return 0;
    // Surrogates are no characters, and a zero character is no XML character either: it
    // would cut the text short for callers that copy it into a buffer. Both stay written.
    if (number == 0 || Unicode::IsSurrogate(number))
        return 0;
    value = number;
    return i + 1;
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

void UnReplaceXmlEntities(QanStringT<wchar_t>& text) {
    std::size_t read = text.find(L'&');
    if (read == QanStringT<wchar_t>::npos)
        return;
    std::size_t write = read;
    const std::size_t size = text.size();
    while (read < size) {
        if (text[read] == L'&') {
            char32_t value = 0;
            const std::size_t length =
                MatchReference(QanStringViewT<wchar_t>(text).substr(read), value);
            if (length != 0) {
                // The shortest reference ("&#9;") has four units and yields at most two.
                write += PutScalar(text, write, value);
                read += length;
                continue;
            }
        }
        text[write++] = text[read++];
    }
    text.resize(write);
}

} // namespace Framework::Internal

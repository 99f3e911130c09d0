// XmlEntities.h: reverses the entity escaping of stored texts: the five predefined
// entities and decimal or hexadecimal character references.
#pragma once

#include <framework/QanString.h>

#include <cstddef>

namespace Framework::Internal {

// What the decoder makes of an "&": a reference it decodes, or why it leaves the text as
// written there.
enum class ReferenceVerdict {
    Decoded,       // one of the five names, or a number naming a character
    NotAReference, // "&" followed by neither a name nor "#"
    UnknownName,   // "&name;" other than lt, gt, amp, quot, apos ("&nbsp;")
    NoDigits,      // "&#;", "&#x;", "&#xZZ;"; also "&#X41;" (only a lower-case x is hex)
    NoSemicolon,   // "&#x2014" followed by anything but ";"
    OutOfRange,    // above U+10FFFF
    Surrogate,     // U+D800 to U+DFFF
    Zero,          // U+0000
};

struct Reference {
    ReferenceVerdict verdict = ReferenceVerdict::NotAReference;
    std::size_t length = 0; // of the reference when decoded; of the name or digits read else
    char32_t value = 0;     // when decoded
};

// Reads the reference that starts with "&" at text[0]: ReadReference("&#x41;") is decoded,
// length 6, value U+0041; ReadReference("&#x2014 ") has verdict NoSemicolon. Text is bytes
// or wide characters; references are ASCII either way.
template <class Char>
Reference ReadReference(std::basic_string_view<Char> text);

// Decodes in place, in one left-to-right pass (so "&amp;lt;" gives "&lt;"). References to
// surrogates or values above U+10FFFF, unknown names and malformed references stay as
// written. A value above U+FFFF becomes a surrogate pair where wchar_t is 16 bits wide.
void UnReplaceXmlEntities(QanStringT<wchar_t>& text);

} // namespace Framework::Internal

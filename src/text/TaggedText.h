// TaggedText.h: the field marker of tagged resource texts and the one function that
// writes a field. A tagged text is U+0001, a two-letter tag, "=" and a value, repeated:
// "\x01CT=&Open\x01TT=Opens a document".
#pragma once

#include <framework/QanString.h>

namespace Framework::Internal {

// The field marker that opens a tagged text and each of its fields.
inline constexpr wchar_t kFieldMarker = L'\x0001';

// Appends one field, marker, tag, "=" and value: AppendTaggedField(t, L"CT", L"&Open")
// appends "\x01CT=&Open". An empty value still makes a field.
inline void AppendTaggedField(QanStringT<wchar_t>& text, QanStringViewT<wchar_t> tag,
                              QanStringViewT<wchar_t> value) {
    text += kFieldMarker;
    text += tag;
    text += L'=';
    text += value;
}

} // namespace Framework::Internal

// FindTaggedField.cpp: reads one field out of a tagged text or one line out of an
// untagged one. Works on code units and never decodes, so any content gives a result.
#include "text/FindTaggedField.h"

#include "text/Tokenize.h"

#include <cstddef>

namespace Framework::Internal {
namespace {

// Value of a field token: everything after the tag and its "=" (empty when shorter).
QanStringViewT<wchar_t> AfterTag(QanStringViewT<wchar_t> token) {
    return token.size() > 3 ? token.substr(3) : QanStringViewT<wchar_t>{};
}

bool FindInTagged(QanStringViewT<wchar_t> text, QanStringViewT<wchar_t> tag,
                  QanStringT<wchar_t>& out) {
    constexpr wchar_t markerSet[] = {kFieldMarker};
    const QanStringViewT<wchar_t> delims(markerSet, 1);
    std::ptrdiff_t pos = 0;
    for (QanStringViewT<wchar_t> token = Tokenize(text, delims, pos); pos >= 0;
         token = Tokenize(text, delims, pos)) {
        // Only the two tag letters are compared; the third code unit is not checked to be
        // "=". This leniency is intended: «CTX=abc» matches "CT" and gives «=abc».
        if (token.substr(0, 2) == tag) {
            out.assign(AfterTag(token));
            return true;
        }
    }
    return false;
}

bool FindInUntagged(QanStringViewT<wchar_t> text, QanStringViewT<wchar_t> tag,
                    QanStringT<wchar_t>& out) {
    // Built once, on first use, with the language's thread-safe initialisation.
    static const QanStringT<wchar_t> longPromptTag(L"LP");
    static const QanStringT<wchar_t> tipTextTag(L"TT");
    static const QanStringT<wchar_t> captionTag(L"CT");

    const QanStringViewT<wchar_t> newline(L"\n", 1);
    std::ptrdiff_t pos = 0;
    const QanStringViewT<wchar_t> line1 = Tokenize(text, newline, pos);
    QanStringViewT<wchar_t> line2;
    QanStringViewT<wchar_t> line3;
    if (pos >= 0) {
        line2 = Tokenize(text, newline, pos);
    }
    if (pos >= 0) {
        line3 = Tokenize(text, newline, pos);
    }
    if (line3.empty()) {
        line3 = line2.empty() ? line1 : line2;
    }

    // An untagged text has these three fields only; a found line counts even when empty.
    if (tag == longPromptTag) {
        out.assign(line1);
    } else if (tag == tipTextTag) {
        out.assign(line2);
    } else if (tag == captionTag) {
        out.assign(line3);
    } else {
        return false;
    }
    return true;
}

} // namespace

bool FindTaggedFieldIn(QanStringViewT<wchar_t> text, const wchar_t* tag, QanStringT<wchar_t>& out) {
    out.clear();
    if (tag == nullptr || text.empty()) {
        return false;
    }
    const QanStringViewT<wchar_t> tagView(tag);
    return text.front() == kFieldMarker ? FindInTagged(text, tagView, out)
                                        : FindInUntagged(text, tagView, out);
}

bool FindTaggedField(const QanStringT<wchar_t>& text, const wchar_t* tag,
                     QanStringT<wchar_t>& out) {
    return FindTaggedFieldIn(text, tag, out);
}

} // namespace Framework::Internal

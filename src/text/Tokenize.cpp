// Tokenize.cpp: the delimiter-run-skipping tokenizer beneath the tagged-text reader.
// Works on code units only; any value, U+0000 included, may be a delimiter or text.
#include "text/Tokenize.h"

namespace Framework::Internal {

QanStringViewT<wchar_t> Tokenize(QanStringViewT<wchar_t> text, QanStringViewT<wchar_t> delims,
                                 std::ptrdiff_t& pos) {
    if (pos < 0 || static_cast<std::size_t>(pos) >= text.size()) {
        pos = -1;
        return {};
    }
    // Both callers split on one code unit; that case scans with find (wmemchr) instead of
    // testing each code unit against a set.
    const bool single = delims.size() == 1;
    const std::size_t start =
        single ? text.find_first_not_of(delims.front(), static_cast<std::size_t>(pos))
               : text.find_first_not_of(delims, static_cast<std::size_t>(pos));
    if (start == QanStringViewT<wchar_t>::npos) {
        pos = -1;
        return {};
    }
    std::size_t end = single ? text.find(delims.front(), start) : text.find_first_of(delims, start);
    if (end == QanStringViewT<wchar_t>::npos) {
        end = text.size();
    }
    pos = static_cast<std::ptrdiff_t>(end) + 1;
    return text.substr(start, end - start);
}

} // namespace Framework::Internal

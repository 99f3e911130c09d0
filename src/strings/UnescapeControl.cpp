// UnescapeControl.cpp: one pass per control character. The look-behind sees only the one
// character before the pair as this pass received it, even when that character closed an
// earlier pair: so "\\n" stays for the later "\\" step and "\\\n" ends as "\\n". Intended.
#include "strings/UnescapeControl.h"

#include <cstddef>

namespace Framework::Internal {

void UnescapeControlInPlace(QanStringT<wchar_t>& text, wchar_t ch) {
    const std::size_t length = text.size();
    if (length < 2)
        return;
    const wchar_t letter = ch == 9 ? L't' : (ch == 13 ? L'r' : L'n');
    // The writer never passes the reader, and every position at or after the writer still
    // holds this pass's input, so text[i - 1] is read as it was received.
    std::size_t i = 0;
    std::size_t out = 0;
    while (i < length - 1) {
        if (text[i] == L'\\' && text[i + 1] == letter) {
            if (i > 0 && text[i - 1] == L'\\') {
                text[out++] = text[i];
                text[out++] = text[i + 1];
            } else {
                text[out++] = ch;
            }
            i += 2;
        } else {
            text[out++] = text[i++];
        }
    }
    if (i == length - 1)
        text[out++] = text[i];
    text.resize(out);
}

} // namespace Framework::Internal

// Backslashes.cpp: one pass that compacts the text in place.
#include "text/Backslashes.h"

namespace Framework::Internal {

void CollapseBackslashPairs(QanStringT<wchar_t>& text) {
    std::size_t write = 0;
    for (std::size_t read = 0; read < text.size(); ++read, ++write) {
        text[write] = text[read];
        if (text[read] == L'\\' && read + 1 < text.size() && text[read + 1] == L'\\')
            ++read;
    }
    text.resize(write);
}

} // namespace Framework::Internal

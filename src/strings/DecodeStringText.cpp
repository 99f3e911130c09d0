// DecodeStringText.cpp: the decode steps in their fixed order. Entities come first, so a
// backslash written as an entity takes part in the escapes like a literal one.
#include "strings/DecodeStringText.h"

#include "base/Unicode.h"
#include "strings/UnescapeControl.h"
#include "strings/XmlEntities.h"
#include "text/Backslashes.h"

#include <cstring>

namespace Framework::Internal {
namespace {

// Replaces every from by to, left to right and without overlaps; to is never longer
// than from, so the text is rewritten in place.
void ReplaceAllShrinking(QanStringT<wchar_t>& text, QanStringViewT<wchar_t> from,
                         QanStringViewT<wchar_t> to) {
    std::size_t read = text.find(from);
    if (read == QanStringT<wchar_t>::npos)
        return;
    std::size_t write = read;
    while (read < text.size()) {
        if (QanStringViewT<wchar_t>(text).substr(read, from.size()) == from) {
            for (wchar_t c : to)
                text[write++] = c;
            read += from.size();
        } else {
            text[write++] = text[read++];
        }
    }
    text.resize(write);
}

} // namespace

QanStringT<wchar_t> DecodeStringText(QanStringViewT<char> text) {
    if (text.empty())
        return {};
    if (const void* zero = std::memchr(text.data(), 0, text.size()))
        text =
            text.substr(0, static_cast<std::size_t>(static_cast<const char*>(zero) - text.data()));
    // Most texts hold neither an entity nor a backslash: those are only decoded from UTF-8,
    // which writes straight into the result.
    QanStringT<wchar_t> result;
    Utf8::DecodeAppend(text, result);
    if (!std::memchr(text.data(), '&', text.size()) && !std::memchr(text.data(), '\\', text.size()))
        return result;

    UnReplaceXmlEntities(result);
    if (result.find(L'\\') == QanStringT<wchar_t>::npos)
        return result;

    ReplaceAllShrinking(result, L"\\/\\/", L"//");
    UnescapeControlInPlace(result, L'\n');
    UnescapeControlInPlace(result, L'\r');
    UnescapeControlInPlace(result, L'\t');
    CollapseBackslashPairs(result);
    return result;
}

bool IsPlainText(QanStringViewT<char> text) {
    return text.empty() || (!std::memchr(text.data(), 0, text.size()) &&
                            !std::memchr(text.data(), '&', text.size()) &&
                            !std::memchr(text.data(), '\\', text.size()));
}

QanStringT<wchar_t> DecodePlainText(QanStringViewT<char> text) {
    QanStringT<wchar_t> result;
    Utf8::DecodeAppend(text, result);
    return result;
}

} // namespace Framework::Internal

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
    if (!text.empty()) {
        if (const void* zero = std::memchr(text.data(), 0, text.size()))
            text = text.substr(
                0, static_cast<std::size_t>(static_cast<const char*>(zero) - text.data()));
    }
    // Plain ASCII without '&' or '\\' (most texts) has nothing to decode: widened straight
    // into the result.
    std::size_t plain = 0;
    for (; plain < text.size(); ++plain) {
        const auto byte = static_cast<unsigned char>(text[plain]);
        if (byte >= 0x80 || byte == '&' || byte == '\\')
            break;
    }
    if (plain == text.size()) {
        QanStringT<wchar_t> result(text.size(), L'\0');
        for (std::size_t i = 0; i < text.size(); ++i)
            result[i] = static_cast<wchar_t>(static_cast<unsigned char>(text[i]));
        return result;
    }

    // Never more wide units than bytes: one allocation for the whole result.
    QanStringT<wchar_t> result;
    result.reserve(text.size());
    Utf8::DecodeAppend(text, result);

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

} // namespace Framework::Internal

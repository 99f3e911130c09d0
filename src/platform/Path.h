// Path.h: joining paths with the system's separator (backslash on Windows, slash
// elsewhere). Pure text operations: nothing here asks the file system.
#pragma once

#include <framework/QanString.h>

namespace Framework::Path {

#if defined(_WIN32)
inline constexpr wchar_t kSeparator = L'\\';
#else
inline constexpr wchar_t kSeparator = L'/';
#endif

// Whether c separates path parts: the system's separator (and on Windows also '/').
constexpr bool IsSeparator(wchar_t c) {
#if defined(_WIN32)
    return c == L'\\' || c == L'/';
#else
    return c == L'/';
#endif
}

// Joins base and name with exactly one separator between them; an empty base gives name
// unchanged, an empty name gives base with a trailing separator.
QanStringT<wchar_t> Combine(QanStringViewT<wchar_t> base, QanStringViewT<wchar_t> name);
// Appends a separator unless the path already ends with one (or is empty).
QanStringT<wchar_t> AddBackslash(QanStringViewT<wchar_t> path);

} // namespace Framework::Path

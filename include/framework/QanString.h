// QanString.h: the string types hosts pass to and receive from the library.
// They are the standard string and string view, so any std::wstring or literal serves.
#pragma once

#include <string>
#include <string_view>

template <class C>
using QanStringT = std::basic_string<C>;

template <class C>
using QanStringViewT = std::basic_string_view<C>;

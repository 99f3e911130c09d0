// ByteSearch.h: the bounded byte search that the table scanners are built on. A span of
// zero or negative length finds nothing, so a scan can never look outside its buffer.
#pragma once

#include <cstddef>
#include <cstring>

namespace Framework::Internal {

inline const char* FindByte(const char* from, char byte, std::ptrdiff_t length) noexcept {
    if (length <= 0)
        return nullptr;
    return static_cast<const char*>(std::memchr(from, byte, static_cast<std::size_t>(length)));
}

} // namespace Framework::Internal

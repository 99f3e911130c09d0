// Reading.h: how a row as its author wrote it fares in the library's own scan of the file.
#pragma once

#include <cstddef>
#include <string_view>

namespace QanTool {

enum class Reading {
    Kept,    // a row starts where the written one does and holds it as written
    Misread, // a row starts there, but its key, id or text differs from what is written
    NotRead, // no row starts there
};

// Where a view into bytes starts in them.
inline std::size_t OffsetIn(std::string_view bytes, std::string_view part) {
    return static_cast<std::size_t>(part.data() - bytes.data());
}

} // namespace QanTool

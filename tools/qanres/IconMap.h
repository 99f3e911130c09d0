// IconMap.h: icons.map.xml as the library reads it (its own ScanIconMap), in the tool's
// terms: UTF-8 keys and file names for messages, the library's verdict worded for a user,
// and the layout that lets fmt move whole entries with the comments before them.
#pragma once

#include "icons/IconMapScan.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace QanTool {

// Every finding that reports a rejected map says this.
inline constexpr std::string_view kMapRejected = "the library rejects the whole map";

struct IconMapItem {
    std::size_t begin = 0; // the '<' of its start tag
    std::size_t end = 0;   // one past the '>' of its end tag
    std::string key;       // UTF-8, as the library keeps it
    std::string file;      // UTF-8, as the library keeps it
    std::u16string key16;  // the key in UTF-16, the order of the library's search on Windows
};

struct IconMapView {
    Framework::Internal::IconMapScan scan; // the library's reading, with spans
    std::vector<IconMapItem> entries;      // one per scan entry
    std::string fault;                     // when rejected: what is wrong, ending in kMapRejected
};

IconMapView ReadIconMap(std::string_view bytes);

// Where each entry's chunk starts when the entries are siblings with only white space and
// comments between them: a chunk runs from the end of the previous entry (for the first,
// from the white space and comments before it) to the end of its own element, so that
// comments move with the entry after them. Nothing, with the offset of the obstacle in
// at, when the entries cannot be moved that way.
std::optional<std::vector<std::size_t>>
IconMapChunkStarts(std::string_view bytes, const IconMapView& view, std::size_t& at);

} // namespace QanTool

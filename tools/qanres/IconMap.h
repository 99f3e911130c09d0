// IconMap.h: icons.map.xml read by a small XML reader of the tool's own, reporting what
// makes the library reject the whole map (malformed XML, a nested or empty "map", an
// attribute other than the single "guid") and where each entry stands.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace QanTool {

struct IconMapEntry {
    std::size_t begin = 0;      // the '<' of its start tag
    std::size_t end = 0;        // one past the '>' of its end tag
    std::size_t chunkBegin = 0; // first byte after the previous sibling (comments kept with it)
    int depth = 0;              // 1: a child of the root element
    std::string key;            // the "guid" value, entities decoded (UTF-8)
    std::string file;           // the text content, entities decoded, untrimmed
};

struct IconMapProblem {
    std::size_t offset = 0;
    std::string message;
    // Set when the map holds what this reader does not model (declarations in a document
    // type declaration): whether the library keeps the map is then not known.
    bool unchecked = false;
};

struct IconMapView {
    std::vector<IconMapEntry> entries;
    std::vector<IconMapProblem> problems; // any one not unchecked empties the library's map
    bool flat = true;                     // every map a child of the root, nothing else there
    std::size_t rootContentEnd = 0;       // the '<' of the root's end tag
};

IconMapView ReadIconMap(std::string_view bytes);

} // namespace QanTool

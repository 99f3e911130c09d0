// IconMapScan.h: the one reading of "icons.map.xml". The library loads the map through it,
// and the qanres tool checks and formats maps through it, so both always agree on what a
// map holds and on whether it is rejected.
#pragma once

#include <framework/QanString.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Framework::Internal {

struct IconMapEntry {
    QanStringT<wchar_t> key;
    QanStringT<wchar_t> fileName;
};

// Why the library rejects a whole map; any one of them empties it.
enum class IconMapFault {
    None,
    MalformedXml,   // the XML parser refused the bytes (detail: its message)
    NestedMap,      // a "map" started while another one with a non-empty key was open
    AttributeCount, // a "map" without exactly one attribute (detail: how many it has)
    AttributeName,  // the one attribute of a "map" is not "guid" (detail: its name)
    EmptyFileName,  // a "map" whose text is empty
    NoParser,       // the XML parser could not be created
};

// Bytes [begin, end) of an entry's element: from the '<' of its start tag to one past
// the '>' of its end tag, as the parser reports them (both at the reference of an entity
// for a "map" that an entity expands to).
struct IconMapSpan {
    std::size_t begin = 0;
    std::size_t end = 0;
};

struct IconMapScan {
    // The map as the library keeps it, in document order; empty when rejected.
    std::vector<IconMapEntry> entries;
    // One per entry, when asked for.
    std::vector<IconMapSpan> spans;
    IconMapFault fault = IconMapFault::None;
    // Where the fault stands: the parser's error position for malformed XML, else the '<'
    // of the start tag of the "map" at fault.
    std::size_t faultOffset = 0;
    std::string detail;

    bool Accepted() const { return fault == IconMapFault::None; }
};

// The same reading fed in pieces, for a reader that never holds the whole file: Feed each
// piece in order, then Finish. Feed returns false once the map is rejected (further pieces
// change nothing). The verdict and positions do not depend on where the pieces end.
class IconMapScanner {
public:
    explicit IconMapScanner(bool withSpans = false);
    ~IconMapScanner();
    IconMapScanner(const IconMapScanner&) = delete;
    IconMapScanner& operator=(const IconMapScanner&) = delete;

    bool Feed(std::string_view piece);
    IconMapScan Finish();

private:
    struct State;
    std::unique_ptr<State> state;
};

// Reads an icon map: "map" elements at any depth, each with exactly one attribute "guid"
// (the key) and a non-empty text (the file name, taken exactly); the first fault stops
// the reading. withSpans also records each entry's bytes, which loading does not need.
IconMapScan ScanIconMap(std::string_view bytes, bool withSpans = false);

} // namespace Framework::Internal

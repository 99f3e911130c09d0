// IconMapLoader.cpp: reads "icons.map.xml" with expat. Only "map" elements count, at any
// depth; one malformed "map" rejects the whole file and leaves the map as it was.
#include "icons/IconMapScan.h"
#include "icons/IconResourceCollection.h"

#include "base/Unicode.h"
#include "platform/Platform.h"
#include "platform/UnreadFile.h"

#include <expat.h>

#include <algorithm>

namespace Framework::Internal {
namespace {

QanStringT<wchar_t> Wide(const XML_Char* text) {
    return Utf8::Decode(text ? text : "");
}

// What the three parser callbacks share while the document is read.
struct MapReader {
    MapReader(XML_Parser parser, bool withSpans) : parser(parser), withSpans(withSpans) {}

    XML_Parser parser;
    bool withSpans;
    std::vector<IconMapEntry> entries;
    QanStringT<wchar_t> key;
    QanStringT<wchar_t> text;
    // The start of each open "map" (more than one only under maps with an empty key).
    std::vector<std::size_t> openMaps;
    std::vector<IconMapSpan> spans;
    // Where the reading stopped, once a callback rejected the map.
    IconMapFault fault = IconMapFault::None;
    std::size_t faultOffset = 0;
    std::string detail;

    bool Rejected() const { return fault != IconMapFault::None; }

    std::size_t Position() const {
        const XML_Index at = XML_GetCurrentByteIndex(parser);
        return at < 0 ? 0 : static_cast<std::size_t>(at);
    }

    void StartElement(const XML_Char* name, const XML_Char** attributes) {
        if (Wide(name) != L"map")
            return;
        if (!key.empty())
            return Reject(IconMapFault::NestedMap, Position()); // a "map" inside a "map"
        std::size_t count = 0;
        while (attributes && attributes[2 * count])
            ++count;
        if (count != 1) // exactly one attribute
            return Reject(IconMapFault::AttributeCount, Position(), std::to_string(count));
        if (Wide(attributes[0]) != L"guid")
            return Reject(IconMapFault::AttributeName, Position(), attributes[0]);
        text.clear();
        key = Wide(attributes[1]);
        openMaps.push_back(Position());
    }

    void CharacterData(const XML_Char* data, int length) {
        // Text outside every "map" is never part of a file name: the next "map" start
        // would discard it, so it is not kept at all.
        if (openMaps.empty())
            return;
        Utf8::DecodeAppend(QanStringViewT<char>(data, static_cast<std::size_t>(length)), text);
    }

    void EndElement(const XML_Char* name) {
        if (Wide(name) != L"map")
            return;
        if (text.empty()) // a "map" without a file name invalidates the file
            return Reject(IconMapFault::EmptyFileName, openMaps.back());
        if (withSpans) {
            // The end tag's bytes (the reference's, for a map that an entity expands to).
            const int tag = XML_GetCurrentByteCount(parser);
            spans.push_back(
                {openMaps.back(), Position() + static_cast<std::size_t>(tag > 0 ? tag : 0)});
        }
        openMaps.pop_back();
        entries.push_back({std::move(key), std::move(text)});
        key.clear();
        text.clear();
    }

    void Reject(IconMapFault why, std::size_t at, std::string what = {}) {
        fault = why;
        faultOffset = at;
        detail = std::move(what);
        XML_StopParser(parser, XML_FALSE);
    }
};

void XMLCALL OnStart(void* user, const XML_Char* name, const XML_Char** attributes) {
    auto* reader = static_cast<MapReader*>(user);
    if (!reader->Rejected())
        reader->StartElement(name, attributes);
}

void XMLCALL OnEnd(void* user, const XML_Char* name) {
    auto* reader = static_cast<MapReader*>(user);
    if (!reader->Rejected())
        reader->EndElement(name);
}

void XMLCALL OnText(void* user, const XML_Char* data, int length) {
    auto* reader = static_cast<MapReader*>(user);
    if (!reader->Rejected())
        reader->CharacterData(data, length);
}

} // namespace

struct IconMapScanner::State {
    struct ParserOwner {
        XML_Parser parser = XML_ParserCreate(nullptr);
        ~ParserOwner() {
            if (parser)
                XML_ParserFree(parser);
        }
    } owner;
    MapReader reader;
    IconMapScan scan;
    bool done = false;

    explicit State(bool withSpans) : reader(owner.parser, withSpans) {
        if (!owner.parser) {
            scan.fault = IconMapFault::NoParser;
            done = true;
            return;
        }
        XML_SetUserData(owner.parser, &reader);
        XML_SetElementHandler(owner.parser, OnStart, OnEnd);
        XML_SetCharacterDataHandler(owner.parser, OnText);
    }

    // Parses one piece; false once the map is rejected.
    bool Parse(const char* data, std::size_t size, bool last) {
        if (done)
            return scan.Accepted();
        if (XML_Parse(owner.parser, data, static_cast<int>(size), last ? XML_TRUE : XML_FALSE) !=
                XML_STATUS_OK ||
            reader.Rejected()) {
            if (reader.Rejected()) {
                scan.fault = reader.fault;
                scan.faultOffset = reader.faultOffset;
                scan.detail = std::move(reader.detail);
            } else {
                scan.fault = IconMapFault::MalformedXml;
                scan.faultOffset = reader.Position();
                scan.detail = XML_ErrorString(XML_GetErrorCode(owner.parser));
            }
            done = true;
            return false;
        }
        return true;
    }
};

IconMapScanner::IconMapScanner(bool withSpans) : state(std::make_unique<State>(withSpans)) {}
IconMapScanner::~IconMapScanner() = default;

bool IconMapScanner::Feed(std::string_view piece) {
    // expat takes int lengths, and copies what it is given into a buffer of its own: a
    // megabyte at a time keeps that buffer small whatever the caller hands over.
    constexpr std::size_t kChunk = std::size_t{1} << 20;
    do {
        const std::size_t size = std::min(piece.size(), kChunk);
        if (!state->Parse(piece.empty() ? "" : piece.data(), size, false))
            return false;
        piece.remove_prefix(size);
    } while (!piece.empty());
    return true;
}

IconMapScan IconMapScanner::Finish() {
    if (state->Parse("", 0, true)) {
        state->scan.entries = std::move(state->reader.entries);
        state->scan.spans = std::move(state->reader.spans);
    }
    return std::move(state->scan);
}

IconMapScan ScanIconMap(std::string_view bytes, bool withSpans) {
    IconMapScanner scanner(withSpans);
    scanner.Feed(bytes);
    return scanner.Finish();
}

namespace {

const wchar_t* FaultText(IconMapFault fault) {
    switch (fault) {
    case IconMapFault::None:
        break;
    case IconMapFault::MalformedXml:
        return L"malformed XML";
    case IconMapFault::NestedMap:
        return L"a map inside another map";
    case IconMapFault::AttributeCount:
        return L"a map without exactly one attribute";
    case IconMapFault::AttributeName:
        return L"a map whose attribute is not guid";
    case IconMapFault::EmptyFileName:
        return L"a map with an empty file name";
    case IconMapFault::NoParser:
        return L"no XML parser";
    }
    return L"";
}

void DescribeMapScan(LoadReport::FileRecord& record, const IconMapScan& scan, std::uint64_t size) {
    record.bytes = size;
    if (scan.Accepted()) {
        record.outcome = LoadReport::Outcome::Read;
        record.rows = scan.entries.size();
        return;
    }
    // One fault empties the whole map.
    record.outcome = LoadReport::Outcome::Refused;
    record.rows = 0;
    record.reason = FaultText(scan.fault);
    if (!scan.detail.empty()) {
        record.reason += L" (";
        // The detail is the parser's ASCII message, an attribute name or a count.
        for (const unsigned char c : scan.detail)
            record.reason += static_cast<wchar_t>(c);
        record.reason += L")";
    }
    if (scan.fault != IconMapFault::NoParser)
        record.offset = scan.faultOffset;
}

} // namespace

void LoadIconMap(std::vector<IconMapEntry>& entries, const wchar_t* path,
                 LoadReport::FileRecord* record) {
    // A missing or unreadable file is the same as a rejected map: entries stay as they are.
    // The file is read in pieces, so that memory follows what the map keeps, not its size.
    if (record)
        record->path = path;
    IconMapScanner scanner;
    std::uint64_t size = 0;
    bool rejected = false;
    const bool read =
        Platform::CurrentPlatform().ReadFileInPieces(path, [&](std::string_view piece) {
            size += piece.size();
            rejected = !scanner.Feed(piece);
            return !rejected; // a rejected map needs no more of the file
        });
    if (!read && !rejected) {
        if (record)
            Platform::DescribeUnreadFile(*record, path);
        return;
    }
    IconMapScan scan = scanner.Finish();
    if (record)
        DescribeMapScan(*record, scan, size);
    if (scan.Accepted())
        entries = std::move(scan.entries);
}

} // namespace Framework::Internal

// IconMapLoader.cpp: reads "icons.map.xml" with expat. Only "map" elements count, at any
// depth; one malformed "map" rejects the whole file and leaves the map as it was.
#include "icons/IconResourceCollection.h"

#include "base/Unicode.h"
#include "platform/Platform.h"

#include <exception>
#include <expat.h>
#include <limits>

namespace Framework::Internal {
namespace {

// Raised when the icon map cannot be read and caught by LoadIconMap itself; it never
// reaches the service.
class IconResourceLoadException : public std::exception {};

QanStringT<wchar_t> Wide(const XML_Char* text) {
    return Utf8::Decode(text ? text : "");
}

// What the three parser callbacks share while the document is read.
struct MapHandler {
    std::vector<IconMapEntry> entries;
    QanStringT<wchar_t> key;
    QanStringT<wchar_t> text;

    bool StartElement(const XML_Char* name, const XML_Char** attributes) {
        if (Wide(name) != L"map")
            return true;
        if (!key.empty())
            return false; // a "map" inside a "map"
        if (!attributes || !attributes[0] || attributes[2])
            return false; // exactly one attribute
        if (Wide(attributes[0]) != L"guid")
            return false;
        text.clear();
        key = Wide(attributes[1]);
        return true;
    }

    bool CharacterData(const XML_Char* data, int length) {
        // Text outside "map" elements is kept too; the next "map" start discards it.
        Utf8::DecodeAppend(QanStringViewT<char>(data, static_cast<std::size_t>(length)), text);
        return true;
    }

    bool EndElement(const XML_Char* name) {
        if (Wide(name) != L"map")
            return true;
        if (text.empty())
            return false; // a "map" without a file name invalidates the file
        entries.push_back({std::move(key), std::move(text)});
        key.clear();
        text.clear();
        return true;
    }
};

struct ParseState {
    XML_Parser parser;
    MapHandler handler;
    bool rejected = false;

    void Reject() {
        if (!rejected) {
            rejected = true;
            XML_StopParser(parser, XML_FALSE);
        }
    }
};

void XMLCALL OnStart(void* user, const XML_Char* name, const XML_Char** attributes) {
    auto* state = static_cast<ParseState*>(user);
    if (!state->rejected && !state->handler.StartElement(name, attributes))
        state->Reject();
}

void XMLCALL OnEnd(void* user, const XML_Char* name) {
    auto* state = static_cast<ParseState*>(user);
    if (!state->rejected && !state->handler.EndElement(name))
        state->Reject();
}

void XMLCALL OnText(void* user, const XML_Char* data, int length) {
    auto* state = static_cast<ParseState*>(user);
    if (!state->rejected && !state->handler.CharacterData(data, length))
        state->Reject();
}

// The map in document order; throws IconResourceLoadException when the file is missing,
// is not well-formed XML, or a callback rejected it.
std::vector<IconMapEntry> ParseFile(const wchar_t* path) {
    std::uint64_t size = 0;
    const auto bytes = Platform::CurrentPlatform().ReadFileInfoBuffer(path, size);
    if (!bytes)
        throw IconResourceLoadException();

    struct ParserOwner {
        XML_Parser parser;
        ~ParserOwner() {
            if (parser)
                XML_ParserFree(parser);
        }
    } owner{XML_ParserCreate(nullptr)};
    if (!owner.parser)
        throw IconResourceLoadException();

    ParseState state{owner.parser, {}, false};
    XML_SetUserData(owner.parser, &state);
    XML_SetElementHandler(owner.parser, OnStart, OnEnd);
    XML_SetCharacterDataHandler(owner.parser, OnText);

    // expat takes int lengths; a larger file is fed in pieces.
    constexpr std::uint64_t kChunk = std::numeric_limits<int>::max() / 2;
    const char* next = bytes.get();
    std::uint64_t left = size;
    do {
        const std::uint64_t piece = left < kChunk ? left : kChunk;
        left -= piece;
        const XML_Bool last = left == 0 ? XML_TRUE : XML_FALSE;
        if (XML_Parse(owner.parser, next, static_cast<int>(piece), last) != XML_STATUS_OK ||
            state.rejected)
            throw IconResourceLoadException();
        next += piece;
    } while (left > 0);
    return std::move(state.handler.entries);
}

} // namespace

void LoadIconMap(std::vector<IconMapEntry>& entries, const wchar_t* path) {
    // The loader reports its failure to itself: a bad map is the same as no map.
    try {
        entries = ParseFile(path);
    } catch (const IconResourceLoadException&) {
    }
}

} // namespace Framework::Internal

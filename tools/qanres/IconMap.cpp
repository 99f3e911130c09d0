// IconMap.cpp: the library's reading of an icon map put into words, and the minimal layout
// reading (white space and comments between entries) that reordering needs.
#include "IconMap.h"

#include "base/Unicode.h"

#include "Bytes.h"

namespace QanTool {
namespace {

using Framework::Internal::IconMapFault;

std::string Describe(const Framework::Internal::IconMapScan& scan) {
    const std::string rejected = ": " + std::string(kMapRejected);
    switch (scan.fault) {
    case IconMapFault::None:
        return {};
    case IconMapFault::MalformedXml:
        return "not well-formed XML (" + scan.detail + ")" + rejected;
    case IconMapFault::NestedMap:
        return "a \"map\" inside another \"map\"" + rejected;
    case IconMapFault::AttributeCount:
        return "a \"map\" element needs exactly one attribute, \"guid\" (it has " + scan.detail +
               ")" + rejected;
    case IconMapFault::AttributeName:
        return "the attribute of \"map\" must be named \"guid\", not " + Quote(scan.detail) +
               rejected;
    case IconMapFault::EmptyFileName:
        return "a \"map\" element without a file name" + rejected;
    case IconMapFault::NoParser:
        return "the XML parser could not be created" + rejected;
    }
    return "unknown fault" + rejected;
}

bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// True when bytes hold only white space and complete comments.
bool OnlySpaceAndComments(std::string_view bytes) {
    std::size_t i = 0;
    while (i < bytes.size()) {
        if (IsSpace(bytes[i])) {
            ++i;
        } else if (bytes.substr(i, 4) == "<!--") {
            const std::size_t close = bytes.find("-->", i + 4);
            if (close == std::string_view::npos)
                return false;
            i = close + 3;
        } else {
            return false;
        }
    }
    return true;
}

// The earliest offset before at from which only white space and comments lead up to at.
std::size_t StartOfSpaceAndComments(std::string_view bytes, std::size_t at) {
    std::size_t start = at;
    for (;;) {
        while (start > 0 && IsSpace(bytes[start - 1]))
            --start;
        if (start < 3 || bytes.substr(start - 3, 3) != "-->")
            return start;
        // A comment holds no "--", so its start is the last "<!--" before its end.
        const std::size_t open = bytes.rfind("<!--", start - 3);
        if (open == std::string_view::npos || bytes.find("-->", open + 4) != start - 3)
            return start;
        start = open;
    }
}

} // namespace

IconMapView ReadIconMap(std::string_view bytes) {
    IconMapView view;
    view.scan = Framework::Internal::ScanIconMap(bytes, true);
    view.fault = Describe(view.scan);
    for (std::size_t i = 0; i < view.scan.entries.size(); ++i) {
        const auto& entry = view.scan.entries[i];
        IconMapItem item;
        item.begin = view.scan.spans[i].begin;
        item.end = view.scan.spans[i].end;
        item.key = Framework::Utf8::Encode(entry.key);
        item.file = Framework::Utf8::Encode(entry.fileName);
        item.key16 = ToUtf16(item.key);
        view.entries.push_back(std::move(item));
    }
    return view;
}

std::optional<std::vector<std::size_t>>
IconMapChunkStarts(std::string_view bytes, const IconMapView& view, std::size_t& at) {
    std::vector<std::size_t> starts;
    std::size_t previousEnd = 0;
    for (const auto& e : view.entries) {
        // An element of its own: not an entity's expansion, not inside another entry.
        at = e.begin;
        if (e.end <= e.begin || e.end > bytes.size() || bytes.substr(e.begin, 4) != "<map" ||
            e.begin < previousEnd)
            return std::nullopt;
        if (starts.empty()) {
            starts.push_back(StartOfSpaceAndComments(bytes, e.begin));
        } else {
            at = previousEnd;
            if (!OnlySpaceAndComments(bytes.substr(previousEnd, e.begin - previousEnd)))
                return std::nullopt;
            starts.push_back(previousEnd);
        }
        previousEnd = e.end;
    }
    return starts;
}

} // namespace QanTool

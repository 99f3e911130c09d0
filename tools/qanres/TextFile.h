// TextFile.h: the string text files (startupstrings.xml, strings.xml, override/strings.xml)
// read twice: once by the library's own byte scan, once as their author wrote them
// (declaration, root element, one element per string), so the two can be compared.
#pragma once

#include "Reading.h"

#include "strings/XmlStringTable.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace QanTool {

// A structural problem found while reading the file as markup.
struct MarkupProblem {
    std::size_t offset = 0;
    std::string message;
    bool error = true;
    bool repairable = false; // fmt can fix it without guessing
};

// One string element as written: <name attr="id">text</name>.
struct TextElement {
    std::size_t chunkBegin = 0; // first byte of comments or stray text attached before it
    std::size_t begin = 0;      // its '<'
    std::size_t end = 0;        // one past the '>' of its end tag (or of a self-closing tag)
    std::string_view name;
    std::size_t idOffset = 0; // first byte of the first double-quoted value
    std::string_view id;
    int quotedValues = 0;        // double-quoted attribute values in the start tag
    std::size_t secondValue = 0; // offset of the second quoted value's opening quote
    std::size_t tagClose = 0;    // offset of the start tag's '>'
    bool selfClosing = false;    // <name id="x"/>
    std::size_t textOffset = 0;
    std::string_view text;
    bool closed = false; // an end tag follows the text directly
};

struct TextFileMarkup {
    std::size_t declarationBegin = std::string_view::npos, declarationEnd = 0;
    std::size_t rootBegin = std::string_view::npos, rootEnd = 0; // the root start tag
    std::string_view rootName;
    std::vector<TextElement> elements;
    std::size_t trailerBegin = std::string_view::npos; // the root end tag and what follows
    std::vector<MarkupProblem> problems;
};
TextFileMarkup ReadAsMarkup(std::string_view bytes);

struct ElementReading {
    Reading reading = Reading::NotRead;
    std::size_t row = std::string_view::npos; // index of the row at the element's id
};

// Both readings of one file side by side: lint reports where they differ and fmt refuses
// to rewrite any element that the library reads otherwise than its author wrote it.
struct TextFileReadings {
    TextFileMarkup markup;
    Framework::Internal::StringFileScan scan; // the library's reading
    std::vector<ElementReading> elements;     // one per markup element, in the same order
    std::vector<std::size_t> strayRows;       // rows that start at no element's id
};
TextFileReadings CompareTextFile(std::string_view bytes);

} // namespace QanTool

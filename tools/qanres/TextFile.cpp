// TextFile.cpp: the two readings of a string text file. The library's reading is its own
// scan; the markup reading is what the author meant, and every difference between them is
// a finding.
#include "TextFile.h"

#include <unordered_map>

namespace QanTool {
namespace {

bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

struct Tag {
    bool ok = false;
    std::size_t close = 0; // offset of '>'
    std::string_view name;
    std::vector<std::size_t> doubleQuoted; // offsets of opening double quotes
    std::vector<std::size_t> closingQuotes;
    bool selfClosing = false;
};

// Reads a tag from its '<' to its '>', stepping over quoted values of either kind.
Tag ReadTag(std::string_view b, std::size_t pos) {
    Tag tag;
    std::size_t i = pos + 1;
    if (i < b.size() && b[i] == '/')
        ++i;
    const std::size_t nameBegin = i;
    while (i < b.size() && !IsSpace(b[i]) && b[i] != '>' && b[i] != '/' && b[i] != '"' &&
           b[i] != '\'')
        ++i;
    tag.name = b.substr(nameBegin, i - nameBegin);
    while (i < b.size()) {
        const char c = b[i];
        if (c == '>') {
            tag.ok = true;
            tag.close = i;
            tag.selfClosing = i > pos + 1 && b[i - 1] == '/';
            return tag;
        }
        if (c == '"' || c == '\'') {
            const std::size_t close = b.find(c, i + 1);
            if (close == std::string_view::npos)
                return tag;
            if (c == '"') {
                tag.doubleQuoted.push_back(i);
                tag.closingQuotes.push_back(close);
            }
            i = close + 1;
            continue;
        }
        ++i;
    }
    return tag;
}

std::size_t SkipSpace(std::string_view b, std::size_t pos) {
    while (pos < b.size() && IsSpace(b[pos]))
        ++pos;
    return pos;
}

bool At(std::string_view b, std::size_t pos, std::string_view what) {
    return b.substr(pos, what.size()) == what;
}

} // namespace

TextFileMarkup ReadAsMarkup(std::string_view b) {
    TextFileMarkup m;
    auto problem = [&](std::size_t offset, std::string message, bool error, bool repairable) {
        m.problems.push_back({offset, std::move(message), error, repairable});
    };
    // After the root element only white space and comments may follow: the library would
    // read a double quote there as a string id once the file has more than two lines.
    auto checkAfterRoot = [&](std::size_t pos) {
        pos = SkipSpace(b, pos);
        while (At(b, pos, "<!--")) {
            const std::size_t close = b.find("-->", pos);
            if (close == std::string_view::npos)
                break;
            pos = SkipSpace(b, close + 3);
        }
        if (pos < b.size())
            problem(pos, "content after the root element", true, false);
    };
    std::size_t pos = 0;
    if (At(b, 0, "\xEF\xBB\xBF"))
        pos = 3;
    pos = SkipSpace(b, pos);
    if (At(b, pos, "<?")) {
        const std::size_t close = b.find("?>", pos);
        if (close == std::string_view::npos) {
            problem(pos, "unclosed XML declaration", true, false);
            return m;
        }
        m.declarationBegin = pos;
        m.declarationEnd = close + 2;
        pos = close + 2;
    }
    for (;;) {
        pos = SkipSpace(b, pos);
        if (At(b, pos, "<!--")) {
            const std::size_t close = b.find("-->", pos);
            if (close == std::string_view::npos) {
                problem(pos, "unclosed comment", true, false);
                return m;
            }
            pos = close + 3;
            continue;
        }
        break;
    }
    if (pos >= b.size() || b[pos] != '<' || At(b, pos, "</")) {
        problem(pos < b.size() ? pos : b.size(),
                "no root element: the strings must stand inside one", true, false);
        return m;
    }
    const Tag root = ReadTag(b, pos);
    if (!root.ok) {
        problem(pos, "unclosed root start tag", true, false);
        return m;
    }
    m.rootBegin = pos;
    m.rootEnd = root.close + 1;
    m.rootName = root.name;
    pos = root.close + 1;
    if (root.selfClosing) {
        m.trailerBegin = pos;
        checkAfterRoot(pos);
        return m;
    }

    std::size_t chunk = std::string_view::npos;
    for (;;) {
        pos = SkipSpace(b, pos);
        if (pos >= b.size()) {
            problem(b.size(), "the root element is not closed", true, false);
            return m;
        }
        if (chunk == std::string_view::npos)
            chunk = pos;
        if (At(b, pos, "<!--")) {
            const std::size_t close = b.find("-->", pos);
            if (close == std::string_view::npos) {
                problem(pos, "unclosed comment", true, false);
                return m;
            }
            const std::string_view body = b.substr(pos, close + 3 - pos);
            if (body.find('"') != std::string_view::npos)
                problem(pos, "a comment holding a double quote is read as a string element", true,
                        false);
            pos = close + 3;
            continue;
        }
        if (At(b, pos, "</")) {
            m.trailerBegin = chunk;
            const Tag end = ReadTag(b, pos);
            if (!end.ok) {
                problem(pos, "unclosed end tag", true, false);
                return m;
            }
            if (end.name != m.rootName)
                problem(pos, "end tag does not match the root element", true, false);
            checkAfterRoot(end.close + 1);
            return m;
        }
        if (b[pos] != '<') {
            // Text between elements: ignored by the reader unless it holds a quote.
            const std::size_t next = b.find('<', pos);
            const std::string_view stray =
                b.substr(pos, (next == std::string_view::npos ? b.size() : next) - pos);
            const bool quote = stray.find('"') != std::string_view::npos;
            problem(pos,
                    quote ? "text between elements holds a double quote and is read as a string id"
                          : "text between elements is ignored",
                    quote, !quote);
            if (next == std::string_view::npos) {
                problem(b.size(), "the root element is not closed", true, false);
                return m;
            }
            pos = next;
            continue;
        }
        const Tag tag = ReadTag(b, pos);
        if (!tag.ok) {
            problem(pos, "unclosed start tag", true, false);
            return m;
        }
        TextElement el;
        el.chunkBegin = chunk;
        el.begin = pos;
        el.name = tag.name;
        el.tagClose = tag.close;
        el.selfClosing = tag.selfClosing;
        el.quotedValues = static_cast<int>(tag.doubleQuoted.size());
        if (!tag.doubleQuoted.empty()) {
            el.idOffset = tag.doubleQuoted[0] + 1;
            el.id = b.substr(el.idOffset, tag.closingQuotes[0] - el.idOffset);
        }
        if (tag.doubleQuoted.size() > 1)
            el.secondValue = tag.doubleQuoted[1];
        chunk = std::string_view::npos;
        if (tag.selfClosing) {
            el.end = tag.close + 1;
            el.textOffset = tag.close + 1;
            el.closed = true;
            m.elements.push_back(el);
            pos = el.end;
            continue;
        }
        el.textOffset = tag.close + 1;
        const std::size_t lt = b.find('<', el.textOffset);
        if (lt == std::string_view::npos) {
            problem(pos, "element is not closed: its text runs to the end of the file", true,
                    false);
            m.elements.push_back(el);
            return m;
        }
        el.text = b.substr(el.textOffset, lt - el.textOffset);
        if (At(b, lt, "</")) {
            const Tag end = ReadTag(b, lt);
            if (!end.ok) {
                problem(lt, "unclosed end tag", true, false);
                m.elements.push_back(el);
                return m;
            }
            el.end = end.close + 1;
            el.closed = true;
        } else {
            problem(lt, "a string text cannot hold '<': the text ends here (write &lt;)", true,
                    false);
            const std::string closing = "</" + std::string(el.name) + ">";
            const std::size_t close = b.find(closing, lt);
            if (close == std::string_view::npos) {
                m.elements.push_back(el);
                return m;
            }
            el.end = close + closing.size();
        }
        m.elements.push_back(el);
        pos = el.end;
    }
}

TextFileReadings CompareTextFile(std::string_view bytes) {
    TextFileReadings r;
    r.markup = ReadAsMarkup(bytes);
    r.scan = Framework::Internal::ScanStringTextFile(bytes);
    std::unordered_map<std::size_t, std::size_t> rowAt; // id offset to row index
    for (std::size_t i = 0; i < r.scan.rows.size(); ++i)
        rowAt.emplace(OffsetIn(bytes, r.scan.rows[i].key), i);
    std::unordered_map<std::size_t, bool> elementAt; // id offsets of elements
    r.elements.reserve(r.markup.elements.size());
    for (const auto& el : r.markup.elements) {
        ElementReading reading;
        if (el.quotedValues > 0) {
            elementAt.emplace(el.idOffset, true);
            if (const auto it = rowAt.find(el.idOffset); it != rowAt.end()) {
                const auto& row = r.scan.rows[it->second];
                reading.row = it->second;
                reading.reading = row.key == el.id && row.text == el.text && !el.selfClosing
                                      ? Reading::Kept
                                      : Reading::Misread;
            }
        }
        r.elements.push_back(reading);
    }
    for (std::size_t i = 0; i < r.scan.rows.size(); ++i)
        if (!elementAt.count(OffsetIn(bytes, r.scan.rows[i].key)))
            r.strayRows.push_back(i);
    return r;
}

} // namespace QanTool

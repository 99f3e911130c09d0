// IconMap.cpp: a strict, small XML reader: enough of XML 1.0 to decide what a conforming
// parser rejects in an icon map (tags, attributes, the predefined and numeric entities,
// comments, processing instructions, CDATA), plus the library's rules for "map".
#include "IconMap.h"

#include "base/Unicode.h"

#include "Bytes.h"

#include <cstdlib>

namespace QanTool {
namespace {

bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}
// XML names: ASCII letters, '_' and ':' start one, digits, '.' and '-' may follow; every
// character outside ASCII is taken as a name character (the parser's tables are finer).
bool IsNameStart(char c) {
    const auto u = static_cast<unsigned char>(c);
    return u >= 0x80 || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':';
}
bool IsNameChar(char c) {
    return IsNameStart(c) || (c >= '0' && c <= '9') || c == '.' || c == '-';
}

void AppendCodePoint(std::string& out, unsigned long c) {
    std::u16string units;
    if (c >= 0x10000) {
        c -= 0x10000;
        units.push_back(static_cast<char16_t>(0xD800 + (c >> 10)));
        units.push_back(static_cast<char16_t>(0xDC00 + (c & 0x3FF)));
    } else {
        units.push_back(static_cast<char16_t>(c));
    }
    out += FromUtf16(units);
}

class Reader {
public:
    explicit Reader(std::string_view b) : b(b) {}

    IconMapView Run() {
        if (std::size_t bad = Framework::Unicode::FindInvalidUtf8(b); bad != std::string_view::npos)
            Fail(bad, "invalid UTF-8: the XML parser rejects the file");
        // Characters that XML 1.0 does not allow anywhere: controls other than tab, line
        // feed and carriage return, and U+FFFE and U+FFFF.
        for (std::size_t i = 0; i < b.size(); ++i) {
            const auto c = static_cast<unsigned char>(b[i]);
            if ((c < 0x20 && c != '\t' && c != '\n' && c != '\r') ||
                (c == 0xEF && b.substr(i + 1, 2) >= "\xBF\xBE" && b.substr(i + 1, 1) == "\xBF")) {
                Fail(i, "a character that XML does not allow: the XML parser rejects the file");
                break;
            }
        }
        if (b.substr(0, 3) == kByteOrderMark)
            pos = 3;
        Prolog();
        if (pos >= b.size() || b[pos] != '<') {
            Fail(pos, "no root element");
            return std::move(view);
        }
        Element(0);
        Misc();
        if (pos < b.size())
            Fail(pos, "content after the root element");
        return std::move(view);
    }

private:
    void Fail(std::size_t at, std::string message) {
        if (!failed)
            view.problems.push_back({at, std::move(message)});
        failed = true;
    }
    // A rule of the library's map loader (not of XML): reported, reading goes on.
    void Reject(std::size_t at, std::string message) {
        view.problems.push_back({at, std::move(message)});
    }

    void SkipSpace() {
        while (pos < b.size() && IsSpace(b[pos]))
            ++pos;
    }
    bool At(std::string_view s) const { return b.substr(pos, s.size()) == s; }

    bool SkipTo(std::string_view close, const char* what) {
        const std::size_t at = b.find(close, pos);
        if (at == std::string_view::npos) {
            Fail(pos, std::string("unclosed ") + what);
            pos = b.size();
            return false;
        }
        pos = at + close.size();
        return true;
    }

    // "<!-- ... -->" at pos: the close comes after the opening, and "--" may not stand
    // inside (nor "-" right before the close).
    void Comment() {
        const std::size_t start = pos;
        const std::size_t close = b.find("-->", start + 4);
        if (close == std::string_view::npos) {
            Fail(start, "unclosed comment");
            pos = b.size();
            return;
        }
        pos = close + 3;
        const std::string_view body = b.substr(start + 4, close - start - 4);
        if (body.find("--") != std::string_view::npos || (!body.empty() && body.back() == '-'))
            Fail(start, "'--' inside a comment: the XML parser rejects the file");
    }

    // "<?target ...?>" at pos. The target is a name; "xml" in any case is the XML
    // declaration, allowed only at the very start, where its version, encoding and
    // standalone pseudo-attributes must stand in that order.
    void ProcessingInstruction() {
        const std::size_t start = pos;
        pos += 2;
        const std::size_t nameBegin = pos;
        while (pos < b.size() && (pos == nameBegin ? IsNameStart(b[pos]) : IsNameChar(b[pos])))
            ++pos;
        const std::string_view target = b.substr(nameBegin, pos - nameBegin);
        if (target.empty()) {
            Fail(start, "a processing instruction needs a target name");
            return;
        }
        if (!At("?>") && (pos >= b.size() || !IsSpace(b[pos]))) {
            Fail(pos, "white space must follow a processing instruction's target");
            return;
        }
        std::string lower(target);
        for (char& c : lower)
            c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
        if (lower != "xml") {
            SkipTo("?>", "processing instruction");
            return;
        }
        const std::size_t atStart = b.substr(0, 3) == kByteOrderMark ? 3 : 0;
        if (target != "xml" || start != atStart) {
            Fail(start, "an XML declaration may stand only at the very start, in lower case");
            return;
        }
        XmlDeclaration(start);
    }

    // The pseudo-attributes of the XML declaration, as a conforming parser checks them.
    void XmlDeclaration(std::size_t start) {
        const std::string_view names[] = {"version", "encoding", "standalone"};
        std::size_t next = 0;
        bool first = true;
        for (;;) {
            const std::size_t before = pos;
            SkipSpace();
            if (At("?>")) {
                pos += 2;
                break;
            }
            if (pos == before) {
                Fail(pos, "white space must separate the XML declaration's parts");
                return;
            }
            const std::size_t nameBegin = pos;
            while (pos < b.size() && b[pos] >= 'a' && b[pos] <= 'z')
                ++pos;
            const std::string_view name = b.substr(nameBegin, pos - nameBegin);
            while (next < std::size(names) && names[next] != name)
                ++next;
            if (next == std::size(names) || (first && next != 0)) {
                Fail(nameBegin, "the XML declaration takes version, then encoding and "
                                "standalone, each once");
                return;
            }
            SkipSpace();
            if (!At("=")) {
                Fail(pos, "'=' expected in the XML declaration");
                return;
            }
            ++pos;
            SkipSpace();
            if (pos >= b.size() || (b[pos] != '"' && b[pos] != '\'')) {
                Fail(pos, "a quoted value expected in the XML declaration");
                return;
            }
            const std::size_t close = b.find(b[pos], pos + 1);
            if (close == std::string_view::npos) {
                Fail(pos, "unclosed XML declaration");
                pos = b.size();
                return;
            }
            const std::string_view value = b.substr(pos + 1, close - pos - 1);
            const std::size_t valueAt = pos + 1;
            pos = close + 1;
            bool ok = true;
            if (names[next] == "version") {
                // The parser takes any version name made of these characters.
                ok = !value.empty() &&
                     value.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                             "0123456789_.:-") == std::string_view::npos;
            } else if (names[next] == "standalone") {
                ok = value == "yes" || value == "no";
            } else {
                std::string lower(value);
                for (char& c : lower)
                    c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
                if (lower != "utf-8") {
                    // Other encodings change what the parser makes of the bytes.
                    if (!failed)
                        view.problems.push_back(
                            {valueAt,
                             "encoding '" + std::string(value) +
                                 "': qanres reads icon maps as UTF-8 only and cannot check this "
                                 "one (declare UTF-8)",
                             true});
                    failed = true;
                    pos = b.size();
                    return;
                }
            }
            if (!ok) {
                Fail(valueAt, "invalid " + std::string(names[next]) + " in the XML declaration");
                return;
            }
            ++next;
            first = false;
        }
        if (first)
            Fail(start, "the XML declaration needs a version");
    }

    void Misc() {
        for (;;) {
            SkipSpace();
            if (failed || pos >= b.size())
                return;
            if (At("<!--")) {
                Comment();
            } else if (At("<?")) {
                ProcessingInstruction();
            } else {
                return;
            }
        }
    }

    void Prolog() {
        Misc();
        if (At("<!DOCTYPE")) {
            // Declarations inside it may define entities that the parser expands, so the
            // library's reading of the rest cannot be told without them.
            const std::size_t subset = b.find_first_of("[>", pos);
            if (subset != std::string_view::npos && b[subset] == '[') {
                if (!failed)
                    view.problems.push_back(
                        {pos,
                         "a document type declaration with declarations inside it: qanres does "
                         "not read them and cannot check this map (remove them)",
                         true});
                failed = true;
                pos = b.size();
                return;
            }
            SkipTo(">", "document type declaration");
            Misc();
        }
    }

    std::string Name() {
        const std::size_t begin = pos;
        while (pos < b.size() && (pos == begin ? IsNameStart(b[pos]) : IsNameChar(b[pos])))
            ++pos;
        if (pos == begin)
            Fail(begin, "a name is expected here");
        return std::string(b.substr(begin, pos - begin));
    }

    // Decodes an entity or character reference at pos ('&'); appends it to out.
    void Reference(std::string& out) {
        const std::size_t semi = b.find(';', pos);
        if (semi == std::string_view::npos || semi - pos > 12) {
            Fail(pos, "'&' must start an entity reference (write &amp;)");
            ++pos;
            return;
        }
        const std::string_view name = b.substr(pos + 1, semi - pos - 1);
        if (name == "lt")
            out += '<';
        else if (name == "gt")
            out += '>';
        else if (name == "amp")
            out += '&';
        else if (name == "quot")
            out += '"';
        else if (name == "apos")
            out += '\'';
        else if (name.size() > 1 && name[0] == '#') {
            const bool hex = name[1] == 'x';
            const std::string digits(name.substr(hex ? 2 : 1));
            char* stop = nullptr;
            const unsigned long c = std::strtoul(digits.c_str(), &stop, hex ? 16 : 10);
            // Only digits (strtoul would also take signs, spaces and "0x"), and only a
            // character that XML allows: no controls but tab, line feed and carriage
            // return, no surrogates, not U+FFFE or U+FFFF.
            const bool digitsOnly =
                digits.find_first_not_of(hex ? "0123456789abcdefABCDEF" : "0123456789") ==
                std::string::npos;
            if (digits.empty() || !digitsOnly || *stop != '\0' || c > 0x10FFFF ||
                (c < 0x20 && c != 0x9 && c != 0xA && c != 0xD) || (c >= 0xD800 && c <= 0xDFFF) ||
                c == 0xFFFE || c == 0xFFFF)
                Fail(pos, "invalid character reference");
            else
                AppendCodePoint(out, c);
        } else {
            Fail(pos, "unknown entity '&" + std::string(name) + ";'");
        }
        pos = semi + 1;
    }

    struct Attribute {
        std::size_t offset;
        std::string name;
        std::string value;
    };

    void Element(int depth) {
        const std::size_t begin = pos;
        ++pos; // '<'
        const std::string name = Name();
        std::vector<Attribute> attributes;
        bool empty = false;
        for (;;) {
            if (failed)
                return;
            const std::size_t before = pos;
            SkipSpace();
            if (pos >= b.size()) {
                Fail(begin, "unclosed start tag");
                return;
            }
            if (At("/>")) {
                pos += 2;
                empty = true;
                break;
            }
            if (b[pos] == '>') {
                ++pos;
                break;
            }
            if (pos == before)
                Fail(pos, "white space is required between attributes");
            Attribute a{pos, Name(), {}};
            SkipSpace();
            if (pos >= b.size() || b[pos] != '=') {
                Fail(pos, "'=' expected after the attribute name");
                return;
            }
            ++pos;
            SkipSpace();
            if (pos >= b.size() || (b[pos] != '"' && b[pos] != '\'')) {
                Fail(pos, "attribute values must be quoted");
                return;
            }
            const char quote = b[pos++];
            while (pos < b.size() && b[pos] != quote && !failed) {
                if (b[pos] == '<')
                    Fail(pos, "'<' in an attribute value");
                else if (b[pos] == '&')
                    Reference(a.value);
                else if (IsSpace(b[pos])) {
                    // Attribute-value normalisation: each white-space character, and a
                    // CR LF pair as one, reaches the application as a space.
                    if (b[pos] == '\r' && pos + 1 < b.size() && b[pos + 1] == '\n')
                        ++pos;
                    a.value += ' ';
                    ++pos;
                } else
                    a.value += b[pos++];
            }
            if (pos >= b.size()) {
                Fail(a.offset, "unclosed attribute value");
                return;
            }
            ++pos;
            for (const auto& other : attributes)
                if (other.name == a.name)
                    Fail(a.offset, "duplicate attribute '" + a.name + "'");
            attributes.push_back(std::move(a));
        }

        const bool isMap = name == "map";
        IconMapEntry entry;
        if (isMap) {
            entry.begin = begin;
            entry.chunkBegin = chunkStart;
            entry.depth = depth;
            if (insideMap)
                Reject(begin,
                       "a \"map\" inside another \"map\": the library rejects the whole map");
            if (attributes.size() != 1)
                Reject(begin, "a \"map\" element needs exactly one attribute, \"guid\" (it has " +
                                  std::to_string(attributes.size()) +
                                  "): the library rejects the whole map");
            else if (attributes[0].name != "guid")
                Reject(attributes[0].offset,
                       "the attribute of \"map\" must be named \"guid\", not '" +
                           attributes[0].name + "': the library rejects the whole map");
            if (!attributes.empty())
                entry.key = attributes[0].value;
            if (depth != 1)
                view.flat = false;
        } else if (depth == 1) {
            view.flat = false;
        }
        const bool outerInsideMap = insideMap;
        insideMap = insideMap || isMap;
        std::string text;
        if (!empty)
            Content(name, depth, text);
        insideMap = outerInsideMap;
        if (failed)
            return;
        if (isMap) {
            entry.end = pos;
            entry.file = text;
            if (text.empty())
                Reject(begin,
                       "a \"map\" element without a file name: the library rejects the whole "
                       "map");
            view.entries.push_back(std::move(entry));
        }
        if (depth == 1)
            chunkStart = pos;
    }

    // Content up to and including the end tag of element name; text collects the
    // character data (that of nested elements included, as the library's loader does).
    void Content(const std::string& name, int depth, std::string& text) {
        if (depth == 0)
            chunkStart = pos;
        for (;;) {
            if (failed)
                return;
            if (pos >= b.size()) {
                Fail(pos, "element '" + name + "' is not closed");
                return;
            }
            const char c = b[pos];
            if (c == '<') {
                if (At("</")) {
                    const std::size_t at = pos;
                    if (depth == 0)
                        view.rootContentEnd = pos;
                    pos += 2;
                    const std::string closing = Name();
                    SkipSpace();
                    if (closing != name || pos >= b.size() || b[pos] != '>') {
                        Fail(at, "end tag '" + closing + "' does not match '" + name + "'");
                        return;
                    }
                    ++pos;
                    return;
                }
                if (At("<!--")) {
                    Comment();
                } else if (At("<![CDATA[")) {
                    pos += 9;
                    const std::size_t close = b.find("]]>", pos);
                    if (close == std::string_view::npos) {
                        Fail(pos, "unclosed CDATA section");
                        return;
                    }
                    text.append(b.substr(pos, close - pos));
                    if (depth == 0 && b.substr(pos, close - pos).find_first_not_of(" \t\r\n") !=
                                          std::string_view::npos)
                        view.flat = false;
                    pos = close + 3;
                } else if (At("<?")) {
                    ProcessingInstruction();
                } else {
                    std::string inner;
                    Element(depth + 1);
                    (void)inner;
                }
                continue;
            }
            if (c == '&') {
                Reference(text);
                continue;
            }
            if (At("]]>")) {
                Fail(pos, "']]>' outside a CDATA section: the XML parser rejects the file");
                return;
            }
            if (depth == 0 && !IsSpace(c))
                view.flat = false;
            if (c == '\r') {
                // XML line-end handling: CR LF and lone CR reach the application as LF.
                text += '\n';
                ++pos;
                if (pos < b.size() && b[pos] == '\n')
                    ++pos;
                continue;
            }
            text += c;
            ++pos;
        }
    }

    std::string_view b;
    std::size_t pos = 0;
    bool failed = false;
    bool insideMap = false;
    std::size_t chunkStart = 0;
    IconMapView view;
};

} // namespace

IconMapView ReadIconMap(std::string_view bytes) {
    return Reader(bytes).Run();
}

} // namespace QanTool

// Xliff.cpp: written by hand (the layout is fixed and small), read with expat so that any
// well-formed document that a translation tool produces is understood.
#include "Xliff.h"

#include "base/Unicode.h"

#include <expat.h>

#include <cstdio>
#include <cstring>
#include <set>

namespace QanTool {
namespace {

bool IsNameTokenChar(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' ||
           c == '-' || c == '_' || c == ':' || c >= 0x80;
}

bool IsNameToken(std::string_view s) {
    if (s.empty())
        return false;
    for (char c : s)
        if (!IsNameTokenChar(static_cast<unsigned char>(c)))
            return false;
    return true;
}

std::string CodePoint(unsigned value) {
    char buffer[24];
    std::snprintf(buffer, sizeof buffer, "<cp hex=\"%04X\"/>", value);
    return buffer;
}

// Element content: markup characters as entities, what XML cannot carry as <cp/>.
std::string Content(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c == '<')
            out += "&lt;";
        else if (c == '&')
            out += "&amp;";
        else if (c == '>')
            out += "&gt;";
        else if (c == '\r')
            out += "&#13;";
        else if (c < 0x20 && c != '\t' && c != '\n')
            out += CodePoint(c);
        else if (c == 0xEF && text.substr(i, 3) == "\xEF\xBF\xBE")
            out += CodePoint(0xFFFE), i += 2;
        else if (c == 0xEF && text.substr(i, 3) == "\xEF\xBF\xBF")
            out += CodePoint(0xFFFF), i += 2;
        else
            out += static_cast<char>(c);
    }
    return out;
}

// Attribute values: also quotes and white space that normalisation would fold.
std::string Attribute(std::string_view text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
        case '<':
            out += "&lt;";
            break;
        case '&':
            out += "&amp;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        case '\t':
            out += "&#9;";
            break;
        case '\n':
            out += "&#10;";
            break;
        case '\r':
            out += "&#13;";
            break;
        default:
            out += c;
        }
    }
    return out;
}

std::string LocalName(const XML_Char* name) {
    const char* colon = std::strrchr(name, ':');
    return colon ? colon + 1 : name;
}

const XML_Char* AttributeValue(const XML_Char** attributes, const char* name) {
    for (int i = 0; attributes[i]; i += 2)
        if (LocalName(attributes[i]) == name)
            return attributes[i + 1];
    return nullptr;
}

struct ReadState {
    XML_Parser parser = nullptr;
    XliffFile file;
    bool inUnit = false;
    bool unitHasSource = false;
    CatalogueEntry unit;
    std::string* text = nullptr; // the source or target being read
    int depthInText = 0;
    bool inNote = false;
    std::string noteCategory, note;

    void Fail(const std::string& message) {
        if (file.error.empty())
            file.error =
                "line " + std::to_string(XML_GetCurrentLineNumber(parser)) + ": " + message;
        XML_StopParser(parser, XML_FALSE);
    }
};

void XMLCALL Start(void* data, const XML_Char* rawName, const XML_Char** attributes) {
    auto& s = *static_cast<ReadState*>(data);
    const std::string name = LocalName(rawName);
    if (s.text) {
        ++s.depthInText;
        if (name == "cp") {
            const XML_Char* hex = AttributeValue(attributes, "hex");
            char* end = nullptr;
            const unsigned long value = hex ? std::strtoul(hex, &end, 16) : 0;
            if (!hex || *hex == '\0' || *end != '\0' || value == 0 || value > 0x10FFFF ||
                Framework::Unicode::IsSurrogate(static_cast<char32_t>(value))) {
                s.Fail("<cp> without a valid non-zero hex code point");
                return;
            }
            Framework::Unicode::AppendUtf8(static_cast<char32_t>(value), *s.text);
        } else if (name == "ph" || name == "sc" || name == "ec") {
            s.Fail("inline <" + name + "> cannot be stored in a string file");
        }
        return;
    }
    if (name == "xliff") {
        if (const auto* v = AttributeValue(attributes, "srcLang"))
            s.file.catalogue.sourceLanguage = v;
        if (const auto* v = AttributeValue(attributes, "trgLang"))
            s.file.catalogue.targetLanguage = v;
        const auto* version = AttributeValue(attributes, "version");
        if (!version || std::strncmp(version, "2.", 2) != 0)
            s.Fail("not an XLIFF 2 document (version attribute)");
    } else if (name == "unit") {
        s.inUnit = true;
        s.unitHasSource = false;
        s.unit = CatalogueEntry();
        const XML_Char* id = AttributeValue(attributes, "name");
        if (!id)
            id = AttributeValue(attributes, "id");
        if (!id) {
            s.Fail("<unit> without name or id");
            return;
        }
        s.unit.id = id;
    } else if (s.inUnit && name == "source") {
        s.unitHasSource = true;
        s.text = &s.unit.source;
        s.depthInText = 0;
    } else if (s.inUnit && name == "target") {
        s.unit.hasTarget = true;
        s.text = &s.unit.target;
        s.depthInText = 0;
    } else if (s.inUnit && name == "note") {
        s.inNote = true;
        s.note.clear();
        const auto* category = AttributeValue(attributes, "category");
        s.noteCategory = category ? category : "";
    }
}

void XMLCALL End(void* data, const XML_Char* rawName) {
    auto& s = *static_cast<ReadState*>(data);
    if (s.text) {
        if (s.depthInText-- == 0)
            s.text = nullptr;
        return;
    }
    const std::string name = LocalName(rawName);
    if (name == "note" && s.inNote) {
        s.inNote = false;
        s.unit.notes.push_back(s.noteCategory.empty() ? s.note : s.noteCategory + ": " + s.note);
    } else if (name == "unit" && s.inUnit) {
        s.inUnit = false;
        if (!s.unitHasSource) {
            s.Fail("unit " + s.unit.id + " has no <source>");
            return;
        }
        s.file.catalogue.entries.push_back(std::move(s.unit));
    }
}

void XMLCALL Characters(void* data, const XML_Char* chars, int length) {
    auto& s = *static_cast<ReadState*>(data);
    if (s.text)
        s.text->append(chars, static_cast<std::size_t>(length));
    else if (s.inNote)
        s.note.append(chars, static_cast<std::size_t>(length));
}

} // namespace

std::string WriteXliff(const Catalogue& catalogue) {
    std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                      "<xliff version=\"2.0\" xmlns=\"urn:oasis:names:tc:xliff:document:2.0\"";
    out += " srcLang=\"" +
           Attribute(catalogue.sourceLanguage.empty() ? "und" : catalogue.sourceLanguage) + "\"";
    if (!catalogue.targetLanguage.empty())
        out += " trgLang=\"" + Attribute(catalogue.targetLanguage) + "\"";
    out += ">\n <file id=\"strings\" original=\"strings.xml\">\n";
    // Unit ids must be unique name tokens: a string id that is none gets the first free
    // "u" and number.
    std::set<std::string> used;
    for (const auto& e : catalogue.entries)
        if (IsNameToken(e.id))
            used.insert(e.id);
    std::size_t number = 0;
    for (const auto& e : catalogue.entries) {
        std::string id = e.id;
        if (!IsNameToken(id))
            do
                id = "u" + std::to_string(++number);
            while (!used.insert(id).second);
        out += "  <unit id=\"" + Attribute(id) + "\" name=\"" + Attribute(e.id) + "\">\n";
        if (!e.notes.empty()) {
            out += "   <notes>\n";
            for (const auto& note : e.notes) {
                const auto colon = note.find(": ");
                if (colon == std::string::npos)
                    out += "    <note>" + Content(note) + "</note>\n";
                else
                    out += "    <note category=\"" + Attribute(note.substr(0, colon)) + "\">" +
                           Content(note.substr(colon + 2)) + "</note>\n";
            }
            out += "   </notes>\n";
        }
        out += "   <segment>\n    <source>" + Content(e.source) + "</source>\n";
        if (e.hasTarget)
            out += "    <target>" + Content(e.target) + "</target>\n";
        out += "   </segment>\n  </unit>\n";
    }
    out += " </file>\n</xliff>\n";
    return out;
}

XliffFile ReadXliff(std::string_view bytes) {
    ReadState state;
    state.parser = XML_ParserCreate("UTF-8");
    if (!state.parser) {
        state.file.error = "out of memory";
        return std::move(state.file);
    }
    XML_SetUserData(state.parser, &state);
    XML_SetElementHandler(state.parser, Start, End);
    XML_SetCharacterDataHandler(state.parser, Characters);
    // Fed in pieces, so that a file above 2 GiB never overflows expat's int length.
    constexpr std::size_t kPiece = 1 << 20;
    bool ok = true;
    std::size_t at = 0;
    do {
        const std::size_t n = std::min(kPiece, bytes.size() - at);
        const bool last = at + n == bytes.size();
        ok = XML_Parse(state.parser, bytes.data() + at, static_cast<int>(n), last ? 1 : 0) ==
             XML_STATUS_OK;
        at += n;
    } while (ok && at < bytes.size());
    if (!ok && state.file.error.empty())
        state.file.error = "line " + std::to_string(XML_GetCurrentLineNumber(state.parser)) + ": " +
                           XML_ErrorString(XML_GetErrorCode(state.parser));
    XML_ParserFree(state.parser);
    if (!state.file.error.empty())
        state.file.catalogue.entries.clear();
    return std::move(state.file);
}

} // namespace QanTool

// Po.cpp: PO files as gettext's tools read and write them: entries of comments and
// keywords, strings in C-style escapes split over several lines after each line feed.
#include "Po.h"

#include <algorithm>
#include <cstdio>

namespace QanTool {
namespace {

// A string after a keyword, one line per line feed it holds (the PO convention), or one
// line when it holds none but at its end.
void WriteString(std::string& out, std::string_view keyword, std::string_view text) {
    out += keyword;
    const std::size_t lf = text.find('\n');
    if (lf == std::string_view::npos || lf + 1 == text.size()) {
        out += " \"" + EscapePoString(text) + "\"\n";
        return;
    }
    out += " \"\"\n";
    std::size_t begin = 0;
    while (begin < text.size()) {
        std::size_t end = text.find('\n', begin);
        end = end == std::string_view::npos ? text.size() : end + 1;
        out += "\"" + EscapePoString(text.substr(begin, end - begin)) + "\"\n";
        begin = end;
    }
}

// Comments cannot hold a line break: control characters are shown escaped.
std::string CommentText(std::string_view text) {
    return EscapePoString(text);
}

} // namespace

std::string EscapePoString(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        switch (c) {
        case '\n':
            out += "\\n";
            break;
        case '\t':
            out += "\\t";
            break;
        case '\r':
            out += "\\r";
            break;
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        default: {
            const auto byte = static_cast<unsigned char>(c);
            if (byte < 0x20 || byte == 0x7F) {
                // Always three digits, so that a digit after it is never read as part of it.
                char octal[8];
                std::snprintf(octal, sizeof octal, "\\%03o", byte);
                out += octal;
            } else {
                out += c;
            }
        }
        }
    }
    return out;
}

std::string WritePo(const Catalogue& catalogue) {
    std::string header = "Project-Id-Version: qanres\n"
                         "Language-Team: none\n";
    if (!catalogue.targetLanguage.empty())
        header += "Language: " + catalogue.targetLanguage + "\n";
    header += "MIME-Version: 1.0\n"
              "Content-Type: text/plain; charset=UTF-8\n"
              "Content-Transfer-Encoding: 8bit\n"
              "X-Generator: qanres export\n";
    if (!catalogue.sourceLanguage.empty())
        header += "X-Source-Language: " + catalogue.sourceLanguage + "\n";
    header += std::string(kPoIdsField) + ": msgctxt\n";
    std::string out = "# Strings of a master string directory: msgctxt is the string id.\n";
    WriteString(out, "msgid", "");
    WriteString(out, "msgstr", header);
    for (const auto& e : catalogue.entries) {
        out += '\n';
        for (const auto& note : e.notes)
            out += "#. " + CommentText(note) + "\n";
        const bool emptyTranslation = e.hasTarget && e.target.empty() && !e.source.empty();
        if (emptyTranslation)
            out += "#. " + std::string(kPoEmptyNote) + "\n";
        WriteString(out, "msgctxt", e.id);
        WriteString(out, "msgid", e.source);
        WriteString(out, "msgstr", e.hasTarget ? e.target : std::string());
    }
    return out;
}

bool PoEntry::HasFlag(std::string_view flag) const {
    return std::find(flags.begin(), flags.end(), flag) != flags.end();
}

std::string PoHeaderField(std::string_view header, std::string_view field) {
    std::size_t begin = 0;
    while (begin < header.size()) {
        std::size_t end = header.find('\n', begin);
        if (end == std::string_view::npos)
            end = header.size();
        const std::string_view line = header.substr(begin, end - begin);
        if (line.size() > field.size() && line.substr(0, field.size()) == field &&
            line[field.size()] == ':') {
            std::string_view value = line.substr(field.size() + 1);
            while (!value.empty() && (value.front() == ' ' || value.front() == '\t'))
                value.remove_prefix(1);
            while (!value.empty() && (value.back() == ' ' || value.back() == '\t'))
                value.remove_suffix(1);
            return std::string(value);
        }
        begin = end + 1;
    }
    return {};
}

namespace {

bool IsSpace(char c) {
    return c == ' ' || c == '\t';
}

int HexValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// The quoted string at the start of s (after a keyword), unescaped; false with a reason.
bool ReadQuoted(std::string_view s, std::string& out, std::string& error) {
    if (s.empty() || s.front() != '"') {
        error = "a quoted string was expected";
        return false;
    }
    std::size_t i = 1;
    for (; i < s.size() && s[i] != '"'; ++i) {
        if (s[i] != '\\') {
            out += s[i];
            continue;
        }
        if (++i == s.size())
            break;
        const char c = s[i];
        switch (c) {
        case 'n':
            out += '\n';
            continue;
        case 't':
            out += '\t';
            continue;
        case 'r':
            out += '\r';
            continue;
        case 'a':
            out += '\a';
            continue;
        case 'b':
            out += '\b';
            continue;
        case 'f':
            out += '\f';
            continue;
        case 'v':
            out += '\v';
            continue;
        case '"':
        case '\\':
        case '\'':
        case '?':
            out += c;
            continue;
        default:
            break;
        }
        int value = 0;
        if (c >= '0' && c <= '7') {
            int digits = 0;
            for (; digits < 3 && i < s.size() && s[i] >= '0' && s[i] <= '7'; ++digits, ++i)
                value = value * 8 + (s[i] - '0');
            --i;
        } else if (c == 'x' && i + 1 < s.size() && HexValue(s[i + 1]) >= 0) {
            for (++i; i < s.size() && HexValue(s[i]) >= 0 && value < 0x100; ++i)
                value = value * 16 + HexValue(s[i]);
            --i;
        } else {
            error = std::string("unknown escape \\") + c;
            return false;
        }
        if (value == 0 || value > 0xFF) {
            error = "a zero or out-of-range character escape";
            return false;
        }
        out += static_cast<char>(value);
    }
    if (i >= s.size()) {
        error = "unterminated string";
        return false;
    }
    for (++i; i < s.size(); ++i)
        if (!IsSpace(s[i])) {
            error = "text after the closing quote";
            return false;
        }
    return true;
}

class PoReader {
public:
    explicit PoReader(std::string_view bytes) : bytes(bytes) {}

    PoFile Read() {
        // A byte-order mark, as some editors write one, is no part of the first line.
        std::size_t begin = bytes.substr(0, 3) == "\xEF\xBB\xBF" ? 3 : 0;
        while (begin < bytes.size() && result.error.empty()) {
            std::size_t end = bytes.find('\n', begin);
            if (end == std::string_view::npos)
                end = bytes.size();
            ++line;
            std::string_view text = bytes.substr(begin, end - begin);
            if (!text.empty() && text.back() == '\r')
                text.remove_suffix(1);
            while (!text.empty() && IsSpace(text.front()))
                text.remove_prefix(1);
            Line(text);
            begin = end + 1;
        }
        if (result.error.empty())
            Finish();
        if (!result.error.empty())
            result.entries.clear();
        return std::move(result);
    }

private:
    void Fail(const std::string& message) {
        if (result.error.empty())
            result.error = "line " + std::to_string(line) + ": " + message;
    }

    void Finish() {
        if (!inEntry)
            return;
        if (current.translations.empty()) {
            line = current.line;
            Fail("message without msgstr");
            return;
        }
        result.entries.push_back(std::move(current));
        current = PoEntry();
        inEntry = false;
        target = nullptr;
    }

    // A keyword that opens an entry: closes a complete one first.
    void Open() {
        if (inEntry && !current.translations.empty())
            Finish();
        if (!inEntry) {
            current = std::move(pending);
            pending = PoEntry();
            current.line = line;
            inEntry = true;
        }
    }

    PoEntry& CommentTarget() {
        if (inEntry && !current.translations.empty())
            Finish();
        return pending;
    }

    void Comment(std::string_view text) {
        if (text.substr(0, 2) == "#~") {
            std::string_view rest = text.substr(2);
            while (!rest.empty() && IsSpace(rest.front()))
                rest.remove_prefix(1);
            if (rest.substr(0, 5) == "msgid" && rest.substr(0, 12) != "msgid_plural") {
                CommentTarget();
                PoEntry obsolete;
                obsolete.line = line;
                obsolete.obsolete = true;
                result.entries.push_back(std::move(obsolete));
                pending = PoEntry();
            }
            return;
        }
        std::string_view rest = text.size() > 2 ? text.substr(2) : std::string_view();
        if (text.substr(0, 2) == "#,") {
            PoEntry& e = CommentTarget();
            std::size_t i = 0;
            while (i < rest.size()) {
                while (i < rest.size() && (IsSpace(rest[i]) || rest[i] == ','))
                    ++i;
                std::size_t j = i;
                while (j < rest.size() && !IsSpace(rest[j]) && rest[j] != ',')
                    ++j;
                if (j > i)
                    e.flags.emplace_back(rest.substr(i, j - i));
                i = j;
            }
        } else if (text.substr(0, 2) == "#.") {
            if (!rest.empty() && rest.front() == ' ')
                rest.remove_prefix(1);
            CommentTarget().extracted.emplace_back(rest);
        } else if (text.substr(0, 2) == "#:") {
            ++CommentTarget().references;
        } else if (text.substr(0, 2) != "#|") {
            ++CommentTarget().translatorComments;
        }
    }

    void Keyword(std::string_view text) {
        std::size_t nameEnd = 0;
        while (nameEnd < text.size() && !IsSpace(text[nameEnd]) && text[nameEnd] != '"')
            ++nameEnd;
        const std::string_view name = text.substr(0, nameEnd);
        std::string_view rest = text.substr(nameEnd);
        while (!rest.empty() && IsSpace(rest.front()))
            rest.remove_prefix(1);
        std::string value, error;
        if (!ReadQuoted(rest, value, error)) {
            Fail(error);
            return;
        }
        if (name == "msgctxt") {
            if (inEntry && current.translations.empty()) {
                Fail("msgctxt inside a message");
                return;
            }
            Open();
            current.context = std::move(value);
            target = &*current.context;
            hasId = false;
        } else if (name == "msgid") {
            if (inEntry && hasId && current.translations.empty()) {
                Fail("msgid twice in a message");
                return;
            }
            if (!inEntry || !current.translations.empty())
                Open();
            current.id = std::move(value);
            target = &current.id;
            hasId = true;
        } else if (name == "msgid_plural") {
            if (!inEntry || !hasId || current.idPlural || !current.translations.empty()) {
                Fail("msgid_plural without msgid");
                return;
            }
            current.idPlural = std::move(value);
            target = &*current.idPlural;
        } else if (name.substr(0, 6) == "msgstr") {
            if (!inEntry || !hasId) {
                Fail("msgstr without msgid");
                return;
            }
            int index = 0;
            if (name.size() > 6) {
                if (name[6] != '[' || name.back() != ']' || name.size() < 9 || name.size() > 11) {
                    Fail("bad keyword " + std::string(name));
                    return;
                }
                for (char c : name.substr(7, name.size() - 8)) {
                    if (c < '0' || c > '9') {
                        Fail("bad keyword " + std::string(name));
                        return;
                    }
                    index = index * 10 + (c - '0');
                }
            }
            if (name.size() > 6 && !current.idPlural) {
                Fail("msgstr[N] without msgid_plural");
                return;
            }
            if (current.translations.count(index)) {
                Fail("msgstr given twice");
                return;
            }
            target = &(current.translations[index] = std::move(value));
        } else {
            Fail("unknown keyword " + std::string(name));
        }
    }

    void Line(std::string_view text) {
        if (text.empty())
            return;
        if (text.front() == '#') {
            Comment(text);
            return;
        }
        if (text.front() == '"') {
            if (!target) {
                Fail("a string outside a message");
                return;
            }
            std::string value, error;
            if (!ReadQuoted(text, value, error)) {
                Fail(error);
                return;
            }
            *target += value;
            return;
        }
        Keyword(text);
    }

    std::string_view bytes;
    PoFile result;
    PoEntry current, pending;
    bool inEntry = false, hasId = false;
    std::string* target = nullptr;
    int line = 0;
};

} // namespace

PoFile ReadPo(std::string_view bytes) {
    return PoReader(bytes).Read();
}

} // namespace QanTool

// Lint.cpp: the directory checker. Each file is read as the library reads it and as its
// author wrote it; the findings are where the two disagree, plus the order, duplicate and
// cross-file rules that the library's binary searches and lazy loading depend on.
#include "Lint.h"

#include "Files.h"

#include "base/Unicode.h"
#include "platform/Platform.h"
#include "strings/StringTable.h"
#include "strings/XmlEntities.h"

#include "Bytes.h"
#include "CursorTable.h"
#include "IconMap.h"
#include "KeyTable.h"
#include "TextFile.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>

namespace QanTool {
namespace {

// Wide keys are searched as UTF-16 on Windows and as code points elsewhere; the two
// orders differ only where a supplementary character meets U+E000 to U+FFFF. Names the
// order that previous and next break, or null when both keep them ascending.
const char* OrderBroken(const std::u16string& previous, const std::u16string& next) {
    if (next < previous)
        return "(wide keys must ascend in UTF-16 order, or look-ups miss)";
    if (ToCodePoints(next) < ToCodePoints(previous))
        return "in code point order, the order of wide strings off Windows (look-ups there "
               "miss)";
    return nullptr;
}

// The UTF-16 encoding the bytes are in, by a byte-order mark or by the zero bytes that
// ASCII text has in every other byte; null for anything else.
const char* Utf16Encoding(std::string_view bytes) {
    if (bytes.substr(0, 2) == "\xFF\xFE")
        return "UTF-16 (little-endian, with a byte-order mark)";
    if (bytes.substr(0, 2) == "\xFE\xFF")
        return "UTF-16 (big-endian, with a byte-order mark)";
    if (bytes.size() >= 4 && bytes.size() % 2 == 0) {
        std::size_t evenZeros = 0, oddZeros = 0;
        const std::size_t sample = std::min<std::size_t>(bytes.size(), 512);
        for (std::size_t i = 0; i < sample; ++i)
            (i % 2 ? oddZeros : evenZeros) += bytes[i] == '\0';
        if (oddZeros * 2 > sample / 2 && evenZeros == 0)
            return "UTF-16 (little-endian)";
        if (evenZeros * 2 > sample / 2 && oddZeros == 0)
            return "UTF-16 (big-endian)";
    }
    return nullptr;
}

// The files that are bytes, not text.
bool IsBinary(const std::string& name) {
    return name == kCursorTable || name == kIconLibrary;
}

enum class TextRole { Startup, Full, Override };

struct TextEntry {
    std::string id;
    std::string text;
    int line = 0;
};

class Linter {
public:
    Linter(std::filesystem::path dir, std::string displayDir, DiagnosticList& list)
        : dir(std::move(dir)), displayDir(std::move(displayDir)), list(list) {}

    DirectoryContents Run() {
        std::map<std::string, std::vector<TextEntry>> texts;
        const std::pair<const char*, TextRole> textFiles[] = {
            {kStartupStrings, TextRole::Startup},
            {kFullStrings, TextRole::Full},
            {kOverrideStrings, TextRole::Override}};
        for (const auto& [name, role] : textFiles)
            if (auto bytes = Read(name)) {
                contents.textFiles.push_back(name);
                if (auto entries = CheckTextFile(name, *bytes, role))
                    texts[name] = std::move(*entries);
            }
        CheckTextFilesTogether(texts);
        for (const auto& [name, entries] : texts)
            if (name != kOverrideStrings)
                for (const auto& e : entries)
                    contents.ids.emplace(e.id, TextUse{name, e.line});

        for (const char* name : kKeyTables)
            if (auto bytes = Read(name))
                CheckKeyTable(name, *bytes);

        if (auto bytes = Read(kIconMap))
            CheckIconMap(kIconMap, *bytes);
        if (Read(kIconLibrary)) {
            if (auto table = ReadCursorResource((dir / kIconLibrary).string()))
                CheckCursorTable(kIconLibrary, *table);
            else
                Error(kIconLibrary, {1, 1},
                      "not a module holding a cursor table (raw-data resource 2): every cursor "
                      "look-up misses");
        }
        if (auto bytes = Read(kCursorTable))
            CheckCursorTable(kCursorTable, *bytes);
        return std::move(contents);
    }

private:
    // The bytes of a resource file the library would read; nothing when there is no such
    // file. A file the library reads as missing although it is there is an error here.
    std::optional<std::string> Read(const std::string& name) {
        const auto path = dir / name;
        std::error_code ec;
        const auto status = std::filesystem::status(path, ec);
        if (ec || status.type() == std::filesystem::file_type::not_found)
            return std::nullopt;
        ++contents.files;
        if (status.type() != std::filesystem::file_type::regular) {
            Error(name, {0, 0},
                  std::string(status.type() == std::filesystem::file_type::directory
                                  ? "a folder"
                                  : "not a regular file (a pipe, socket or device)") +
                      ": the library reads it as missing and never waits on it");
            return std::nullopt;
        }
        if (std::filesystem::file_size(path, ec) > Framework::Platform::kMaxFileSize) {
            Error(name, {0, 0},
                  "larger than 4 GiB: the library refuses it before reading and reads it as "
                  "missing");
            return std::nullopt;
        }
        auto bytes = ReadWholeFile(path);
        if (!bytes)
            Error(name, {0, 0}, "cannot be read: the library reads it as missing");
        else if (const char* encoding = IsBinary(name) ? nullptr : Utf16Encoding(*bytes)) {
            Error(name, {1, 1},
                  std::string("the file is ") + encoding +
                      ": the library reads UTF-8 only and finds nothing it can use here; "
                      "convert it to UTF-8 (for example iconv -f UTF-16 -t UTF-8); fmt does "
                      "not guess an encoding");
            return std::nullopt;
        }
        return bytes;
    }

    std::string Display(const std::string& name) const {
        if (displayDir.empty())
            return name;
        const char last = displayDir.back();
        return displayDir + (last == '/' || last == '\\' ? "" : "/") + name;
    }
    void Error(const std::string& file, Position at, std::string message) {
        list.Add(Display(file), at, Severity::Error, std::move(message));
    }
    void Warning(const std::string& file, Position at, std::string message) {
        list.Add(Display(file), at, Severity::Warning, std::move(message));
    }

    // A reference the library's decoder leaves as written: each way it can be malformed,
    // named with the reference and what is handed out (the decoder's own verdict).
    void CheckReference(const std::string& file, const LineIndex& lines, std::size_t at,
                        std::string_view text) {
        using Framework::Internal::ReferenceVerdict;
        const auto reference = Framework::Internal::ReadReference(text);
        if (reference.verdict == ReferenceVerdict::Decoded)
            return;
        const std::string written(text.substr(0, std::max<std::size_t>(reference.length, 1)));
        const std::string kept = " is handed out as written";
        std::string message;
        switch (reference.verdict) {
        case ReferenceVerdict::Decoded:
            return;
        case ReferenceVerdict::NotAReference:
            message = "'&' starts no reference and" + kept + ": write &amp; for an ampersand";
            break;
        case ReferenceVerdict::UnknownName: {
            message = "unknown entity " + Quote(written) + kept +
                      ": only &lt; &gt; &amp; &quot; &apos; are decoded; write the character "
                      "itself or a numeric reference such as &#160;";
            static constexpr std::string_view names[] = {"lt", "gt", "amp", "quot", "apos"};
            const std::string_view name = std::string_view(written).substr(1, written.size() - 2);
            for (const auto known : names)
                if (name.size() == known.size() && name != known &&
                    std::is_permutation(name.begin(), name.end(), known.begin()))
                    message = "unknown entity " + Quote(written) + kept + ": did you mean &" +
                              std::string(known) + ";?";
            break;
        }
        case ReferenceVerdict::NoDigits:
            message =
                "malformed character reference " + Quote(written) + " (no digits" +
                (text.substr(0, 3) == "&#X" ? "; only a lower-case x marks hexadecimal" : "") +
                ")" + kept;
            break;
        case ReferenceVerdict::NoSemicolon:
            message = "malformed character reference " + Quote(written) +
                      " (no semicolon after the digits)" + kept + ": write " + Quote(written + ";");
            break;
        case ReferenceVerdict::OutOfRange:
            message = "character reference " + Quote(written) +
                      " names no character (beyond U+10FFFF) and" + kept;
            break;
        case ReferenceVerdict::Surrogate:
            message = "character reference " + Quote(written) +
                      " names a surrogate, which is no character, and" + kept +
                      ": refer to the character itself (one reference above U+FFFF)";
            break;
        case ReferenceVerdict::Zero:
            message = "character reference " + Quote(written) +
                      " names U+0000, which no text may hold, and" + kept;
            break;
        }
        Warning(file, lines.At(at), message);
    }

    // Backslash runs that the library decodes differently from a C-style reading, and
    // ampersands that are no entity. Decoding: "\/\/" to "//"; a backslash and n, r or t
    // becomes the control character unless another backslash stands before the pair; then
    // every "\\" becomes "\".
    void CheckEscapes(const std::string& file, const LineIndex& lines, std::size_t offset,
                      std::string_view text) {
        for (std::size_t i = 0; i < text.size();) {
            if (text[i] == '&') {
                CheckReference(file, lines, offset + i, text.substr(i));
                ++i;
                continue;
            }
            if (text[i] != '\\') {
                ++i;
                continue;
            }
            const std::size_t start = i;
            while (i < text.size() && text[i] == '\\')
                ++i;
            const std::size_t run = i - start;
            const Position at = lines.At(offset + start);
            if (i == text.size()) {
                if (run % 2 == 1)
                    Warning(file, at, "a backslash at the end of the text is kept as it stands");
                break;
            }
            const char next = text[i];
            if (run == 1 && text.substr(start, 4) == "\\/\\/") {
                i = start + 4;
                continue;
            }
            if (next == 'n' || next == 'r' || next == 't') {
                if (run == 2)
                    Warning(file, at,
                            std::string("'\\\\") + next +
                                "' is handed out as a backslash followed by '" + next +
                                "', not as a control character");
                else if (run > 2)
                    Warning(file, at,
                            std::to_string(run) + " backslashes before '" + next +
                                "' are handed out as " + std::to_string(run / 2 + run % 2) +
                                " backslashes and '" + next + "', without a control character");
                continue;
            }
            if (run % 2 == 1)
                Warning(file, at,
                        std::string("'\\") + next +
                            "' is not an escape: the backslash is kept as it stands (write '\\\\' "
                            "for a backslash)");
        }
    }

    // Null when the library refuses the file: it then keeps the texts it had, so the file
    // takes no part in the checks across files.
    std::optional<std::vector<TextEntry>> CheckTextFile(const std::string& file,
                                                        std::string_view bytes, TextRole role) {
        std::vector<TextEntry> entries;
        const LineIndex lines(bytes);
        if (bytes.empty()) {
            Warning(file, {1, 1}, "empty file: it holds no strings");
            return std::nullopt;
        }
        const TextFileReadings readings = CompareTextFile(bytes);
        const TextFileMarkup& markup = readings.markup;
        const Framework::Internal::StringFileScan& scan = readings.scan;
        for (const auto& p : markup.problems) {
            if (p.error)
                Error(file, lines.At(p.offset), p.message);
            else
                Warning(file, lines.At(p.offset), p.message);
        }
        const bool refused = scan.rowsBegin == std::string_view::npos;
        if (refused && !markup.elements.empty())
            Error(file, {1, 1},
                  "the library skips the first two lines and needs a line feed after them that "
                  "is not the last byte: it reads no strings from this file");
        const auto offsetOf = [&](std::string_view part) { return OffsetIn(bytes, part); };

        for (std::size_t i = 0; i < markup.elements.size(); ++i) {
            const TextElement& el = markup.elements[i];
            const Reading reading = readings.elements[i].reading;
            const Position at = lines.At(el.begin);
            if (el.quotedValues == 0) {
                if (el.text.find_first_not_of(" \t\r\n") != std::string_view::npos)
                    Error(file, at, "element without a double-quoted id: its text is never read");
                continue;
            }
            // An element that is not closed has its error from the markup reading already.
            if (reading == Reading::NotRead && !refused && el.closed) {
                if (el.begin < scan.rowsBegin)
                    Error(file, at,
                          "string element on line " + std::to_string(at.line) +
                              " is never read: the library skips the first two lines (keep the "
                              "declaration and the root start tag there, one per line)");
                else
                    Error(file, at,
                          "string " + Quote(el.id) +
                              " is never read: the library pairs the double quotes of this "
                              "element otherwise and finds no id here (write one double-quoted "
                              "id and no other double quote)");
                continue;
            }
            if (reading != Reading::Kept) {
                if (reading == Reading::NotRead)
                    continue; // refused or not closed: reported above
                const std::size_t closingQuote = el.idOffset + el.id.size();
                if (el.quotedValues > 1)
                    Error(file, lines.At(el.secondValue),
                          "more than one quoted attribute: the library takes the first quoted "
                          "value as the id and misreads the text; keep only the id attribute");
                else if (el.selfClosing)
                    Error(file, at,
                          "self-closing element: the library does not understand it; write the "
                          "start tag directly followed by the end tag");
                else if (el.tagClose != closingQuote + 1)
                    Error(file, lines.At(closingQuote + 1),
                          "'>' must follow the id's closing quote directly: the library steps "
                          "over one byte unseen and reads the rest as text");
                else {
                    const auto& row = scan.rows[readings.elements[i].row];
                    Error(file, at,
                          "the library reads string " + Quote(el.id) + " as id " + Quote(row.key) +
                              " with the text " + Quote(row.text) + ", not as written");
                }
                continue;
            }
            if (std::size_t bad = Framework::Unicode::FindInvalidUtf8(el.id);
                bad != std::string_view::npos)
                Error(file, lines.At(el.idOffset + bad), "invalid UTF-8 in the id");
            if (el.id.empty())
                Warning(file, lines.At(el.idOffset), "empty id");
            if (std::size_t bad = Framework::Unicode::FindInvalidUtf8(el.text);
                bad != std::string_view::npos)
                Error(file, lines.At(el.textOffset + bad),
                      "invalid UTF-8 in the text: it is handed out as U+FFFD");
            if (std::size_t nul = el.text.find('\0'); nul != std::string_view::npos)
                Warning(file, lines.At(el.textOffset + nul),
                        "a zero byte ends the text as the library hands it out");
            if (std::size_t cr = el.text.find('\r'); cr != std::string_view::npos)
                Warning(file, lines.At(el.textOffset + cr),
                        "carriage return inside the text: it is handed out as part of it");
            CheckEscapes(file, lines, el.textOffset, el.text);
        }
        for (const std::size_t i : readings.strayRows) {
            const auto& row = scan.rows[i];
            Error(file, lines.At(offsetOf(row.key) - 1),
                  "the library reads the quoted value " + Quote(row.key) +
                      " here as a string id: only string elements may hold double quotes "
                      "after line 2");
        }

        // Order and duplicates, as the library's search sees the rows; the rows are also
        // what the other files are checked against.
        std::map<std::string_view, std::size_t> firstSeen;
        const Framework::Internal::StringTableEntry* previous = nullptr;
        for (const auto& row : scan.rows) {
            const Position at = lines.At(offsetOf(row.key) - 1);
            if (role != TextRole::Override && previous &&
                Framework::Internal::CompareKeys(row.key, previous->key) < 0)
                Error(file, at,
                      "id " + Quote(row.key) + " is out of order: it sorts before " +
                          Quote(previous->key) + " on line " +
                          std::to_string(lines.At(offsetOf(previous->key)).line) +
                          " (ids must ascend in byte order, or look-ups miss)");
            auto [it, inserted] = firstSeen.emplace(row.key, offsetOf(row.key));
            if (!inserted) {
                const int firstLine = lines.At(it->second).line;
                if (role == TextRole::Override)
                    Error(file, at,
                          "duplicate override id " + Quote(row.key) + " (also on line " +
                              std::to_string(firstLine) +
                              "): the overrides are sorted, so which one is used is not defined");
                else
                    Warning(file, at,
                            "duplicate id " + Quote(row.key) +
                                ": the library uses the first, on line " +
                                std::to_string(firstLine));
            }
            entries.push_back({std::string(row.key), std::string(row.text), at.line});
            previous = &row;
        }
        if (refused)
            return std::nullopt;
        return entries;
    }

    void CheckTextFilesTogether(const std::map<std::string, std::vector<TextEntry>>& texts) {
        const auto full = texts.find(kFullStrings);
        if (full == texts.end())
            return;
        std::map<std::string, const TextEntry*> fullById;
        for (const auto& e : full->second)
            fullById.emplace(e.id, &e);
        if (auto startup = texts.find(kStartupStrings); startup != texts.end()) {
            for (const auto& e : startup->second) {
                auto it = fullById.find(e.id);
                if (it == fullById.end())
                    Error(kStartupStrings, {e.line, 1},
                          "start-up id " + Quote(e.id) + " is missing from " + kFullStrings +
                              ": it disappears once the full file is read");
                else if (it->second->text != e.text)
                    Error(kStartupStrings, {e.line, 1},
                          "start-up text of " + Quote(e.id) + " differs from " + kFullStrings +
                              ":" + std::to_string(it->second->line) +
                              ": the text changes once the full file is read");
            }
        }
        if (auto overrides = texts.find(kOverrideStrings); overrides != texts.end())
            for (const auto& e : overrides->second)
                if (!fullById.count(e.id))
                    Warning(kOverrideStrings, {e.line, 1},
                            "override id " + Quote(e.id) + " is not in " + kFullStrings +
                                ": it is never shown once the full file is read");
    }

    // The rows are the library's own scan; the lines as written only name what a row
    // that differs from them was meant to be.
    void CheckKeyTable(const std::string& file, std::string_view bytes) {
        using Framework::Internal::KeyScanEnd;
        const LineIndex index(bytes);
        const auto offsetOf = [&](std::string_view part) { return OffsetIn(bytes, part); };
        const auto lineStart = [&](std::size_t offset) {
            return Position{index.At(offset).line, 1};
        };
        if (const char* sign = SpreadsheetExport(bytes)) {
            // One root cause: every row would otherwise be reported on its own.
            Error(file, {1, 1},
                  std::string("a spreadsheet export (") + sign +
                      "): the library reads a header row as one more key and quotes as part of "
                      "keys and ids; write plain key,id rows without a header (fmt does not "
                      "guess which rows were meant)");
            return;
        }
        if (bytes.substr(0, 3) == kByteOrderMark)
            Error(file, {1, 1},
                  "byte-order mark: it becomes part of the first key; qanres fmt "
                  "removes it");
        const KeyTableReadings readings = CompareKeyTable(bytes);
        const Framework::Internal::KeyTableScan& scan = readings.scan;
        // A written row whose key the library never reads: the lines without a comma before
        // it are joined with it into one key (a last line without a line feed is below).
        for (std::size_t i = 0; i < readings.lines.size(); ++i) {
            const KeyLine& line = readings.lines[i];
            if (line.comma == std::string_view::npos ||
                readings.readings[i].reading != Reading::NotRead ||
                (scan.end == KeyScanEnd::NoLineFeed && line.offset >= scan.droppedOffset))
                continue;
            for (const auto& row : scan.rows)
                if (offsetOf(row.key) < line.offset &&
                    line.offset < offsetOf(row.key) + row.key.size())
                    Error(file, lineStart(line.offset),
                          "key " + Quote(line.key) +
                              " is never read: the lines before it have no comma, so the "
                              "library joins them with it into the key " +
                              Quote(row.key));
        }
        // CR LF line ends put a carriage return at the end of every id: one finding for the
        // file rather than one a row.
        const auto endsInCr = [](const Framework::Internal::StringTableEntry& row) {
            return !row.text.empty() && row.text.back() == '\r';
        };
        const auto crRows = std::count_if(scan.rows.begin(), scan.rows.end(), endsInCr);
        if (crRows > 1)
            Error(file, {1, 1},
                  "CR LF line ends (" + std::to_string(crRows) +
                      " rows): every id ends with a carriage return and names no string, so "
                      "those keys answer empty texts; qanres fmt writes LF line ends");
        std::map<std::string_view, int> firstSeen;
        const Framework::Internal::StringTableEntry* previous = nullptr;
        for (const auto& row : scan.rows) {
            const std::size_t keyOffset = offsetOf(row.key);
            const std::size_t comma = keyOffset + row.key.size();
            const int lineNumber = index.At(comma).line;
            const bool carriageReturn = endsInCr(row);
            if (carriageReturn && crRows == 1)
                Error(file, index.At(comma + row.text.size()),
                      "carriage return before the line feed: it becomes part of the id, which "
                      "then matches no string; qanres fmt removes it");
            for (const std::string_view field : {row.key, row.text})
                if (std::size_t bad = Framework::Unicode::FindInvalidUtf8(field);
                    bad != std::string_view::npos)
                    Error(file, index.At(offsetOf(field) + bad), "invalid UTF-8");
            std::string_view key = row.key;
            if (keyOffset == 0 && key.substr(0, 3) == kByteOrderMark)
                key.remove_prefix(3);
            // The key as written on the row's own line (a joined key has its error above).
            if (const std::size_t lf = key.rfind('\n'); lf != std::string_view::npos)
                key.remove_prefix(lf + 1);
            std::string_view id = row.text;
            if (carriageReturn)
                id.remove_suffix(1);
            const Position start{lineNumber, 1};
            const Position commaAt = index.At(comma);
            if (key.empty())
                Warning(file, start, "empty key");
            if (id.empty())
                Warning(file, commaAt, "empty id");
            if ((!key.empty() && (key.back() == ' ' || key.back() == '\t')) ||
                (!id.empty() && (id.front() == ' ' || id.front() == '\t')))
                Warning(file, commaAt,
                        "space beside the comma: it belongs to the key or id (nothing is trimmed)");
            if (previous && Framework::Internal::CompareKeys(row.key, previous->key) < 0)
                Error(file, start,
                      "key " + Quote(row.key) + " is out of order: it sorts before " +
                          Quote(previous->key) + " on line " +
                          std::to_string(index.At(offsetOf(previous->text)).line) +
                          " (keys must ascend in byte order, or look-ups miss)");
            auto [it, inserted] = firstSeen.emplace(row.key, lineNumber);
            if (!inserted)
                Warning(file, start,
                        "duplicate key " + Quote(row.key) +
                            ": the library uses the first, on line " + std::to_string(it->second));
            // An id with a carriage return has its error already.
            if (!id.empty() && !carriageReturn)
                contents.keyUses.push_back({file, index.At(comma + 1), std::string(id)});
            previous = &row;
        }
        if (scan.end == KeyScanEnd::NoLineFeed)
            Error(file, index.At(bytes.size()),
                  "the last line has no line feed: the library drops it");
        if (scan.end == KeyScanEnd::KeyWithoutId) {
            // Every line left is without a comma; blank ones are harmless at the end.
            for (const auto& line : ReadKeyLines(bytes.substr(scan.droppedOffset)))
                if (line.text.find_first_not_of(" \t\r") != std::string_view::npos)
                    Error(file, lineStart(scan.droppedOffset + line.offset),
                          "line without a comma: the library drops it, having no id for it");
        }
    }

    // The verdict and the entries are the library's own reading (ScanIconMap); a rejected
    // map is one finding, since the library keeps none of its entries.
    void CheckIconMap(const std::string& file, std::string_view bytes) {
        const LineIndex lines(bytes);
        const IconMapView view = ReadIconMap(bytes);
        if (!view.scan.Accepted()) {
            Error(file, lines.At(view.scan.faultOffset),
                  view.fault + ", so every icon look-up misses");
            return;
        }
        std::map<std::u16string, std::size_t> firstSeen;
        const IconMapItem* previous = nullptr;
        for (const auto& e : view.entries) {
            const Position at = lines.At(e.begin);
            if (previous)
                if (const char* order = OrderBroken(previous->key16, e.key16))
                    Error(file, at,
                          "key " + Quote(e.key) + " is out of order: it sorts before " +
                              Quote(previous->key) + " on line " +
                              std::to_string(lines.At(previous->begin).line) + " " + order);
            auto [it, inserted] = firstSeen.emplace(e.key16, e.begin);
            if (!inserted)
                Warning(file, at,
                        "duplicate key " + Quote(e.key) + ": the library uses the first, on line " +
                            std::to_string(lines.At(it->second).line));
            if (!e.file.empty() && (e.file.find_first_of(" \t\n") == 0 ||
                                    e.file.find_last_of(" \t\n") == e.file.size() - 1))
                Warning(file, at,
                        "the file name " + Quote(e.file) +
                            " has white space at its ends, which is kept");
            // Entries come in the order their elements end, so an outer one directly
            // follows the last one it holds.
            if (previous && e.begin < previous->begin && e.end > previous->end)
                Warning(file, at,
                        "a \"map\" with an empty key holds another \"map\": the library reads "
                        "both (only a key that is not empty makes nesting a fault)");
            previous = &e;
        }
    }

    // What the library reads is its own ReadCursorTable; only the wording is the tool's.
    void CheckCursorTable(const std::string& file, std::string_view bytes) {
        const CursorTableReport report = ReadCursorTableBytes(bytes);
        if (report.negativeCount) {
            Error(file, {1, 1},
                  "negative cursor count " + std::to_string(*report.negativeCount) +
                      ": the library fails to start");
            return;
        }
        const auto& table = report.table;
        using Stop = Framework::Internal::CursorTableStop;
        switch (table.stop) {
        case Stop::Complete:
            break;
        case Stop::TrailingBytes:
            Warning(file, {1, 1}, StopMessage(table) + ": they are never read");
            break;
        case Stop::NoCount:
            if (!bytes.empty())
                Error(file, {1, 1},
                      "the cursor table ends early: " + StopMessage(table) +
                          "; the library reads an empty table");
            break;
        default:
            Error(file, {1, StopEntry(table)},
                  "the cursor table ends early: " + StopMessage(table) + "; " + WhatIsRead(table));
        }
        std::map<std::u16string, std::size_t> firstSeen;
        for (std::size_t i = 0; i < report.names.size(); ++i) {
            const std::u16string& name = report.names[i];
            const std::string shown = FromUtf16(name);
            const Position at{1, static_cast<int>(i + 1)}; // column: the entry's number
            if (i > 0)
                if (const char* order = OrderBroken(report.names[i - 1], name))
                    Error(file, at,
                          "cursor " + Quote(shown) + " (entry " + std::to_string(i + 1) +
                              ") is out of order: it sorts before " +
                              Quote(FromUtf16(report.names[i - 1])) + " " + order);
            auto [it, inserted] = firstSeen.emplace(name, i);
            if (!inserted)
                Warning(file, at,
                        "duplicate cursor " + Quote(shown) + ": the library uses entry " +
                            std::to_string(it->second + 1));
            if (name.empty())
                Warning(file, at, "entry " + std::to_string(i + 1) + " has an empty name");
        }
    }

    std::filesystem::path dir;
    std::string displayDir;
    DiagnosticList& list;
    DirectoryContents contents;
};

} // namespace

DirectoryContents LintFiles(const std::filesystem::path& dir, const std::string& displayDir,
                            DiagnosticList& findings) {
    return Linter(dir, displayDir, findings).Run();
}

} // namespace QanTool

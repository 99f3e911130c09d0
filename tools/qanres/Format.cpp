// Format.cpp: repairs that need no guess. Elements and rows are reordered as whole
// chunks (with the comments before them), so every byte an author wrote survives; only
// carriage returns before line feeds, a byte-order mark in a key table and blank key-table
// lines are dropped, because the library would read them as content nobody meant.
#include "Format.h"

#include "Bytes.h"
#include "Diagnostics.h"
#include "Files.h"
#include "IconMap.h"
#include "KeyTable.h"
#include "Lint.h"
#include "TextFile.h"

#include "platform/DurableWrite.h"
#include "strings/StringTable.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <optional>
#include <random>

namespace QanTool {
namespace {

std::string Where(std::string_view bytes, std::size_t offset) {
    const Position at = LineIndex(bytes).At(offset);
    return std::to_string(at.line) + ":" + std::to_string(at.column) + ": ";
}

// The end of the run of carriage returns that starts at i (and stops at limit), when that
// run ends a line: a line feed or the end of the bytes follows it. Otherwise i itself. A
// line ended by "\r\r\n" is ended like one ended by "\r\n", so that a second fmt finds
// nothing left to do.
std::size_t LineEndingReturns(std::string_view bytes, std::size_t i, std::size_t limit) {
    std::size_t end = i;
    while (end < limit && bytes[end] == '\r')
        ++end;
    return end == bytes.size() || bytes[end] == '\n' ? end : i;
}

// Line feeds only, and one at the end.
std::string NormaliseLineEnds(std::string_view in) {
    std::string out;
    out.reserve(in.size() + 1);
    for (std::size_t i = 0; i < in.size(); ++i) {
        if (in[i] == '\r') {
            if (const std::size_t end = LineEndingReturns(in, i, in.size()); end != i) {
                i = end - 1; // the line feed, if any, comes next
                continue;
            }
        }
        out += in[i];
    }
    if (!out.empty() && out.back() != '\n')
        out += '\n';
    return out;
}

bool IsBlank(std::string_view s) {
    return s.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

struct Chunk {
    std::size_t begin, end;
    std::string bytes; // possibly repaired
};

// Reassembles prefix, the chunks in a new order with the separators left where they
// were, and the suffix.
std::string Reassemble(std::string_view b, std::string_view prefix,
                       const std::vector<Chunk>& chunks, const std::vector<std::size_t>& order,
                       std::size_t suffixBegin) {
    std::string out(prefix);
    for (std::size_t i = 0; i < chunks.size(); ++i) {
        out += chunks[order[i]].bytes;
        const std::size_t sepEnd = i + 1 < chunks.size() ? chunks[i + 1].begin : suffixBegin;
        out.append(b.substr(chunks[i].end, sepEnd - chunks[i].end));
    }
    out.append(b.substr(suffixBegin));
    return out;
}

} // namespace

// Every element must be read by the library as written, or not at all: an element that
// it reads otherwise (another id, or a text with more or less in it) is refused, since
// rewriting it would change a text or a hit that a host gets today. Elements it reads no
// row from (those on the two skipped lines, or in a file it refuses) are laid out so that
// it reads them. Texts it reads are kept byte for byte, carriage returns included.
bool FormatTextFile(std::string_view b, std::string& out, std::string& reason) {
    if (b.empty()) {
        out.clear();
        return true;
    }
    const TextFileReadings readings = CompareTextFile(b);
    const TextFileMarkup& m = readings.markup;
    const Framework::Internal::StringFileScan& scan = readings.scan;
    for (const auto& p : m.problems)
        if (!p.repairable) {
            reason = Where(b, p.offset) + p.message;
            return false;
        }
    if (m.declarationBegin == std::string_view::npos) {
        reason = "1:1: no XML declaration: the two lines the library skips cannot be laid out";
        return false;
    }
    if (!IsBlank(b.substr(m.declarationEnd, m.rootBegin - m.declarationEnd))) {
        reason =
            Where(b, m.declarationEnd) + "content between the declaration and the root element";
        return false;
    }
    const bool libraryReadsNothing = scan.rowsBegin == std::string_view::npos;
    struct TextChunk {
        Chunk chunk;
        std::size_t keptText = std::string_view::npos; // offset in chunk.bytes of a read text
        std::size_t keptSize = 0;
    };
    std::vector<TextChunk> chunks;
    for (std::size_t e = 0; e < m.elements.size(); ++e) {
        const TextElement& el = m.elements[e];
        if (el.quotedValues != 1) {
            reason = Where(b, el.begin) + (el.quotedValues == 0
                                               ? "element without a double-quoted id"
                                               : "element with more than one quoted attribute");
            return false;
        }
        if (!el.closed) {
            reason = Where(b, el.begin) + "element is not closed";
            return false;
        }
        const ElementReading& reading = readings.elements[e];
        if (reading.reading == Reading::Misread) {
            const auto& row = scan.rows[reading.row];
            reason = Where(b, el.begin) + "the library reads the text of " + Quote(el.id) + " as " +
                     Quote(row.text) + ", not " + Quote(el.text) + ": a rewrite would change it";
            return false;
        }
        if (reading.reading == Reading::NotRead && !libraryReadsNothing &&
            el.begin >= scan.rowsBegin) {
            reason = Where(b, el.begin) + "the library reads no string " + Quote(el.id) +
                     " here: it pairs the double quotes otherwise";
            return false;
        }
        const std::size_t closingQuote = el.idOffset + el.id.size();
        std::string_view gap = b.substr(closingQuote + 1, el.tagClose - closingQuote - 1);
        if (el.selfClosing)
            gap.remove_suffix(1); // the '/'
        if (!IsBlank(gap)) {
            reason = Where(b, closingQuote + 1) + "unexpected content between the id and '>'";
            return false;
        }
        // Rebuild the element from its parts: chunk head, start tag up to the id's
        // closing quote, '>', text and end tag.
        std::string element(b.substr(el.chunkBegin, closingQuote + 1 - el.chunkBegin));
        element += '>';
        TextChunk c{{el.chunkBegin, el.end, {}}, std::string_view::npos, 0};
        if (reading.reading == Reading::Kept) {
            c.keptText = element.size();
            c.keptSize = el.text.size();
        }
        if (el.selfClosing)
            element += "</" + std::string(el.name) + ">";
        else
            element.append(b.substr(el.tagClose + 1, el.end - el.tagClose - 1));
        c.chunk.bytes = std::move(element);
        chunks.push_back(std::move(c));
    }
    // Rows the library reads from no element: a hit nobody wrote, which a rewrite would lose.
    for (const std::size_t i : readings.strayRows) {
        const auto& row = scan.rows[i];
        reason = Where(b, OffsetIn(b, row.key) - 1) + "the library reads the quoted value " +
                 Quote(row.key) + " here as a string id";
        return false;
    }
    std::vector<std::size_t> order(chunks.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](std::size_t x, std::size_t y) {
        return Framework::Internal::CompareKeys(m.elements[x].id, m.elements[y].id) < 0;
    });

    // The declaration on line 1 and the root start tag on line 2, so that the library's
    // two skipped lines hold exactly them.
    std::string prefix;
    const std::string_view bom = b.substr(0, m.declarationBegin);
    prefix.append(bom.substr(0, bom.substr(0, 3) == kByteOrderMark ? 3 : 0));
    prefix.append(b.substr(m.declarationBegin, m.declarationEnd - m.declarationBegin));
    prefix += '\n';
    prefix.append(b.substr(m.rootBegin, m.rootEnd - m.rootBegin));
    prefix += '\n';
    const std::size_t firstChunk = chunks.empty() ? m.trailerBegin : chunks.front().chunk.begin;
    std::string_view between = b.substr(m.rootEnd, firstChunk - m.rootEnd);
    // Keep the indentation of the first element's line, not the line breaks before it.
    if (const std::size_t lf = between.rfind('\n'); lf != std::string_view::npos)
        between.remove_prefix(lf + 1);
    prefix.append(between);
    if (prefix.find('\n') != std::string::npos &&
        std::count(prefix.begin(), prefix.end(), '\n') != 2) {
        reason = "1:1: the declaration or the root start tag spans several lines";
        return false;
    }

    // The chunks in their new order with the separators left where they were, noting where
    // each text that the library reads lands, so that its line ends stay as they are.
    std::string joined = prefix;
    std::vector<std::pair<std::size_t, std::size_t>> kept; // offset and size in joined
    std::size_t suffixBegin = chunks.empty() ? m.trailerBegin : chunks.back().chunk.end;
    // An empty root start tag ("<strings/>") is the whole of line 2, and the prefix ends that
    // line already: the blank rest of its line in the file is not written as another one,
    // or every run of fmt would add a line.
    if (chunks.empty() && m.trailerBegin == m.rootEnd) {
        const std::size_t lf = std::min(b.find('\n', suffixBegin), b.size());
        if (IsBlank(b.substr(suffixBegin, lf - suffixBegin)))
            suffixBegin = std::min(lf + 1, b.size());
    }
    for (std::size_t i = 0; i < chunks.size(); ++i) {
        const TextChunk& c = chunks[order[i]];
        if (c.keptText != std::string_view::npos)
            kept.emplace_back(joined.size() + c.keptText, c.keptSize);
        joined += c.chunk.bytes;
        const std::size_t sepEnd = i + 1 < chunks.size() ? chunks[i + 1].chunk.begin : suffixBegin;
        joined.append(b.substr(chunks[i].chunk.end, sepEnd - chunks[i].chunk.end));
    }
    joined.append(b.substr(suffixBegin));
    // Line feeds only outside the kept texts, and one at the end.
    out.clear();
    out.reserve(joined.size() + 1);
    std::size_t k = 0;
    for (std::size_t i = 0; i < joined.size(); ++i) {
        while (k < kept.size() && kept[k].first + kept[k].second <= i)
            ++k;
        const bool inKeptText = k < kept.size() && i >= kept[k].first;
        if (!inKeptText && joined[i] == '\r') {
            // A run that ends a line, outside the kept texts (it stops at the next one).
            const std::size_t limit = k < kept.size() ? kept[k].first : joined.size();
            if (const std::size_t end = LineEndingReturns(joined, i, limit); end != i) {
                i = end - 1;
                continue;
            }
        }
        out += joined[i];
    }
    if (out.back() != '\n')
        out += '\n';
    return true;
}

bool FormatKeyTable(std::string_view b, std::string& out, std::string& reason) {
    if (const char* sign = SpreadsheetExport(b)) {
        reason = std::string("1:1: a spreadsheet export (") + sign +
                 "): which rows were meant cannot be told without a guess";
        return false;
    }
    if (b.substr(0, 3) == kByteOrderMark)
        b.remove_prefix(3);
    std::vector<KeyLine> lines;
    int number = 0;
    for (const auto& line : ReadKeyLines(b)) {
        ++number;
        if (IsBlank(line.text))
            continue;
        if (line.comma == std::string_view::npos) {
            reason = std::to_string(number) +
                     ":1: line without a comma: key and id cannot be told apart";
            return false;
        }
        lines.push_back(line);
    }
    std::stable_sort(lines.begin(), lines.end(), [](const KeyLine& x, const KeyLine& y) {
        return Framework::Internal::CompareKeys(x.key, y.key) < 0;
    });
    out.clear();
    for (const auto& line : lines) {
        out.append(line.key);
        out += ',';
        // Every carriage return that ends the line goes, not only the one before its
        // line feed.
        std::string_view id = line.id;
        while (!id.empty() && id.back() == '\r')
            id.remove_suffix(1);
        out.append(id);
        out += '\n';
    }
    return true;
}

// The verdict and the entries are the library's (ScanIconMap); only the bytes between
// entries are read here, to move whole entries with their comments. A rejected map is
// refused, and the result must read, by the library again, as the same entries in key
// order, or nothing is written.
bool FormatIconMap(std::string_view b, std::string& out, std::string& reason) {
    const IconMapView view = ReadIconMap(b);
    if (!view.scan.Accepted()) {
        reason = Where(b, view.scan.faultOffset) + view.fault;
        return false;
    }
    std::vector<std::size_t> order(view.entries.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](std::size_t x, std::size_t y) {
        return view.entries[x].key16 < view.entries[y].key16;
    });
    if (std::is_sorted(order.begin(), order.end())) {
        out = NormaliseLineEnds(b);
    } else {
        std::size_t at = 0;
        const auto starts = IconMapChunkStarts(b, view, at);
        if (!starts) {
            reason = Where(b, at) +
                     "the \"map\" elements are not siblings with only white space and comments "
                     "between them, so they cannot be reordered safely";
            return false;
        }
        std::vector<Chunk> chunks;
        for (std::size_t i = 0; i < view.entries.size(); ++i) {
            const std::size_t begin = (*starts)[i], end = view.entries[i].end;
            chunks.push_back({begin, end, std::string(b.substr(begin, end - begin))});
        }
        out = NormaliseLineEnds(
            Reassemble(b, b.substr(0, chunks.front().begin), chunks, order, chunks.back().end));
    }
    const IconMapView after = ReadIconMap(out);
    bool same = after.scan.Accepted() && after.scan.entries.size() == order.size();
    for (std::size_t i = 0; same && i < order.size(); ++i) {
        const auto& want = view.scan.entries[order[i]];
        same = after.scan.entries[i].key == want.key &&
               after.scan.entries[i].fileName == want.fileName;
    }
    if (!same) {
        reason = "1:1: the rewritten map would not read as the same entries in key order";
        return false;
    }
    return true;
}

FormatPlan PlanFormat(const std::filesystem::path& dir) {
    FormatPlan plan;
    struct Job {
        std::string name;
        bool (*format)(std::string_view, std::string&, std::string&);
    };
    std::vector<Job> jobs = {{kStartupStrings, FormatTextFile},
                             {kFullStrings, FormatTextFile},
                             {kOverrideStrings, FormatTextFile},
                             {kIconMap, FormatIconMap}};
    for (const char* table : kKeyTables)
        jobs.push_back({table, FormatKeyTable});
    for (const auto& job : jobs) {
        const auto bytes = ReadWholeFile(dir / job.name);
        if (!bytes)
            continue;
        std::string out, reason;
        if (!job.format(*bytes, out, reason)) {
            plan.changes.clear();
            plan.refusal = job.name + ":" + reason;
            return plan;
        }
        if (out == *bytes)
            continue;
        // Replacing a link would cut it and leave its target as it was; formatting the
        // target would rewrite a file outside the directory fmt was given.
        std::error_code ec;
        if (std::filesystem::is_symlink(dir / job.name, ec)) {
            plan.changes.clear();
            plan.refusal = job.name + " is a symbolic link: run fmt on the directory of its target";
            return plan;
        }
        plan.changes.push_back({job.name, std::move(out), *bytes});
    }
    return plan;
}

namespace {

// A name of its own beside target, hidden from directory listings, never one that exists.
std::filesystem::path TemporaryBeside(const std::filesystem::path& target, unsigned attempt) {
    static std::mt19937_64 random{std::random_device{}()};
    auto name = "." + target.filename().string() + ".qanres-";
    name += std::to_string(random() % 1000000000u) + "-" + std::to_string(attempt);
    return target.parent_path() / name;
}

void RemoveAll(const std::vector<std::filesystem::path>& paths) {
    std::error_code ec;
    for (const auto& path : paths)
        std::filesystem::remove(path, ec);
}

} // namespace

FormatResult ApplyFormat(const std::filesystem::path& dir, const FormatPlan& plan) {
    FormatResult result;
    std::vector<std::filesystem::path> temporaries;
    for (const auto& change : plan.changes) {
        const auto target = dir / change.name;
        std::error_code ec;
        const auto perms = std::filesystem::status(target, ec).permissions();
        if (ec) {
            result.error = "cannot read the mode of " + target.string();
            break;
        }
        std::string error;
        for (unsigned attempt = 0; attempt < 8; ++attempt) {
            const auto temporary = TemporaryBeside(target, attempt);
            error = Framework::Platform::CreateFileDurably(temporary, change.bytes, perms);
            if (error.empty()) {
                temporaries.push_back(temporary);
                break;
            }
            if (std::filesystem::symlink_status(temporary, ec).type() ==
                std::filesystem::file_type::not_found)
                break; // not a name clash: the directory or the disk refused
        }
        if (!error.empty()) {
            result.error = error;
            break;
        }
    }
    // An edit saved while fmt ran wins: nothing is replaced.
    for (std::size_t i = 0; result.error.empty() && i < temporaries.size(); ++i) {
        const auto& change = plan.changes[i];
        const auto now = ReadWholeFile(dir / change.name);
        if (!now || *now != change.original)
            result.error = change.name + " changed since fmt read it; nothing was replaced";
    }
    if (!result.error.empty()) {
        RemoveAll(temporaries);
        return result;
    }
    for (std::size_t i = 0; i < temporaries.size(); ++i) {
        std::error_code ec;
        std::filesystem::rename(temporaries[i], dir / plan.changes[i].name, ec);
        if (ec) {
            result.error =
                "cannot replace " + (dir / plan.changes[i].name).string() + ": " + ec.message();
            RemoveAll({temporaries.begin() + static_cast<std::ptrdiff_t>(i), temporaries.end()});
            break;
        }
        result.replaced.push_back(plan.changes[i].name);
    }
    for (const auto& name : result.replaced)
        Framework::Platform::SyncDirectory((dir / name).parent_path());
    return result;
}

} // namespace QanTool

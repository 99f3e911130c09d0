// Corpus.cpp: reads gettext catalogues (.mo) into one corpus, or makes texts up, and
// writes the string text files, key tables, icon map and cursor module the library reads.
#include "Corpus.h"

#include "CursorModule.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <fstream>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <stdexcept>

namespace Compare {
namespace fs = std::filesystem;
namespace {

constexpr std::size_t kStartupEvery = 16; // about 6% of the texts start up
constexpr std::size_t kOverrides = 300;
constexpr std::size_t kMissKeys = 4096;
constexpr std::size_t kDanglingKeys = 1024;
constexpr std::size_t kIconEvery = 8;
constexpr std::size_t kCursorEvery = 64;
constexpr std::size_t kMaxTextBytes = 2000;

std::string ReadFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

std::uint64_t WriteFile(const fs::path& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out)
        throw std::runtime_error("cannot write " + path.string());
    return bytes.size();
}

// The (msgid, translation) pairs of one .mo file, or none if it is malformed or not
// UTF-8. Plural forms keep their first form; the header entry is dropped.
std::vector<std::pair<std::string, std::string>> ReadMo(const fs::path& path) {
    const std::string file = ReadFile(path);
    auto u32 = [&](std::size_t at, bool swap) -> std::uint32_t {
        std::uint32_t v;
        std::memcpy(&v, file.data() + at, 4);
        return swap ? __builtin_bswap32(v) : v;
    };
    if (file.size() < 28)
        return {};
    bool swap = false;
    if (u32(0, false) == 0xde120495u)
        swap = true;
    else if (u32(0, false) != 0x950412deu)
        return {};
    const std::uint64_t count = u32(8, swap), originals = u32(12, swap),
                        translations = u32(16, swap);
    if (originals + count * 8 > file.size() || translations + count * 8 > file.size())
        return {};
    auto string = [&](std::uint64_t table, std::uint64_t i, std::string& out) {
        const std::uint64_t length = u32(static_cast<std::size_t>(table + i * 8), swap);
        const std::uint64_t offset = u32(static_cast<std::size_t>(table + i * 8 + 4), swap);
        if (offset + length > file.size())
            return false;
        out.assign(file.data() + offset, static_cast<std::size_t>(length));
        out = out.substr(0, out.find('\0'));
        return true;
    };
    std::vector<std::pair<std::string, std::string>> pairs;
    bool utf8 = false;
    for (std::uint64_t i = 0; i < count; ++i) {
        std::string id, text;
        if (!string(originals, i, id) || !string(translations, i, text))
            return {};
        if (id.empty()) {
            std::string header = text;
            std::transform(header.begin(), header.end(), header.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
            utf8 = header.find("charset=utf-8") != std::string::npos;
            continue;
        }
        pairs.emplace_back(std::move(id), std::move(text));
    }
    return utf8 ? pairs : std::vector<std::pair<std::string, std::string>>{};
}

// Texts every peer can hold unchanged: valid UTF-8, no control characters but line feed
// and tab, none at the ends (the gettext compiler would refuse a lone one), no
// noncharacters.
bool UsableText(const std::string& text) {
    std::wstring wide;
    if (text.empty() || text.size() > kMaxTextBytes || !DecodeUtf8(text, wide))
        return false;
    if (text.front() == '\n' || text.back() == '\n')
        return false;
    for (const wchar_t c : wide) {
        if (c < 0x20 && c != L'\n' && c != L'\t')
            return false;
        if (c == 0x7F || (c >= 0xFDD0 && c <= 0xFDEF) || (c & 0xFFFE) == 0xFFFE)
            return false;
    }
    return true;
}

// Letters and digits of s (others become one '_'), at most max characters.
std::string Slug(const std::string& s, std::size_t max) {
    std::string slug;
    for (const unsigned char c : s) {
        if (slug.size() >= max)
            break;
        if (std::isalnum(c) && c < 0x80)
            slug += static_cast<char>(c);
        else if (!slug.empty() && slug.back() != '_')
            slug += '_';
    }
    while (!slug.empty() && slug.back() == '_')
        slug.pop_back();
    return slug.empty() ? "x" : slug;
}

std::string Hex(std::size_t value, int width) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%0*zx", width, value);
    return buffer;
}

struct Source {
    std::string domain, locale, msgid, text;
};

// Catalogues in path order until target texts are read.
std::vector<Source> ReadCatalogues(const fs::path& root, std::size_t target, std::size_t& files) {
    std::vector<Source> sources;
    std::error_code error;
    if (!fs::is_directory(root, error))
        return sources;
    std::vector<fs::path> locales;
    for (const auto& locale : fs::directory_iterator(root, error))
        locales.push_back(locale.path());
    std::sort(locales.begin(), locales.end());
    for (const fs::path& locale : locales) {
        std::vector<fs::path> catalogues;
        for (const auto& file : fs::directory_iterator(locale / "LC_MESSAGES", error))
            if (file.path().extension() == ".mo")
                catalogues.push_back(file.path());
        std::sort(catalogues.begin(), catalogues.end());
        for (const fs::path& catalogue : catalogues) {
            const std::size_t before = sources.size();
            for (auto& [msgid, text] : ReadMo(catalogue)) {
                if (sources.size() >= target)
                    break;
                if (UsableText(text))
                    sources.push_back({catalogue.stem().string(), locale.filename().string(),
                                       std::move(msgid), std::move(text)});
            }
            files += sources.size() > before;
            if (sources.size() >= target)
                return sources;
        }
    }
    return sources;
}

// Texts of a few words from several scripts, with the characters the formats escape.
void MakeUpTexts(std::vector<Source>& sources, std::size_t target) {
    const char* words[] = {"open",  "the",        "selected", "layer",  "Bild", "öffnen",
                           "файл",  "сохранить",  "画像",     "を開く", "صورة", "&",
                           "<tag>", "\"quoted\"", "C:\\temp", "100%",   "ÿes",  "𝄞clef"};
    std::mt19937_64 random(7);
    while (sources.size() < target) {
        std::string text;
        const int count = 1 + static_cast<int>(random() % 9);
        for (int w = 0; w < count; ++w)
            text += std::string(w ? " " : "") + words[random() % std::size(words)];
        sources.push_back({"generated", "xx", text, text});
    }
}

std::string EscapeXmlText(const std::string& text) {
    std::string out;
    out.reserve(text.size() + 16);
    for (const char c : text) {
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '\\': // a doubled backslash is handed out as one, and never starts an escape
            out += "\\\\";
            break;
        default:
            out += c;
        }
    }
    return out;
}

// The texts of the legacy GUID table: pairs with a single row and a key, each key once.
std::vector<LegacyPair> ReadLegacyPairs(const fs::path& table) {
    std::ifstream in(table);
    std::map<std::pair<std::string, int>, std::vector<std::string>> rows;
    std::vector<std::pair<std::string, int>> order;
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        const auto tab1 = line.find('\t');
        const auto tab2 = tab1 == std::string::npos ? tab1 : line.find('\t', tab1 + 1);
        if (tab2 == std::string::npos)
            continue;
        const std::pair<std::string, int> pair{line.substr(tab1 + 1, tab2 - tab1 - 1),
                                               std::atoi(line.substr(0, tab1).c_str())};
        if (rows.find(pair) == rows.end())
            order.push_back(pair);
        rows[pair].push_back(line.substr(tab2 + 1));
    }
    std::vector<LegacyPair> pairs;
    std::set<std::string> guids;
    for (const auto& pair : order) {
        const auto& found = rows[pair];
        const std::string& guid = found.front();
        if (found.size() != 1 || guid.empty() ||
            guid.find_first_of(",\n\"<&") != std::string::npos || !guids.insert(guid).second)
            continue;
        pairs.push_back({pair.first, pair.second, guid});
    }
    return pairs;
}

void WriteStringFiles(Corpus& corpus, const std::vector<std::string>& originals,
                      const std::vector<std::size_t>& overridden) {
    const std::string head = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<strings>\n";
    const std::string tail = "</strings>\n";
    std::vector<std::size_t> byId(corpus.entries.size());
    for (std::size_t i = 0; i < byId.size(); ++i)
        byId[i] = i;
    std::sort(byId.begin(), byId.end(), [&](std::size_t a, std::size_t b) {
        return corpus.entries[a].id < corpus.entries[b].id;
    });
    std::string full = head, startup = head, overrides = head;
    for (const std::size_t i : byId) {
        const Entry& entry = corpus.entries[i];
        const std::string row =
            "  <s id=\"" + entry.id + "\">" + EscapeXmlText(originals[i]) + "</s>\n";
        full += row;
        ++corpus.textRows;
        if (entry.startup) {
            startup += row;
            ++corpus.textRows;
        }
    }
    for (const std::size_t i : overridden) // file order is free for overrides
        overrides += "  <s id=\"" + corpus.entries[i].id + "\">" +
                     EscapeXmlText(corpus.entries[i].text) + "</s>\n";
    corpus.textRows += overridden.size();
    corpus.overrides = overridden.size();
    full += tail, startup += tail, overrides += tail;

    fs::create_directories(corpus.stringDir / "override");
    corpus.fullFile = corpus.stringDir / "strings.xml";
    corpus.fullBytes = WriteFile(corpus.fullFile, full);
    for (const auto& [name, bytes] : {std::pair{"startupstrings.xml", &startup},
                                      std::pair{"override/strings.xml", &overrides}}) {
        corpus.constructionFiles.push_back(corpus.stringDir / name);
        corpus.constructionBytes += WriteFile(corpus.stringDir / name, *bytes);
    }
}

void WriteKeyTables(Corpus& corpus) {
    const std::size_t n = corpus.entries.size();
    const char* names[] = {"string.csv", "caption.csv", "tooltipHeader.csv", "tooltipBody.csv"};
    for (int kind = 0; kind < 4; ++kind) {
        std::vector<std::pair<std::string, std::string>> rows;
        for (std::size_t i = 0; i < n; ++i)
            rows.emplace_back(corpus.entries[i].key,
                              corpus.entries[(i + kind * Corpus::kKindStride) % n].id);
        if (kind == 0)
            for (std::size_t j = 0; j < kDanglingKeys; ++j) {
                const Entry& near = corpus.entries[(j * 97) % n];
                rows.emplace_back(near.key + "-d", near.id + "_GONE");
            }
        for (std::size_t j = 0; j < corpus.legacyKeys.size(); ++j) {
            const LegacyKey& legacy = corpus.legacyKeys[j];
            if (legacy.plain == (kind == 0))
                rows.emplace_back(legacy.guid, corpus.entries[(j * 5 + kind) % n].id);
        }
        std::sort(rows.begin(), rows.end());
        std::string csv;
        for (const auto& [key, id] : rows)
            csv += key + "," + id + "\n";
        corpus.keyRows += rows.size();
        corpus.constructionFiles.push_back(corpus.resourceDir / names[kind]);
        corpus.constructionBytes += WriteFile(corpus.resourceDir / names[kind], csv);
    }
}

void WriteIconsAndCursors(Corpus& corpus) {
    for (std::size_t i = 0; i < corpus.entries.size(); i += kIconEvery)
        corpus.icons.push_back(
            {corpus.entries[i].key, "icon" + Hex(i, 5) + (i % 16 ? ".ico" : ".png.png")});
    std::sort(corpus.icons.begin(), corpus.icons.end(),
              [](const IconRow& a, const IconRow& b) { return a.key < b.key; });
    std::string map = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<icons>\n";
    for (const IconRow& icon : corpus.icons)
        map += "  <map guid=\"" + icon.key + "\">" + icon.file + "</map>\n";
    map += "</icons>\n";
    WriteFile(corpus.resourceDir / "icons.map.xml", map);

    for (std::size_t i = 0; i < corpus.entries.size(); i += kCursorEvery)
        corpus.cursors.push_back({corpus.entries[i].key, static_cast<std::uint32_t>(100 + i)});
    std::sort(corpus.cursors.begin(), corpus.cursors.end(),
              [](const CursorRow& a, const CursorRow& b) { return a.key < b.key; });
    WriteCursorModule(corpus.moduleDir / "QanIcons.dll", corpus.cursors);
}

} // namespace

Corpus::~Corpus() {
    std::error_code ignored;
    if (!root.empty())
        fs::remove_all(root, ignored);
}

void BuildCorpus(Corpus& corpus, const fs::path& localeRoot, std::size_t target,
                 const fs::path& legacyTable) {
    std::size_t files = 0;
    std::vector<Source> sources = ReadCatalogues(localeRoot, target, files);
    const std::size_t real = sources.size();
    MakeUpTexts(sources, target);
    corpus.source = std::to_string(real) + " texts from " + std::to_string(files) +
                    " catalogues under " + localeRoot.string() + ", " +
                    std::to_string(sources.size() - real) + " made up";

    std::vector<std::string> originals;
    for (std::size_t i = 0; i < sources.size(); ++i) {
        const Source& s = sources[i];
        const std::string scope = Slug(s.domain, 16) + "." + Slug(s.locale, 8);
        Entry entry;
        entry.key = scope + "." + Slug(s.msgid, 20) + "." + Hex(i, 5);
        entry.id = Slug(s.domain, 16) + "_" + Slug(s.locale, 8) + "_" + Hex(i, 6);
        std::transform(entry.id.begin(), entry.id.end(), entry.id.begin(),
                       [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
        entry.text = s.text;
        entry.startup = i % kStartupEvery == 0;
        originals.push_back(s.text);
        corpus.entries.push_back(std::move(entry));
    }
    const std::size_t n = corpus.entries.size();
    if (n < 1000)
        throw std::runtime_error("corpus too small");

    std::vector<std::size_t> overridden;
    for (std::size_t m = 0; m < kOverrides; ++m) {
        const std::size_t i = (m * 397 + 11) % n;
        if (std::find(overridden.begin(), overridden.end(), i) != overridden.end())
            continue;
        overridden.push_back(i);
        corpus.entries[i].text = "Überschrieben " + std::to_string(m) + ": " + originals[i];
    }

    std::set<std::string> keys;
    for (const Entry& entry : corpus.entries)
        keys.insert(entry.key);
    for (std::size_t j = 0; j < kMissKeys; ++j)
        corpus.missKeys.push_back(corpus.entries[(j * 31) % n].key + "-");
    for (std::size_t j = 0; j < kDanglingKeys; ++j)
        corpus.danglingKeys.push_back(corpus.entries[(j * 97) % n].key + "-d");

    std::error_code error;
    if (fs::is_regular_file(legacyTable, error))
        for (LegacyPair& pair : ReadLegacyPairs(legacyTable)) {
            if (keys.count(pair.guid))
                continue;
            const std::size_t j = corpus.legacyKeys.size();
            LegacyKey key;
            key.guid = pair.guid;
            key.plain = j % 2 == 0;
            key.text = corpus.entries[(j * 5 + (key.plain ? 0 : 1)) % n].text;
            if (!key.plain) {
                key.header = corpus.entries[(j * 5 + 2) % n].text;
                key.body = corpus.entries[(j * 5 + 3) % n].text;
            }
            corpus.legacyKeys.push_back(std::move(key));
            corpus.legacyPairs.push_back(std::move(pair));
        }

    corpus.root =
        fs::temp_directory_path() / ("qanres-compare-" + std::to_string(std::random_device{}()));
    corpus.stringDir = corpus.root / "strings";
    corpus.resourceDir = corpus.root / "resources";
    corpus.iconDir = corpus.root / "icons";
    corpus.moduleDir = corpus.root / "modules";
    for (const fs::path& dir :
         {corpus.stringDir, corpus.resourceDir, corpus.iconDir, corpus.moduleDir})
        fs::create_directories(dir);
    WriteStringFiles(corpus, originals, overridden);
    WriteKeyTables(corpus);
    WriteIconsAndCursors(corpus);
}

bool DecodeUtf8(const std::string& bytes, std::wstring& out) {
    out.clear();
    for (std::size_t i = 0; i < bytes.size();) {
        const auto b = static_cast<unsigned char>(bytes[i]);
        int extra = 0;
        std::uint32_t c = 0;
        if (b < 0x80)
            c = b;
        else if (b >= 0xC2 && b < 0xE0)
            c = b & 0x1F, extra = 1;
        else if (b >= 0xE0 && b < 0xF0)
            c = b & 0x0F, extra = 2;
        else if (b >= 0xF0 && b < 0xF5)
            c = b & 0x07, extra = 3;
        else
            return false;
        if (extra > 0 && i + static_cast<std::size_t>(extra) >= bytes.size())
            return false;
        for (int k = 1; k <= extra; ++k) {
            const auto next = static_cast<unsigned char>(bytes[i + static_cast<std::size_t>(k)]);
            if ((next & 0xC0) != 0x80)
                return false;
            c = c << 6 | (next & 0x3F);
        }
        if ((extra == 2 && c < 0x800) || (extra == 3 && (c < 0x10000 || c > 0x10FFFF)) ||
            (c >= 0xD800 && c <= 0xDFFF))
            return false;
        out += static_cast<wchar_t>(c);
        i += static_cast<std::size_t>(extra) + 1;
    }
    return true;
}

std::wstring Widen(const std::string& ascii) {
    return std::wstring(ascii.begin(), ascii.end());
}

} // namespace Compare

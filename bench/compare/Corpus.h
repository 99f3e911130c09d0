// Corpus.h: the one set of texts that every peer holds, taken from the system's gettext
// catalogues (or made up where there are none), and the resource files written from it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace Compare {

// One text of the corpus: the key code asks with, the string id the text files use, and
// the text a look-up must hand out (UTF-8, overrides already applied).
struct Entry {
    std::string key;
    std::string id;
    std::string text;
    bool startup = false; // also in startupstrings.xml
};

// A legacy (component, id) pair with its own row and the GUID key it names.
struct LegacyPair {
    std::string component;
    int id = 0;
    std::string guid;
};

// A GUID key of the legacy table placed in the key tables: either in string.csv (a plain
// text) or only in the caption and tooltip tables (a text composed of three fields).
struct LegacyKey {
    std::string guid;
    std::string text;   // plain: the string; composed: the caption
    std::string body;   // composed only
    std::string header; // composed only
    bool plain = true;
};

struct IconRow {
    std::string key;
    std::string file; // name in icons.map.xml
};

struct CursorRow {
    std::string key;
    std::uint32_t id = 0;
};

struct Corpus {
    std::filesystem::path root;        // temporary; removed by the destructor
    std::filesystem::path stringDir;   // master string directory
    std::filesystem::path resourceDir; // key tables and icon map
    std::filesystem::path iconDir;     // icon directory (an empty folder)
    std::filesystem::path moduleDir;   // holds QanIcons.dll with the cursor table
    std::string source;                // where the texts came from, for the report

    std::vector<Entry> entries;
    std::vector<std::string> missKeys;     // in no key table
    std::vector<std::string> danglingKeys; // in string.csv, their ids in no text file
    std::vector<LegacyPair> legacyPairs;
    std::vector<LegacyKey> legacyKeys;
    std::vector<IconRow> icons;
    std::vector<CursorRow> cursors;

    // Files the string collection reads at construction and at the full load.
    std::vector<std::filesystem::path> constructionFiles;
    std::filesystem::path fullFile;
    std::uint64_t constructionBytes = 0, fullBytes = 0;
    std::uint64_t textRows = 0, keyRows = 0; // rows of all text files, of all key tables
    std::size_t overrides = 0;               // rows of override/strings.xml

    Corpus() = default;
    Corpus(const Corpus&) = delete;
    Corpus& operator=(const Corpus&) = delete;
    ~Corpus();

    // The text of entry i as the given kind (0 string, 1 caption, 2 tooltip header,
    // 3 tooltip body): each table maps key i to another entry's id.
    const std::string& KindText(std::size_t i, int kind) const {
        return entries[(i + static_cast<std::size_t>(kind) * kKindStride) % entries.size()].text;
    }

    static constexpr std::size_t kKindStride = 7919;
};

// Reads about `target` texts from the catalogues under localeRoot (topping up with made-up
// texts when they hold fewer), adds the legacy GUID rows from legacyTable (if readable) and
// writes every file under a new temporary folder. Throws std::runtime_error on failure.
void BuildCorpus(Corpus& corpus, const std::filesystem::path& localeRoot, std::size_t target,
                 const std::filesystem::path& legacyTable);

// Strict UTF-8 to wide characters; false on any invalid sequence.
bool DecodeUtf8(const std::string& bytes, std::wstring& out);
std::wstring Widen(const std::string& ascii);

} // namespace Compare

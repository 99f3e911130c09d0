// StringResourceCollection.cpp: start-up texts, overrides and key tables at construction;
// the full text file once, at the first look-up whose id the start-up texts lack.
#include "strings/StringResourceCollection.h"

#include "base/LoadRecord.h"
#include "base/Settings.h"
#include "base/Unicode.h"
#include "platform/Path.h"
#include "platform/Platform.h"
#include "strings/CsvKeyTable.h"
#include "strings/DecodeStringText.h"
#include "strings/FindInTable.h"
#include "strings/MergeOverrides.h"
#include "strings/StringResourceLoadException.h"
#include "strings/TableIndex.h"
#include "strings/XmlStringTable.h"

#include <chrono>
#include <cstdint>
#include <mutex>

namespace Framework::Internal {
namespace {

// Marks the bounds of a loading phase. The readings exist so that the start-up cost can
// be measured; nothing reads them and nothing is logged.
void PhaseTimePoint() {
    [[maybe_unused]] const auto now = std::chrono::steady_clock::now();
}

QanStringT<wchar_t> TextFilePath(const QanStringT<wchar_t>& directory, const wchar_t* baseName) {
    // ".xml" is appended to the joined path as plain text, not joined as a name.
    return Path::Combine(directory, baseName) + L".xml";
}

// A key narrowed to UTF-8. Plain ASCII keys of usual length are narrowed into a buffer on
// the stack, so that a look-up allocates nothing but its result.
class NarrowKey {
public:
    explicit NarrowKey(const QanStringT<wchar_t>& key) {
        if (key.size() <= sizeof(small)) {
            std::size_t i = 0;
            for (; i < key.size() && static_cast<std::uint32_t>(key[i]) < 0x80; ++i)
                small[i] = static_cast<char>(key[i]);
            if (i == key.size()) {
                view = QanStringViewT<char>(small, i);
                return;
            }
        }
        large = Utf8::Encode(key);
        view = large;
    }
    NarrowKey(const NarrowKey&) = delete;
    NarrowKey& operator=(const NarrowKey&) = delete;

    QanStringViewT<char> View() const { return view; }

private:
    char small[256];
    QanStringT<char> large;
    QanStringViewT<char> view;
};

} // namespace

// A table with the index that searches it as FindInTable would.
struct IndexedTable {
    StringTable table;
    TableIndex index;

    void Index() { index = TableIndex(table.entries); }
    std::optional<std::size_t> FindRow(QanStringViewT<char> key) const {
        return index.Find(table.entries, key);
    }
    std::optional<QanStringViewT<char>> Find(QanStringViewT<char> key) const {
        const std::optional<std::size_t> row = FindRow(key);
        if (!row)
            return std::nullopt;
        return table.entries[*row].text;
    }
};

// A key table with its index, built at the table's first look-up (the key tables are read
// at construction, and a kind that is never asked for never pays for its index). Searched
// without the collection's lock: the once-flag orders the build before every search.
struct KeyTable {
    StringTable table;
    mutable TableIndex index;
    mutable std::once_flag indexed;

    std::optional<std::size_t> FindRow(QanStringViewT<char> key) const {
        std::call_once(indexed, [this] { index = TableIndex(table.entries); });
        return index.Find(table.entries, key);
    }
};

// After the full load, each key row's text row, found at the key's first hit and kept:
// 0 while unknown, kNoText when the id has no text, otherwise the text row + 1 (a row
// takes at least four bytes of a file below 4 GiB, so the numbers fit).
constexpr std::uint32_t kNoText = UINT32_MAX;
struct TextRows {
    std::unique_ptr<std::uint32_t[]> rows; // one per key row, made at the first hit
};

struct StringResourceCollection::State {
    IndexedTable strings;
    KeyTable stringKeys;
    KeyTable captionKeys;
    KeyTable tooltipHeaderKeys;
    KeyTable tooltipBodyKeys;
    std::mutex lock; // guards strings, overrides and fullStringsLoaded
    bool fullStringsLoaded = false;
    IndexedTable overrides;
    // The start-up texts' bytes, kept when the full load replaces them: every text view
    // ever found stays valid while the collection lives, so texts are decoded after the
    // lock is released.
    std::unique_ptr<char[]> startupBytes;
    // Per key table (in StringKind order), under the lock, once the full file is loaded.
    TextRows textRows[4];
    LoadRecorder* recorder = nullptr; // records what is read, when the owner keeps a report

    // Loads one text file, and records it when a report is kept.
    void Load(StringTable& table, const QanStringT<wchar_t>& path, bool sort,
              LoadReport::File file) {
        if (!recorder) {
            LoadXmlStringTable(table, path, sort);
            return;
        }
        FileRecord record;
        record.file = file;
        LoadXmlStringTable(table, path, sort, &record);
        recorder->Add(std::move(record));
    }
    // Loads one key table, and records it when a report is kept.
    void Load(StringTable& table, const QanStringT<wchar_t>& path, LoadReport::File file) {
        if (!recorder) {
            LoadCsvKeyTable(table, path);
            return;
        }
        FileRecord record;
        record.file = file;
        LoadCsvKeyTable(table, path, &record);
        recorder->Add(std::move(record));
    }

    const KeyTable* KeysOf(StringKind kind) const {
        switch (kind) {
        case String:
            return &stringKeys;
        case Caption:
            return &captionKeys;
        case TooltipHeader:
            return &tooltipHeaderKeys;
        case TooltipBody:
            return &tooltipBodyKeys;
        default:
            return nullptr;
        }
    }

    // Reads the full text file in place of the start-up texts and lays the overrides over
    // it. Attempted once: a file that cannot be read is not asked for again.
    void LoadFullStrings() {
        PhaseTimePoint();
        // Kept even when the load fails: the rows then still point into these bytes.
        startupBytes = std::move(strings.table.buffer);
        // The directory is read now, so a change after construction moves the full file.
        Load(strings.table, TextFilePath(ProcessSettings().masterStringDirectory, L"strings"),
             false, LoadReport::File::FullStrings);
        fullStringsLoaded = true;
        try {
            MergeOverrides(strings.table, overrides.table);
        } catch (const StringResourceLoadException&) {
            // The table stays as the merge left it; the look-up goes on.
        }
        // The merge changes texts only, never ids, so the index is built once, after it.
        strings.Index();
        PhaseTimePoint();
    }
};

StringResourceCollection::StringResourceCollection(LoadRecorder* recorder)
    : state(std::make_unique<State>()) {
    state->recorder = recorder;
    const Settings& settings = ProcessSettings();
    const Platform::IPlatform& platform = Platform::CurrentPlatform();

    PhaseTimePoint();
    // Not tested for existence: a missing start-up file simply leaves the table empty.
    state->Load(state->strings.table,
                TextFilePath(settings.masterStringDirectory, L"startupstrings"), false,
                LoadReport::File::StartupStrings);
    state->strings.Index();
    PhaseTimePoint();

    // The override file may be in any order, so it is sorted here.
    const QanStringT<wchar_t> overridePath =
        Path::Combine(Path::Combine(settings.masterStringDirectory, L"override"), L"strings.xml");
    if (platform.Exists(overridePath))
        state->Load(state->overrides.table, overridePath, true, LoadReport::File::OverrideStrings);
    else if (recorder) {
        FileRecord missing;
        missing.file = LoadReport::File::OverrideStrings;
        missing.path = overridePath;
        missing.outcome = LoadReport::Outcome::Missing;
        recorder->Add(std::move(missing));
    }
    state->overrides.Index();
    PhaseTimePoint();

    state->Load(state->stringKeys.table, Path::Combine(settings.resourceDirectory, L"string.csv"),
                LoadReport::File::StringKeys);
    state->Load(state->captionKeys.table, Path::Combine(settings.resourceDirectory, L"caption.csv"),
                LoadReport::File::CaptionKeys);
    state->Load(state->tooltipHeaderKeys.table,
                Path::Combine(settings.resourceDirectory, L"tooltipHeader.csv"),
                LoadReport::File::TooltipHeaderKeys);
    state->Load(state->tooltipBodyKeys.table,
                Path::Combine(settings.resourceDirectory, L"tooltipBody.csv"),
                LoadReport::File::TooltipBodyKeys);
    PhaseTimePoint();
}

StringResourceCollection::~StringResourceCollection() = default;

std::optional<QanStringT<wchar_t>>
StringResourceCollection::GetResource(const QanStringT<wchar_t>& key, StringKind kind) const {
    // The key tables never change after construction: searched without the lock.
    const KeyTable* keys = state->KeysOf(kind);
    if (!keys)
        return std::nullopt;
    const NarrowKey narrowKey(key);
    const std::optional<std::size_t> keyRow = keys->FindRow(narrowKey.View());
    if (!keyRow)
        return std::nullopt;
    const QanStringViewT<char> id = keys->table.entries[*keyRow].text;

    // Held while the tables are searched (the lazy load replaces them); the bytes a found
    // text points into are never released while the collection lives (the start-up bytes
    // are kept at the load, the full and override tables are never replaced), so the text
    // is decoded after the lock is released.
    QanStringViewT<char> found;
    {
        std::lock_guard<std::mutex> guard(state->lock);
        std::optional<QanStringViewT<char>> text;
        if (state->fullStringsLoaded) {
            // The full table no longer changes: the key row's text row is searched once.
            std::unique_ptr<std::uint32_t[]>& known = state->textRows[kind].rows;
            if (!known)
                known = std::make_unique<std::uint32_t[]>(keys->table.entries.size());
            std::uint32_t& slot = known[*keyRow];
            if (slot == 0) {
                const std::optional<std::size_t> row = state->strings.FindRow(id);
                slot = row ? static_cast<std::uint32_t>(*row + 1) : kNoText;
            }
            if (slot != kNoText)
                text = state->strings.table.entries[slot - 1].text;
        } else if ((text = state->strings.Find(id))) {
            // Before the full load the overrides are consulted for each id; afterwards they
            // are merged into the table.
            if (const auto overridden = state->overrides.Find(id))
                text = overridden;
        } else {
            state->LoadFullStrings();
            text = state->strings.Find(id);
        }
        // The key is this collection's, but its id has no text: answered, with an empty
        // text, so that the service does not look elsewhere.
        if (!text)
            return QanStringT<wchar_t>();
        found = *text;
    }
    return DecodeStringText(found);
}

} // namespace Framework::Internal

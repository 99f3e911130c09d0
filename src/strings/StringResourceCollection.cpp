// StringResourceCollection.cpp: start-up texts, overrides and key tables at construction;
// the full text file once, at the first look-up whose id the start-up texts lack.
#include "strings/StringResourceCollection.h"

#include "base/HashBytes.h"
#include "base/LoadRecord.h"
#include "base/Prefetch.h"
#include "base/Settings.h"
#include "base/Unicode.h"
#include "platform/Path.h"
#include "platform/Platform.h"
#include "strings/CsvKeyTable.h"
#include "strings/DecodeStringText.h"
#include "strings/HitMemo.h"
#include "strings/MergeOverrides.h"
#include "strings/StringResourceLoadException.h"
#include "strings/TableIndex.h"
#include "strings/XmlStringTable.h"

#include <atomic>
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
    std::optional<QanStringViewT<char>> Find(QanStringViewT<char> key) const {
        const std::optional<std::size_t> row = index.Find(table.entries, key);
        if (!row)
            return std::nullopt;
        return table.entries[*row].text;
    }
};

// A key table with its search index and the memo of its hits, both made at the table's
// first look-up (the key tables are read at construction, and a kind that is never asked
// for never pays for them). Searched without the collection's lock: the once-flag orders
// the build before every search, and the memo's Find needs no lock.
struct KeyTable {
    KeyRows table;
    mutable TableIndex index;
    mutable HitMemo memo;
    mutable std::once_flag indexed;

    void Ready() const {
        std::call_once(indexed, [this] {
            index = TableIndex(table);
            memo.Prepare(table);
        });
    }
};

// A remembered text in the one 64-bit word its memo slot keeps: where its bytes lie (an
// offset into the text table's bytes or the overrides' bytes, and its length), in which
// load it was found (a text found before the full load is looked for anew after it), or
// that the id had no text. 0: nothing remembered. A text too long for the length's bits is
// not remembered, and is looked for at every hit.
namespace TextWord {
constexpr unsigned kLengthShift = 32;
constexpr std::uint64_t kLengthMax = (std::uint64_t{1} << 26) - 1;
constexpr std::uint64_t kInOverrides = std::uint64_t{1} << 58;
constexpr std::uint64_t kBeforeLoad = std::uint64_t{1} << 59;
constexpr std::uint64_t kAfterLoad = std::uint64_t{2} << 59;
constexpr std::uint64_t kLoadBits = std::uint64_t{3} << 59;
constexpr std::uint64_t kNoText = std::uint64_t{1} << 61;
constexpr std::uint64_t kPlain = std::uint64_t{1} << 62; // IsPlainText holds for the text
} // namespace TextWord

// Whether view lies within the size bytes from base (none do when base is null).
bool Within(QanStringViewT<char> view, const char* base, std::size_t size) {
    const auto at = reinterpret_cast<std::uintptr_t>(view.data());
    const auto from = reinterpret_cast<std::uintptr_t>(base);
    return base && at >= from && at - from <= size && view.size() <= size - (at - from);
}

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
    std::atomic<const char*> textBases[2] = {nullptr, nullptr}; // see PrefetchText
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
    void Load(KeyRows& table, const QanStringT<wchar_t>& path, LoadReport::File file) {
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

    // The text of id as the tables stand now. Called with the lock held; the first id that
    // the start-up texts lack loads the full file.
    std::optional<QanStringViewT<char>> FindText(QanStringViewT<char> id) {
        if (fullStringsLoaded)
            return strings.Find(id);
        if (const std::optional<QanStringViewT<char>> text = strings.Find(id)) {
            // Before the full load the overrides are consulted for each id; afterwards they
            // are merged into the table.
            if (const std::optional<QanStringViewT<char>> overridden = overrides.Find(id))
                return overridden;
            return text;
        }
        LoadFullStrings();
        return strings.Find(id);
    }

    std::uint64_t LoadBits() const {
        return fullStringsLoaded ? TextWord::kAfterLoad : TextWord::kBeforeLoad;
    }

    // The word that remembers text, found now. Called with the lock held.
    std::uint64_t Remembered(std::optional<QanStringViewT<char>> text) const {
        using namespace TextWord;
        if (!text)
            return LoadBits() | kNoText;
        if (text->size() > kLengthMax)
            return 0;
        std::uint64_t word = LoadBits() | std::uint64_t{text->size()} << kLengthShift |
                             (IsPlainText(*text) ? kPlain : 0);
        const char* base = strings.table.buffer.get();
        if (Within(*text, overrides.table.buffer.get(), overrides.table.size)) {
            base = overrides.table.buffer.get();
            word |= kInOverrides;
        } else if (!Within(*text, base, strings.table.size)) {
            return 0; // the start-up bytes of a failed full load
        }
        return word | static_cast<std::uint64_t>(text->data() - base);
    }

    // The text a word remembers, when it was found in this load; called with the lock held.
    std::optional<std::optional<QanStringViewT<char>>> Recalled(std::uint64_t word) const {
        using namespace TextWord;
        if ((word & kLoadBits) != LoadBits())
            return std::nullopt;
        if (word & kNoText)
            return std::optional<QanStringViewT<char>>();
        const char* base =
            (word & kInOverrides) ? overrides.table.buffer.get() : strings.table.buffer.get();
        return QanStringViewT<char>(base + static_cast<std::uint32_t>(word),
                                    (word >> kLengthShift) & kLengthMax);
    }

    // Asks for the first bytes of the text a word remembers. Called without the lock, so
    // the word may be stale and the bases are read from their atomic copies: a hint only.
    void PrefetchText(std::uint64_t word) const {
        if (word == 0 || (word & TextWord::kNoText) || word == HitMemo::kMissed)
            return;
        const char* base =
            textBases[(word & TextWord::kInOverrides) ? 1 : 0].load(std::memory_order_relaxed);
        if (base)
            Prefetch(base + static_cast<std::uint32_t>(word));
    }

    // The bytes the texts lie in, copied for PrefetchText; set under the lock.
    void PublishBases() {
        textBases[0].store(strings.table.buffer.get(), std::memory_order_relaxed);
        textBases[1].store(overrides.table.buffer.get(), std::memory_order_relaxed);
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
        PublishBases();
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
    state->PublishBases();
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
    const QanStringViewT<char> narrow = narrowKey.View();
    const std::uint64_t hash = HashBytes(narrow.data(), narrow.size());
    keys->Ready();
    // A key hit before is found in the memo, and its text's bytes are asked for while its
    // key's bytes are compared; any other key is searched for, outside the lock.
    const State& asking = *state;
    HitMemo::Slot* slot = keys->memo.Find(narrow, hash, [&asking](const HitMemo::Slot& candidate) {
        asking.PrefetchText(candidate.Text());
    });
    if (slot && slot->Missed())
        return std::nullopt;
    std::optional<std::size_t> keyRow;
    if (!slot) {
        keyRow = keys->index.Find(keys->table, narrow);
        if (!keyRow) {
            if (keys->memo.MayRememberMiss()) {
                std::lock_guard<std::mutex> guard(state->lock);
                keys->memo.RememberMiss(hash, narrow);
            }
            return std::nullopt;
        }
    }

    // Held while the tables are searched (the lazy load replaces them); the bytes a found
    // text points into are never released while the collection lives (the start-up bytes
    // are kept at the load, the full and override tables are never replaced), so the text
    // is decoded after the lock is released.
    QanStringViewT<char> found;
    bool plain = false;
    {
        std::lock_guard<std::mutex> guard(state->lock);
        if (!slot)
            slot = keys->memo.Remember(hash, *keyRow);
        std::optional<std::optional<QanStringViewT<char>>> known;
        if (slot)
            known = state->Recalled(slot->Text());
        if (!known) {
            // Not found in this load yet: the id is read from the key's row, which a key
            // found in the memo is searched for again (once per key and load).
            if (!keyRow)
                keyRow = keys->index.Find(keys->table, narrow);
            known = state->FindText(keys->table.Id(*keyRow));
            if (slot)
                slot->SetText(state->Remembered(*known));
        }
        // The key is this collection's, but its id has no text: answered, with an empty
        // text, so that the service does not look elsewhere.
        if (!*known)
            return QanStringT<wchar_t>();
        found = **known;
        // The slot's word is now this text's: whether it needs more than its UTF-8 decoded.
        plain = slot && (slot->Text() & TextWord::kPlain) != 0;
    }
    return plain ? DecodePlainText(found) : DecodeStringText(found);
}

} // namespace Framework::Internal

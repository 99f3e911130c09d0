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

struct StringResourceCollection::State {
    StringTable strings;
    StringTable stringKeys;
    StringTable captionKeys;
    StringTable tooltipHeaderKeys;
    StringTable tooltipBodyKeys;
    std::mutex lock; // guards strings, overrides and fullStringsLoaded
    bool fullStringsLoaded = false;
    StringTable overrides;
    LoadRecorder* recorder = nullptr; // records what is read, when the owner keeps a report

    // Loads one start-up file, and records it when a report is kept.
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

    const StringTable* KeyTable(StringKind kind) const {
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
        // The directory is read now, so a change after construction moves the full file.
        Load(strings, TextFilePath(ProcessSettings().masterStringDirectory, L"strings"), false,
             LoadReport::File::FullStrings);
        fullStringsLoaded = true;
        try {
            MergeOverrides(strings, overrides);
        } catch (const StringResourceLoadException&) {
            // The table stays as the merge left it; the look-up goes on.
        }
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
    state->Load(state->strings, TextFilePath(settings.masterStringDirectory, L"startupstrings"),
                false, LoadReport::File::StartupStrings);
    PhaseTimePoint();

    // The override file may be in any order, so it is sorted here.
    const QanStringT<wchar_t> overridePath =
        Path::Combine(Path::Combine(settings.masterStringDirectory, L"override"), L"strings.xml");
    if (platform.Exists(overridePath))
        state->Load(state->overrides, overridePath, true, LoadReport::File::OverrideStrings);
    else if (recorder) {
        FileRecord missing;
        missing.file = LoadReport::File::OverrideStrings;
        missing.path = overridePath;
        missing.outcome = LoadReport::Outcome::Missing;
        recorder->Add(std::move(missing));
    }
    PhaseTimePoint();

    state->Load(state->stringKeys, Path::Combine(settings.resourceDirectory, L"string.csv"),
                LoadReport::File::StringKeys);
    state->Load(state->captionKeys, Path::Combine(settings.resourceDirectory, L"caption.csv"),
                LoadReport::File::CaptionKeys);
    state->Load(state->tooltipHeaderKeys,
                Path::Combine(settings.resourceDirectory, L"tooltipHeader.csv"),
                LoadReport::File::TooltipHeaderKeys);
    state->Load(state->tooltipBodyKeys,
                Path::Combine(settings.resourceDirectory, L"tooltipBody.csv"),
                LoadReport::File::TooltipBodyKeys);
    PhaseTimePoint();
}

StringResourceCollection::~StringResourceCollection() = default;

std::optional<QanStringT<wchar_t>>
StringResourceCollection::GetResource(const QanStringT<wchar_t>& key, StringKind kind) const {
    // The key tables never change after construction: searched without the lock.
    const StringTable* keys = state->KeyTable(kind);
    if (!keys)
        return std::nullopt;
    const NarrowKey narrowKey(key);
    const std::optional<QanStringViewT<char>> id = FindInTable(*keys, narrowKey.View());
    if (!id)
        return std::nullopt;

    // Held until the text is decoded: the lazy load replaces the buffer it points into.
    std::lock_guard<std::mutex> guard(state->lock);
    std::optional<QanStringViewT<char>> text = FindInTable(state->strings, *id);
    if (text) {
        // Before the full load the overrides are consulted for each id; afterwards they are
        // merged into the table.
        if (!state->fullStringsLoaded) {
            if (const auto overridden = FindInTable(state->overrides, *id))
                return DecodeStringText(*overridden);
        }
        return DecodeStringText(*text);
    }
    if (!state->fullStringsLoaded) {
        state->LoadFullStrings();
        text = FindInTable(state->strings, *id);
        if (text)
            return DecodeStringText(*text);
    }
    // The key is this collection's, but its id has no text: answered, with an empty text,
    // so that the service does not look elsewhere.
    return QanStringT<wchar_t>();
}

} // namespace Framework::Internal

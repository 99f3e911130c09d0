// CursorResourceCollection.cpp: the cursor table of the platform icon library, searched
// by exact name; the collection owns the library and frees it on destruction.
#include "icons/CursorResourceCollection.h"

#include "base/KeyIndex.h"
#include "icons/CursorTable.h"
#include "platform/Platform.h"

#include <unordered_set>

namespace Framework::Internal {
namespace {

// Index of the first entry of the equal range of key, or size when the range is empty.
// The classic bisection of equal_range, run over the table's logical entries (the blank
// tail included), so that an unsorted table answers as a vector search over it would.
std::uint64_t EqualRangeFirst(const CursorTable& table, const QanStringT<wchar_t>& key) {
    static const QanStringT<wchar_t> blank;
    auto nameAt = [&](std::uint64_t i) -> const QanStringT<wchar_t>& {
        return i < table.entries.size() ? table.entries[static_cast<std::size_t>(i)].name : blank;
    };
    std::uint64_t first = 0;
    std::uint64_t length = table.Size();
    while (length > 0) {
        const std::uint64_t half = length / 2;
        const std::uint64_t middle = first + half;
        if (nameAt(middle) < key) {
            first = middle + 1;
            length -= half + 1;
        } else if (key < nameAt(middle)) {
            length = half;
        } else {
            // An equal element: the range starts at the lower bound of the left part;
            // it is never empty from here.
            std::uint64_t low = first;
            std::uint64_t count = half;
            while (count > 0) {
                const std::uint64_t step = count / 2;
                if (nameAt(low + step) < key) {
                    low += step + 1;
                    count -= step + 1;
                } else {
                    count = step;
                }
            }
            return low;
        }
    }
    return table.Size();
}

void DescribeTable(LoadReport::FileRecord& report, const CursorTable& table, std::size_t size) {
    report.bytes = size;
    report.rows = table.Size();
    switch (table.stop) {
    case CursorTableStop::Complete:
        return;
    case CursorTableStop::TrailingBytes:
        report.reason = L"bytes after the last cursor are not read";
        break;
    case CursorTableStop::NoCount:
        report.reason = L"no cursor table (fewer than four bytes)";
        break;
    case CursorTableStop::NoNameLength:
        report.reason = L"the data ends inside a name's length; the rest are blank";
        break;
    case CursorTableStop::NameTooLong:
        report.reason = L"a name runs past the end of the data; the rest are blank";
        break;
    case CursorTableStop::NoId:
        report.reason = L"the data ends inside an id; the rest are blank";
        break;
    }
    report.offset = table.stopOffset;
}

} // namespace

struct CursorResourceCollection::Record {
    HINSTANCE module = nullptr;
    CursorTable table;
    // Every name of the table (the blank one included when there is a blank entry) to
    // the index the bisection answers for it, or Size() for a miss. A name not in the
    // table never compares equal during the bisection, so it misses; for the names that
    // are, the answer is computed once by the same bisection, so an unsorted table keeps
    // missing what it missed and of equal names the same entry answers. The id is kept
    // beside the index so that a hit reads no entry.
    struct Answer {
        std::uint64_t index = 0;
        int id = 0; // 0 for a blank entry
    };
    KeyIndex<Answer> answers;

    void Index() {
        std::unordered_set<QanStringViewT<wchar_t>> seen;
        std::vector<std::pair<QanStringViewT<wchar_t>, Answer>> keys;
        auto add = [&](QanStringViewT<wchar_t> name) {
            if (!seen.insert(name).second)
                return;
            Answer answer;
            answer.index = EqualRangeFirst(table, QanStringT<wchar_t>(name));
            if (answer.index < table.entries.size())
                answer.id =
                    static_cast<int>(table.entries[static_cast<std::size_t>(answer.index)].id);
            keys.emplace_back(name, answer);
        };
        for (const CursorEntry& entry : table.entries)
            add(entry.name);
        if (table.blankCount > 0)
            add({});
        answers = KeyIndex<Answer>(keys);
    }
};

CursorResourceCollection::CursorResourceCollection() : record(std::make_unique<Record>()) {}

CursorResourceCollection::~CursorResourceCollection() {
    if (record->module)
        Platform::CurrentPlatform().FreeModule(record->module);
}

std::optional<Resources::ResourceID>
CursorResourceCollection::GetResource(const QanStringT<wchar_t>& key) const {
    std::optional<Resources::ResourceID> hit(std::in_place);
    if (!Find(key, *hit))
        return std::nullopt;
    return hit;
}

bool CursorResourceCollection::Find(const QanStringT<wchar_t>& key,
                                    Resources::ResourceID& hit) const {
    const Record::Answer* found = record->answers.Find(key);
    if (!found || found->index >= record->table.Size())
        return false;
    hit.module = record->module;
    hit.id = found->id;
    return true;
}

void CursorResourceCollection::LoadFromModule(HINSTANCE module, LoadReport::FileRecord* report) {
    record->module = module;
    if (report) {
        report->path = L"QanIcons.dll";
        report->outcome = module ? LoadReport::Outcome::Read : LoadReport::Outcome::Missing;
        if (!module)
            report->reason = L"not found by the system's library search";
    }
    if (!module)
        return;
    // No check that the resource exists: a missing one reads as an empty archive.
    const std::span<const std::byte> bytes =
        Platform::CurrentPlatform().FindRawDataResource(module, 2);
    record->table = ReadCursorTable(bytes);
    record->Index();
    if (report)
        DescribeTable(*report, record->table, bytes.size());
}

} // namespace Framework::Internal

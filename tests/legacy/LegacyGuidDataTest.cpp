// The compiled-in legacy GUID table and its sorted index, held against the data file they
// are generated from, and the shape of the shipped data that the look-ups must cope with.
#include "legacy/LegacyGuidIndex.h"
#include "legacy/LegacyGuidTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string_view>
#include <tuple>

namespace {
using namespace Framework::Internal;

struct Row {
    int id = 0;
    std::string component, guid;
};

// The data file, read independently of the build's generator so that the two can be compared.
std::vector<Row> ReadDataFile() {
    std::ifstream in(QANRES_LEGACY_GUIDS_TSV, std::ios::binary);
    std::vector<Row> rows;
    for (Row r; in >> r.id && in.get() == '\t' && std::getline(in, r.component, '\t') &&
                std::getline(in, r.guid);)
        rows.push_back(r);
    EXPECT_TRUE(in.eof()) << "unreadable or malformed: " << QANRES_LEGACY_GUIDS_TSV;
    return rows;
}

// One pass over the data file compares each row with the compiled-in one and counts what
// the index and the look-ups are built to cope with.
TEST(LegacyGuidData, TableAgreesWithTheDataFileOfTheStatedShape) {
    const auto rows = ReadDataFile();
    ASSERT_EQ(rows.size(), kLegacyGuidTableSize);
    const wchar_t* sharedEmpty = nullptr;
    const std::regex guidForm("[0-9a-fA-F]{8}(-[0-9a-fA-F]{4}){3}-[0-9a-fA-F]{12}");
    std::map<std::string, int> perComponent, lastId, textUses;
    std::map<std::pair<std::string, int>, std::size_t> firstAt;
    std::set<std::string> outOfOrder;
    std::set<int> ids;
    int runs = 0, empty = 0, guids = 0, upper = 0, slash = 0, shared = 0;
    int adjacent = 0, same = 0, different = 0, oneEmpty = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const Row& row = rows[i];
        const LegacyGuidEntry& entry = kLegacyGuidTable[i];
        ASSERT_EQ(std::tuple(entry.id, std::string(entry.component), std::wstring(entry.guid)),
                  std::tuple(std::uintptr_t(row.id), row.component,
                             std::wstring(row.guid.begin(), row.guid.end())))
            << "row " << i;
        // Rows without a key all point at one shared empty text.
        sharedEmpty = sharedEmpty || entry.guid[0] ? sharedEmpty : entry.guid;
        ASSERT_TRUE(entry.guid[0] || entry.guid == sharedEmpty) << "row " << i;
        runs += i == 0 || row.component != rows[i - 1].component;
        if (perComponent[row.component]++ && row.id <= lastId[row.component])
            outOfOrder.insert(row.component);
        lastId[row.component] = row.id;
        ids.insert(row.id);
        const auto [first, fresh] = firstAt.emplace(std::pair(row.component, row.id), i);
        if (!fresh) { // a pair listed again
            const std::string& earlier = rows[first->second].guid;
            adjacent += first->second + 1 == i;
            (earlier == row.guid ? same : different) += 1;
            oneEmpty += earlier.empty() != row.guid.empty();
        }
        empty += row.guid.empty();
        if (!row.guid.empty())
            shared += ++textUses[row.guid] == 2;
        const bool guid = std::regex_match(row.guid, guidForm);
        guids += guid;
        upper += guid && row.guid.find_first_of("ABCDEF") != std::string::npos;
        slash += row.guid.find('/') != std::string::npos;
    }
    std::vector<int> counts;
    for (const auto& [name, count] : perComponent)
        counts.push_back(count);
    std::sort(counts.begin(), counts.end());

    EXPECT_EQ(rows.size(), 15935u);
    EXPECT_EQ(perComponent.size(), 44u);
    for (const char* name : {"Lumen", "Nimbus", "NimbusIntl", "BrtWash", "Schema"})
        EXPECT_TRUE(perComponent.count(name)) << name; // the applications' preferred ones
    EXPECT_EQ(counts.front(), 1);
    EXPECT_EQ(counts.back(), 5348);
    EXPECT_EQ(counts[21] + counts[22], 2 * 41); // median of 44
    EXPECT_EQ(runs, 45);                        // one component comes in two runs
    EXPECT_EQ(outOfOrder.size(), 2u);
    EXPECT_EQ(*ids.begin(), 1);
    EXPECT_EQ(*ids.rbegin(), 65280);
    EXPECT_EQ(upper, 17);
    EXPECT_EQ(empty, 976);
    EXPECT_EQ(slash, 1);
    EXPECT_EQ(guids + slash + empty, 15935); // every other text is a GUID
    EXPECT_EQ(textUses.size(), 11652u);
    EXPECT_EQ(shared, 1686);
    EXPECT_EQ(same + different, 91); // pairs listed twice
    EXPECT_EQ(adjacent, 0);
    EXPECT_EQ(same, 88);
    EXPECT_EQ(different, 3);
    EXPECT_EQ(oneEmpty, 2);
}

// Texts compare exactly: rows without a key answer a present, empty text, and upper-case
// GUIDs come back as stored.
TEST(LegacyGuidIndex, FindsEveryPairOfTheDataFile) {
    const LegacyGuidIndex index = BuildLegacyGuidIndex();
    ASSERT_EQ(index.size(), kLegacyGuidTableSize);
    EXPECT_GE(index.capacity(), 22000u); // reserved up front

    std::map<std::pair<std::string, int>, std::set<std::wstring>> texts;
    std::map<int, std::vector<std::string>> holders;
    for (const Row& row : ReadDataFile()) {
        texts[{row.component, row.id}].insert(std::wstring(row.guid.begin(), row.guid.end()));
        holders[row.id].push_back(row.component);
    }
    for (const auto& [pair, guids] : texts) {
        const auto found = FindLegacyGuid(index, pair.second, pair.first);
        ASSERT_TRUE(found) << pair.first << " " << pair.second;
        // A pair listed twice with different texts answers with one of them.
        EXPECT_TRUE(guids.count(std::wstring(*found))) << pair.first << " " << pair.second;
    }
    // In byte order; a pair listed twice names its component twice.
    for (auto& [id, names] : holders) {
        std::sort(names.begin(), names.end());
        const auto listed = ComponentsWithId(index, id);
        ASSERT_EQ(std::vector<std::string>(listed.begin(), listed.end()), names) << id;
    }
    EXPECT_TRUE(ComponentsWithId(index, 65281).empty());
}

// The answers of a bisection over the records as listed: by (id, component) the first of
// the equal range, by id every record of the equal range.
struct Bisection {
    static bool Less(const LegacyGuidRecord& a, const LegacyGuidRecord& b) {
        return a.id != b.id ? a.id < b.id : a.component < b.component;
    }
    static const wchar_t* Find(const std::vector<LegacyGuidRecord>& records, int id,
                               std::string_view component) {
        const auto range = std::equal_range(records.begin(), records.end(),
                                            LegacyGuidRecord{id, component, {}}, Less);
        return range.first == range.second ? nullptr : range.first->guid.data();
    }
    static std::vector<std::string_view> Components(const std::vector<LegacyGuidRecord>& records,
                                                    int id) {
        const auto range = std::equal_range(
            records.begin(), records.end(), LegacyGuidRecord{id, {}, {}},
            [](const LegacyGuidRecord& a, const LegacyGuidRecord& b) { return a.id < b.id; });
        std::vector<std::string_view> names;
        for (auto it = range.first; it != range.second; ++it)
            names.push_back(it->component);
        return names;
    }
};

// Each answer comes from the record the bisection over the listed records finds (told
// apart by where its GUID lies): for the shipped index, and for every list of up to four
// records over two ids and two components, sorted or not.
TEST(LegacyGuidIndex, AnswersAsTheBisectionOverItsRecords) {
    const auto check = [](const LegacyGuidIndex& index, int id, std::string_view component) {
        const auto found = FindLegacyGuid(index, id, component);
        const wchar_t* want = Bisection::Find(index.Records(), id, component);
        EXPECT_EQ(found ? found->data() : nullptr, want) << id << " " << component;
        EXPECT_EQ(ComponentsWithId(index, id), Bisection::Components(index.Records(), id)) << id;
    };
    const LegacyGuidIndex shipped = BuildLegacyGuidIndex();
    for (const LegacyGuidRecord& record : shipped.Records())
        check(shipped, record.id, record.component);
    for (int id : {-1, 0, 65281, 1 << 30})
        check(shipped, id, "mirrowtack");

    static const wchar_t guids[4][3] = {L"g0", L"g1", L"g2", L"g3"};
    const std::pair<int, std::string_view> kinds[] = {{1, "a"}, {1, "b"}, {2, "a"}, {2, "b"}};
    int unsorted = 0;
    for (int length = 0; length <= 4; ++length) {
        int combinations = 1;
        for (int i = 0; i < length; ++i)
            combinations *= 4;
        for (int code = 0; code < combinations; ++code) {
            std::vector<LegacyGuidRecord> records;
            for (int i = 0, rest = code; i < length; ++i, rest /= 4)
                records.push_back({kinds[rest % 4].first, kinds[rest % 4].second, guids[i]});
            unsorted += !std::is_sorted(records.begin(), records.end(), Bisection::Less);
            const LegacyGuidIndex index(records);
            for (int id : {0, 1, 2, 3})
                for (std::string_view component : {"a", "b", "c"})
                    check(index, id, component);
        }
    }
    EXPECT_GT(unsorted, 100); // the walk does reach lists the bisection misses records of
}

} // namespace

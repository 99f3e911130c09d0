// The cursor table as the collection reads it from resource bytes: search by exact name,
// reads that fail part-way, counts that cannot be honoured, and ownership of the module.
#include "CursorTableWriter.h"
#include "icons/CursorResourceCollection.h"
#include "icons/CursorTable.h"
#include "support/FakePlatform.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {
using namespace Framework;
using namespace Framework::Internal;
using QanTools::CursorTable::Entry;

HINSTANCE FakeModule() {
    return reinterpret_cast<HINSTANCE>(static_cast<std::uintptr_t>(0x4000));
}

std::vector<std::byte> Archive(std::initializer_list<std::uint32_t> words) {
    std::vector<std::byte> bytes;
    for (std::uint32_t word : words)
        for (int shift = 0; shift < 32; shift += 8)
            bytes.push_back(static_cast<std::byte>(word >> shift & 0xFF));
    return bytes;
}

// A platform whose module 0x4000 carries bytes as its cursor table; freeing is recorded.
struct TablePlatform {
    explicit TablePlatform(std::vector<std::byte> table) : bytes(std::move(table)) {
        fake.findRawData = [this](HINSTANCE module, int id) -> std::span<const std::byte> {
            if (module != FakeModule() || id != 2)
                return {};
            return bytes;
        };
        fake.freeModule = [this](HINSTANCE module) { freed.push_back(module); };
    }
    std::vector<std::byte> bytes;
    std::vector<HINSTANCE> freed;
    QanTest::FakePlatform fake;
};

std::optional<int> IdOf(const CursorResourceCollection& cursors, const std::wstring& key) {
    const auto hit = cursors.GetResource(key);
    if (!hit)
        return std::nullopt;
    EXPECT_EQ(hit->module, FakeModule());
    EXPECT_TRUE(hit->pngPath.empty() && hit->iconPath.empty() && hit->extras.empty());
    return hit->id;
}

TEST(CursorLookup, ExactNamesFirstDuplicateWins) {
    const std::vector<Entry> table{{u"Arrow", 7}, {u"Cross", 11},          {u"Cross", 12},
                                   {u"Hand", 9},  {u"Move\U0001F5B1", 14}, {u"Wait", 4000000000u}};
    TablePlatform platform(QanTools::CursorTable::Write(table));
    CursorResourceCollection cursors;
    cursors.LoadFromModule(FakeModule());
    EXPECT_EQ(IdOf(cursors, L"Arrow"), 7);
    EXPECT_EQ(IdOf(cursors, L"Cross"), 11);
    EXPECT_EQ(IdOf(cursors, L"Hand"), 9);
    EXPECT_EQ(IdOf(cursors, L"Move\U0001F5B1"), 14);
    EXPECT_EQ(IdOf(cursors, L"Wait"), static_cast<int>(4000000000u));
    EXPECT_EQ(IdOf(cursors, L"arrow"), std::nullopt);
    EXPECT_EQ(IdOf(cursors, L"CROSS"), std::nullopt);
    EXPECT_EQ(IdOf(cursors, L"Move"), std::nullopt);
    EXPECT_EQ(IdOf(cursors, L""), std::nullopt);
}

TEST(CursorLookup, EmptyOrMissingTableFindsNothing) {
    for (const auto& bytes : {std::vector<std::byte>{}, Archive({0}), std::vector<std::byte>(3)}) {
        TablePlatform platform(bytes);
        CursorResourceCollection cursors;
        cursors.LoadFromModule(FakeModule());
        EXPECT_EQ(IdOf(cursors, L""), std::nullopt);
        EXPECT_EQ(IdOf(cursors, L"Arrow"), std::nullopt);
    }
}

TEST(CursorLookup, NoModuleMeansNoTableAndNothingFreed) {
    TablePlatform platform(Archive({1, 2, 'A' | 'a' << 16, 5}));
    {
        CursorResourceCollection cursors;
        cursors.LoadFromModule(nullptr);
        EXPECT_EQ(cursors.GetResource(L"Aa"), std::nullopt);
    }
    EXPECT_TRUE(platform.freed.empty());
}

TEST(CursorLookup, TheModuleIsFreedOnceWithTheCollection) {
    TablePlatform platform(Archive({0}));
    {
        CursorResourceCollection cursors;
        cursors.LoadFromModule(FakeModule());
        EXPECT_TRUE(platform.freed.empty());
    }
    EXPECT_EQ(platform.freed, std::vector<HINSTANCE>{FakeModule()});
}

TEST(CursorTableReading, ReadsStopAtTheFirstFailure) {
    // Count 3; the second name claims 100 units that are not there.
    const auto table = ReadCursorTable(Archive({3, 2, 'A' | 'a' << 16, 5, 100, 'B'}));
    ASSERT_EQ(table.Size(), 3u);
    ASSERT_EQ(table.entries.size(), 1u);
    EXPECT_EQ(table.entries[0].name, L"Aa");
    EXPECT_EQ(table.entries[0].id, 5u);

    // A name without its id keeps the name and id 0, and is found.
    TablePlatform platform(Archive({1, 2, 'A' | 'B' << 16}));
    CursorResourceCollection cursors;
    cursors.LoadFromModule(FakeModule());
    EXPECT_EQ(IdOf(cursors, L"AB"), 0);
}

TEST(CursorTableReading, NameLengthsPastTheDataAreFailedReads) {
    for (std::uint32_t length : {0xFFFFFFFFu, 0x80000000u, 3u}) {
        const auto table = ReadCursorTable(Archive({2, length, 'A' | 'B' << 16}));
        EXPECT_EQ(table.Size(), 2u);
        EXPECT_TRUE(table.entries.empty()) << length;
    }
    // A missing or partial count reads as 0.
    EXPECT_EQ(ReadCursorTable({}).Size(), 0u);
    EXPECT_EQ(ReadCursorTable(std::vector<std::byte>(3, std::byte{0xFF})).Size(), 0u);
}

TEST(CursorTableReading, LargeCountsCostNoMemoryNegativeOnesThrow) {
    const auto table = ReadCursorTable(Archive({0x7FFFFFFF, 2, 'A' | 'a' << 16, 9}));
    EXPECT_EQ(table.Size(), 0x7FFFFFFFu);
    EXPECT_EQ(table.entries.size(), 1u);
    for (std::uint32_t count : {0xFFFFFFFFu, 0x80000000u}) {
        try {
            ReadCursorTable(Archive({count}));
            ADD_FAILURE() << "no length error for " << count;
        } catch (const std::length_error& error) {
            EXPECT_STREQ(error.what(), "vector too long");
        }
    }
}

TEST(CursorTableReading, Utf16NamesBecomeWideText) {
    // A surrogate pair, then a lone high and a lone low surrogate.
    const std::u16string name{u'x', 0xD83D, 0xDDB1, 0xD800, u'y', 0xDC00};
    const Entry entry{name, 1};
    const auto table = ReadCursorTable(QanTools::CursorTable::Write({&entry, 1}));
    ASSERT_EQ(table.entries.size(), 1u);
    std::wstring expected;
    if constexpr (sizeof(wchar_t) == 2)
        expected.assign(name.begin(), name.end());
    else
        expected = {L'x', wchar_t(0x1F5B1), wchar_t(0xFFFD), L'y', wchar_t(0xFFFD)};
    EXPECT_EQ(table.entries[0].name, expected);
}

TEST(CursorService, NegativeCountLeavesServiceConstructionAndIsRetried) {
    TablePlatform platform(Archive({0xFFFFFFFF}));
    platform.fake.loadModule = [](const wchar_t* name) {
        return std::wstring(name) == L"QanIcons.dll" ? FakeModule() : nullptr;
    };
    EXPECT_THROW(Resources::GetCursor(L"Arrow"), std::length_error);
    EXPECT_EQ(platform.freed, std::vector<HINSTANCE>{FakeModule()});
    EXPECT_THROW(Resources::GetCursor(L"Arrow"), std::length_error);
    EXPECT_EQ(platform.fake.loadModuleCalls, 2);
}

} // namespace

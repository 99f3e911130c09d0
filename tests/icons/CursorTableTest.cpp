// The cursor table: read from the platform icon library beside the program, from damaged
// resource bytes, and written as the tools write it.
#include "icons/CursorTable.h"
#include "CursorTableWriter.h"
#include "base/Settings.h"
#include "icons/CursorResourceCollection.h"
#include "platform/Path.h"
#include "service/ResourcesImpl.h"
#include "support/FakePlatform.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <regex>

namespace {
using namespace Framework::Internal;
using Framework::Resources;

std::vector<std::byte> Archive(std::vector<std::uint32_t> words) { // little-endian hosts
    const auto bytes = std::as_bytes(std::span(words));
    return {bytes.begin(), bytes.end()};
}

std::vector<std::byte> Less(std::vector<std::byte> bytes, std::size_t drop) {
    bytes.resize(bytes.size() - drop);
    return bytes;
}

TEST(CursorTable, ServiceReadsTheLibraryBesideTheProgram) {
    const HINSTANCE module = Resources::GetCursor(L"Arrow").module;
    ASSERT_NE(module, nullptr);
    // "Cross" is listed twice in the library: the first wins. Names are compared exactly.
    const std::pair<const wchar_t*, int> keys[] = {
        {L"Arrow", 7}, {L"Cross", 11}, {L"Move\U0001F5B1", 14},
        {L"arrow", 0}, {L"Move", 0},   {L"", 0}};
    for (const auto& [key, id] : keys) {
        Resources::ResourceID want;
        want.module = id ? module : nullptr, want.id = id;
        EXPECT_EQ(Resources::GetCursor(key), want) << key;
    }
}

// Tables as the tools write them, and damaged ones: reads stop at the first failure, which
// the table names with its first byte, and a count costs no memory until entries are read.
TEST(CursorTable, ReadsStopAtTheFirstFailureAndSayWhere) {
    // A surrogate pair, then a lone high and a lone low surrogate: unchanged where wchar_t
    // is 16-bit, else decoded with the lone ones replaced.
    const std::u16string odd{u'x', 0xD83D, 0xDDB1, 0xD800, u'y', 0xDC00};
    const std::wstring wide =
        sizeof(wchar_t) == 2 ? std::wstring(odd.begin(), odd.end()) : L"x\U0001F5B1\uFFFDy\uFFFD";
    const QanTool::CursorTable::Entry entries[] = {{u"", 1}, {odd, 0xFFFFFFFF}};
    const auto written = QanTool::CursorTable::Write(entries);
    auto withTail = written;
    withTail.push_back(std::byte{0});
    // Bytes, the table size they give, the entries read in full, why and where the reading
    // stopped, and what is wrong; 0x610041 is "Aa" as two UTF-16 units.
    using Pairs = std::vector<std::pair<std::wstring, std::uint32_t>>;
    using S = CursorTableStop;
    const std::tuple<std::vector<std::byte>, std::uint64_t, Pairs, S, std::size_t, const char*>
        rows[] = {
            {written, 2, {{L"", 1}, {wide, 0xFFFFFFFF}}, S::Complete, 0, "as the tools write it"},
            {withTail,
             2,
             {{L"", 1}, {wide, 0xFFFFFFFF}},
             S::TrailingBytes,
             written.size(),
             "one byte more"},
            {{}, 0, {}, S::NoCount, 0, "no bytes"},
            {{std::byte{1}, std::byte{0}, std::byte{0}}, 0, {}, S::NoCount, 0, "part of a count"},
            {Archive({0}), 0, {}, S::Complete, 0, "count 0"},
            {Archive({0, 7}), 0, {}, S::TrailingBytes, 4, "count 0 and more"},
            {Archive({3, 2, 0x610041, 5, 100, 'B'}),
             3,
             {{L"Aa", 5}},
             S::NameTooLong,
             16,
             "second name cut short"},
            {Archive({1, 2, 0x610041}), 1, {{L"Aa", 0}}, S::NoId, 12, "name without its id"},
            {Less(Archive({2, 2, 0x610041, 3, 1}), 2),
             2,
             {{L"Aa", 3}},
             S::NoNameLength,
             16,
             "half a name length"},
            {Archive({2, 0xFFFFFFFF, 0x610041}), 2, {}, S::NameTooLong, 4, "name length -1"},
            {Archive({2, 0x80000000, 0x610041}), 2, {}, S::NameTooLong, 4, "name length 2^31"},
            {Archive({0x7FFFFFFF, 2, 0x610041, 9}),
             0x7FFFFFFF,
             {{L"Aa", 9}},
             S::NoNameLength,
             16,
             "largest count"},
        };
    for (const auto& [bytes, size, read, stop, at, what] : rows) {
        const auto table = ReadCursorTable(bytes);
        Pairs got;
        for (const auto& entry : table.entries)
            got.emplace_back(entry.name, entry.id);
        EXPECT_TRUE(table.Size() == size && got == read) << what;
        EXPECT_TRUE(table.stop == stop && table.stopOffset == at)
            << what << ": stop " << static_cast<int>(table.stop) << " at " << table.stopOffset;
        EXPECT_EQ(ReadCursorCount(bytes).value_or(0), static_cast<std::int32_t>(size)) << what;
    }
    // Kept as the vector's own refusal: it is meant to end the service's construction.
    for (std::uint32_t count : {0xFFFFFFFFu, 0x80000000u}) {
        EXPECT_THAT([&] { ReadCursorTable(Archive({count})); },
                    testing::ThrowsMessage<std::length_error>(testing::StrEq("vector too long")));
        EXPECT_EQ(ReadCursorCount(Archive({count})), static_cast<std::int32_t>(count));
    }

    // The tools' resource script, once its numbers are put back together as the resource
    // compiler does ("L" is 32-bit, the others 16-bit).
    using namespace QanTool::CursorTable;
    const std::string script = WriteRcScript(entries);
    ASSERT_NE(script.find("\n2 RCDATA"), std::string::npos);
    std::vector<std::byte> numbers;
    const std::regex number(R"((0x[0-9A-Fa-f]+|[0-9]+)(L?))");
    for (std::sregex_iterator it(script.begin() + script.find('{'), script.end(), number), end;
         it != end; ++it)
        for (int i = 0; i < ((*it)[2].length() ? 4 : 2); ++i)
            numbers.push_back(static_cast<std::byte>(std::stoul((*it)[1], nullptr, 0) >> 8 * i));
    EXPECT_EQ(numbers, written);
    EXPECT_EQ(WriteRcScriptForBinary("dir\\cursors \"1\".bin", 2),
              "2 RCDATA \"dir\\\\cursors \\\"1\\\".bin\"\n");
}

// A negative count ends service construction with the vector's length error, after the
// library is freed. The next call builds the service again, and this time the library
// has no resource 2.
TEST(CursorTable, NegativeCountFailsTheServiceWhichIsRetried) {
    const auto fakeModule = reinterpret_cast<HINSTANCE>(static_cast<std::uintptr_t>(0x4000));
    const auto negative = Archive({0xFFFFFFFF});
    const auto& real = Framework::Platform::SystemPlatform();
    const auto noTable = Framework::Path::Combine(real.ExecutableDirectory(), L"NoCursorTable.dll");
    std::vector<HINSTANCE> loaded; // "QanIcons.dll", each time the service is built
    QanTest::FakePlatform fake;
    fake.loadModule = [&](const wchar_t* name) {
        if (std::wstring(name) != L"QanIcons.dll")
            return real.LoadModule(name); // the stock icons' library, on Windows
        return loaded.emplace_back(loaded.empty() ? fakeModule : real.LoadModule(noTable.c_str()));
    };
    fake.findRawData = [&](HINSTANCE module, int id) {
        return module == fakeModule ? std::span(negative) : real.FindRawDataResource(module, id);
    };
    fake.freeModule = [&](HINSTANCE freed) { EXPECT_EQ(freed, fakeModule); };
    EXPECT_THROW(Resources::GetCursor(L"Arrow"), std::length_error);
    EXPECT_EQ(fake.freeModuleCalls, 1);
    EXPECT_EQ(Resources::GetCursor(L"Arrow"), Resources::ResourceID{});
    EXPECT_TRUE(loaded.size() == 2 && loaded[1]);
    // No library at all: nothing found, and nothing freed.
    CursorResourceCollection none;
    none.LoadFromModule(nullptr);
    EXPECT_FALSE(none.GetResource(L"Arrow") || none.GetResource(L""));
}

// Every table of up to four entries named a, b or "" (in any order), followed by up to two
// blank entries: each name answers as the bisection over the table's entries in stored
// order does, blank tail included, with the first entry that bisection finds among equal
// names; a name outside the table misses.
TEST(CursorLookup, EveryTableAnswersAsTheBisectionOverIt) {
    const auto fakeModule = reinterpret_cast<HINSTANCE>(static_cast<std::uintptr_t>(0x5000));
    QanTest::FakePlatform fake;
    std::vector<std::byte> bytes;
    fake.findRawData = [&](HINSTANCE, int) { return std::span<const std::byte>(bytes); };
    fake.freeModule = [](HINSTANCE) {};
    const std::u16string names[] = {u"a", u"b", u""};
    int unsortedTables = 0;
    for (int length = 0; length <= 4; ++length) {
        int combinations = 1;
        for (int i = 0; i < length; ++i)
            combinations *= 3;
        for (int code = 0; code < combinations; ++code) {
            std::vector<QanTool::CursorTable::Entry> entries;
            for (int i = 0, rest = code; i < length; ++i, rest /= 3)
                entries.push_back({names[rest % 3], static_cast<std::uint32_t>(10 + i)});
            for (std::uint32_t blanks = 0; blanks <= 2; ++blanks) {
                bytes = QanTool::CursorTable::Write(entries);
                const std::uint32_t count = static_cast<std::uint32_t>(length) + blanks;
                std::memcpy(bytes.data(), &count, sizeof count); // little-endian hosts
                // The stored order, blank tail included, as (name, id).
                std::vector<std::pair<std::wstring, int>> logical;
                for (const auto& entry : entries)
                    logical.emplace_back(std::wstring(entry.name.begin(), entry.name.end()),
                                         static_cast<int>(entry.id));
                logical.resize(logical.size() + blanks);
                unsortedTables +=
                    !std::is_sorted(logical.begin(), logical.end(),
                                    [](auto& x, auto& y) { return x.first < y.first; });
                CursorResourceCollection cursors;
                cursors.LoadFromModule(fakeModule);
                for (const std::wstring key : {L"a", L"b", L"", L"c"}) {
                    const auto range = std::equal_range(
                        logical.begin(), logical.end(), std::pair<std::wstring, int>(key, 0),
                        [](const auto& x, const auto& y) { return x.first < y.first; });
                    std::optional<Resources::ResourceID> want;
                    if (range.first != range.second) {
                        want.emplace();
                        want->module = fakeModule;
                        want->id = range.first->second;
                    }
                    EXPECT_EQ(cursors.GetResource(key), want)
                        << code << " +" << blanks << " \"" << std::string(key.begin(), key.end())
                        << "\"";
                }
            }
        }
    }
    EXPECT_GT(unsortedTables, 100); // the walk does reach tables the bisection misses in
}

// The default service asks its own icon map and cursor table first; a key they lack falls
// to the legacy registrations, and a key both hold answers from the library's own.
TEST(CursorLookup, OwnCollectionsComeBeforeLegacyRegistrations) {
    const auto iconsModule = reinterpret_cast<HINSTANCE>(static_cast<std::uintptr_t>(0x6000));
    const auto legacyModule = reinterpret_cast<HINSTANCE>(static_cast<std::uintptr_t>(0x7000));
    const QanTool::CursorTable::Entry cursors[] = {{u"A", 3}, {u"Both", 4}};
    const auto table = QanTool::CursorTable::Write(cursors);
    QanTest::FakePlatform fake;
    fake.loadModule = [&](const wchar_t* name) {
        return std::wstring(name) == L"QanIcons.dll" ? iconsModule : nullptr;
    };
    fake.findRawData = [&](HINSTANCE module, int) {
        return module == iconsModule ? std::span<const std::byte>(table)
                                     : std::span<const std::byte>();
    };
    fake.freeModule = [](HINSTANCE) {};
    fake.stockIcon = [](int, Framework::Platform::StockIconLocation&) { return false; };
    QanTest::TempDir resources, icons;
    resources.Write("icons.map.xml",
                    R"(<icons><map guid="Both">b.ico</map><map guid="K">k.ico</map></icons>)");
    ProcessSettings().resourceDirectory = resources.Wide();
    ProcessSettings().iconDirectory = icons.Wide();
    ProcessSettings().iconSubdirectory.clear();
    const ResourcesImpl service;
    const Resources::RegistrarMapEntry entries[] = {{L"Both", 7, {}}, {L"Legacy", 8, {}}};
    service.AddLegacyComponent(L"Comp", legacyModule);
    service.AddLegacyResources(L"Comp", entries, 2, Resources::Cursor);
    service.AddLegacyResources(L"Comp", entries, 2, Resources::Icon);
    const auto id = [](HINSTANCE module, int number) {
        Resources::ResourceID result;
        result.module = module, result.id = number;
        return result;
    };
    const auto folder = [&](const wchar_t* name) {
        Resources::ResourceID result;
        result.iconPath =
            Framework::Path::AddBackslash(Framework::Path::Combine(icons.Wide(), name));
        return result;
    };
    EXPECT_EQ(service.GetCursor(L"A"), id(iconsModule, 3));
    EXPECT_EQ(service.GetCursor(L"Both"), id(iconsModule, 4));
    EXPECT_EQ(service.GetCursor(L"Legacy"), id(legacyModule, 8));
    EXPECT_EQ(service.GetCursor(L"K"), Resources::ResourceID{});
    EXPECT_EQ(service.GetIcon(L"K"), folder(L"k.ico"));
    EXPECT_EQ(service.GetIcon(L"Both"), folder(L"b.ico"));
    EXPECT_EQ(service.GetIcon(L"Legacy"), id(legacyModule, 8));
    EXPECT_EQ(service.GetIcon(L"A"), Resources::ResourceID{});
    ProcessSettings() = Settings{};
}

} // namespace

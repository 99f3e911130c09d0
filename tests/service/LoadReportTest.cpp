// The load report: what the built-in service read for a correct, an empty and a wrong
// configuration, what it says before the service is built or with a test service
// installed, and which later setter calls it reports. Every TEST runs in a process of
// its own under ctest, since the service is built once per process.
#include "ScriptedService.h"
#include "support/FakePlatform.h"
#include "support/TempDir.h"

#include "icons/CursorResourceCollection.h"
#include "platform/Path.h"

#include <framework/LoadReport.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <filesystem>
#include <thread>

namespace {
namespace fs = std::filesystem;
using Framework::GetLoadReport;
using Framework::LoadReport;
using Framework::Resources;
using File = LoadReport::File;
using Outcome = LoadReport::Outcome;
using Setting = LoadReport::Setting;
using Framework::Path::Combine;

// Two start-up texts; the full file holds a third.
constexpr std::string_view kStartup = "<?xml version=\"1.0\"?>\n<strings>\n"
                                      "  <s id=\"A\">Alpha</s>\n  <s id=\"B\">Beta</s>\n"
                                      "</strings>\n";
constexpr std::string_view kFull = "<?xml version=\"1.0\"?>\n<strings>\n"
                                   "  <s id=\"A\">Alpha</s>\n  <s id=\"B\">Beta</s>\n"
                                   "  <s id=\"C\">Gamma</s>\n</strings>\n";
constexpr std::string_view kOverride = "<?xml version=\"1.0\"?>\n<strings>\n"
                                       "  <s id=\"B\">Bravo</s>\n</strings>\n";
constexpr std::string_view kKeys = "Key.A,A\nKey.B,B\nKey.C,C\n";
constexpr std::string_view kMap = "<maps><map guid=\"g1\">one.ico</map>"
                                  "<map guid=\"g2\">two.png</map></maps>";

// A platform without the icon library or stock icons, so that every system answers alike.
struct Platform : QanTest::FakePlatform {
    Platform() {
        stockIcon = [](int, Framework::Platform::StockIconLocation&) { return false; };
        loadModule = [](const wchar_t*) -> HINSTANCE { return nullptr; };
    }
};

void WriteCorrect(const QanTest::TempDir& dir) {
    dir.Write("master/startupstrings.xml", kStartup);
    dir.Write("master/strings.xml", kFull);
    dir.Write("master/override/strings.xml", kOverride);
    for (const char* name : {"string.csv", "caption.csv", "tooltipHeader.csv", "tooltipBody.csv"})
        dir.Write(fs::path("res") / name, kKeys);
    dir.Write("res/icons.map.xml", kMap);
    fs::create_directories(dir.Path() / "icons");
}

void SetDirectories(const QanTest::TempDir& dir) {
    Resources::SetResourceDirectories(
        (dir.Path() / "master").wstring(), (dir.Path() / "res").wstring(),
        (dir.Path() / "icons").wstring(), (dir.Path() / "base").wstring(), L"Toolbar");
}

struct Expected {
    File file;
    std::wstring path;
    Outcome outcome;
    std::uint64_t rows;
    std::uint64_t bytes;
    std::wstring reason; // a part of the reason; empty: no reason at all
    std::optional<std::uint64_t> offset;
};

void ExpectFiles(const LoadReport& report, const std::vector<Expected>& expected) {
    ASSERT_EQ(report.files.size(), expected.size()) << Framework::FormatLoadReport(report);
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const LoadReport::FileRecord& got = report.files[i];
        const Expected& want = expected[i];
        SCOPED_TRACE(Framework::LoadReportName(want.file));
        EXPECT_EQ(got.file, want.file);
        EXPECT_EQ(got.path, want.path);
        EXPECT_EQ(got.outcome, want.outcome);
        EXPECT_EQ(got.rows, want.rows);
        EXPECT_EQ(got.bytes, want.bytes);
        if (want.reason.empty())
            EXPECT_EQ(got.reason, L"");
        else
            EXPECT_NE(got.reason.find(want.reason), std::wstring::npos) << got.reason;
        EXPECT_EQ(got.offset, want.offset);
    }
}

TEST(LoadReport, BeforeConstructionSaysSoAndBuildsNothing) {
    Platform platform;
    const LoadReport report = GetLoadReport();
    EXPECT_EQ(report.state, LoadReport::State::NotBuilt);
    EXPECT_TRUE(report.files.empty());
    EXPECT_NE(Framework::FormatLoadReport(report).find(L"not built"), std::wstring::npos);
    EXPECT_EQ(platform.loadModuleCalls, 0);
    EXPECT_EQ(platform.readFileCalls, 0);
    Resources::Preload();
    EXPECT_EQ(GetLoadReport().state, LoadReport::State::Built);
}

TEST(LoadReport, WithATestServiceSaysSoAndBuildsNothing) {
    Platform platform;
    {
        QanTest::ScriptedService service;
        Resources::Preload();
        const LoadReport report = GetLoadReport();
        EXPECT_EQ(report.state, LoadReport::State::TestService);
        EXPECT_TRUE(report.files.empty());
        const std::wstring text = Framework::FormatLoadReport(report);
        EXPECT_NE(text.find(L"test service"), std::wstring::npos);
        EXPECT_EQ(text.find(L"strings.xml"), std::wstring::npos) << "nothing built, nothing read";
    }
    EXPECT_EQ(platform.loadModuleCalls, 0);
    EXPECT_EQ(GetLoadReport().state, LoadReport::State::NotBuilt);
}

TEST(LoadReport, CorrectConfigurationListsEveryFileAndTheLazyLoad) {
    Platform platform;
    QanTest::TempDir dir;
    WriteCorrect(dir);
    SetDirectories(dir);
    const std::wstring master = (dir.Path() / "master").wstring();
    const std::wstring res = (dir.Path() / "res").wstring();
    Resources::Preload();

    LoadReport report = GetLoadReport();
    EXPECT_EQ(report.state, LoadReport::State::Built);
    const std::uint64_t keys = kKeys.size();
    std::vector<Expected> expected = {
        {File::StartupStrings, Combine(master, L"startupstrings") + L".xml", Outcome::Read, 2,
         kStartup.size(), L"", std::nullopt},
        {File::OverrideStrings, Combine(Combine(master, L"override"), L"strings.xml"),
         Outcome::Read, 1, kOverride.size(), L"", std::nullopt},
        {File::StringKeys, Combine(res, L"string.csv"), Outcome::Read, 3, keys, L"", std::nullopt},
        {File::CaptionKeys, Combine(res, L"caption.csv"), Outcome::Read, 3, keys, L"",
         std::nullopt},
        {File::TooltipHeaderKeys, Combine(res, L"tooltipHeader.csv"), Outcome::Read, 3, keys, L"",
         std::nullopt},
        {File::TooltipBodyKeys, Combine(res, L"tooltipBody.csv"), Outcome::Read, 3, keys, L"",
         std::nullopt},
        {File::IconMap, Combine(res, L"icons.map.xml"), Outcome::Read, 2, kMap.size(), L"",
         std::nullopt},
        {File::IconLibrary, L"QanIcons.dll", Outcome::Missing, 0, 0, L"not found", std::nullopt},
    };
    ExpectFiles(report, expected);
    EXPECT_FALSE(report.fullStringsRead);
    EXPECT_FALSE(report.AnyRefused());
    EXPECT_TRUE(report.changedSettings.empty());

    // The report does not change the answers; a text outside the start-up file reads
    // strings.xml, and the report says so.
    EXPECT_EQ(Resources::GetString(L"Key.B"), L"Bravo");
    EXPECT_FALSE(GetLoadReport().fullStringsRead);
    EXPECT_EQ(Resources::GetString(L"Key.C"), L"Gamma");
    report = GetLoadReport();
    EXPECT_TRUE(report.fullStringsRead);
    expected.push_back({File::FullStrings, Combine(master, L"strings") + L".xml", Outcome::Read, 3,
                        kFull.size(), L"", std::nullopt});
    ExpectFiles(report, expected);
    EXPECT_EQ(Framework::FormatLoadReport(report).find(L"not read yet"), std::wstring::npos);
}

TEST(LoadReport, EmptyConfigurationReadsNothingAndRefusesNothing) {
    Platform platform;
    Resources::Preload();
    const LoadReport report = GetLoadReport();
    ExpectFiles(
        report,
        {
            {File::StartupStrings, Combine(L"", L"startupstrings") + L".xml", Outcome::Missing, 0,
             0, L"", std::nullopt},
            {File::OverrideStrings, Combine(Combine(L"", L"override"), L"strings.xml"),
             Outcome::Missing, 0, 0, L"", std::nullopt},
            {File::StringKeys, L"string.csv", Outcome::Missing, 0, 0, L"", std::nullopt},
            {File::CaptionKeys, L"caption.csv", Outcome::Missing, 0, 0, L"", std::nullopt},
            {File::TooltipHeaderKeys, L"tooltipHeader.csv", Outcome::Missing, 0, 0, L"",
             std::nullopt},
            {File::TooltipBodyKeys, L"tooltipBody.csv", Outcome::Missing, 0, 0, L"", std::nullopt},
            {File::IconMap, L"icons.map.xml", Outcome::Skipped, 0, 0, L"no icon directory",
             std::nullopt},
            {File::IconLibrary, L"QanIcons.dll", Outcome::Missing, 0, 0, L"not found",
             std::nullopt},
        });
    EXPECT_FALSE(report.AnyRefused());
    EXPECT_NE(Framework::FormatLoadReport(report).find(L"strings.xml: not read yet"),
              std::wstring::npos);
}

// One directory with a fault in each file: every refusal and every early stop named,
// with the byte it stands at.
TEST(LoadReport, WrongConfigurationNamesEachRefusalAndWhere) {
    Platform platform;
    QanTest::TempDir dir;
    fs::create_directories(dir.Path() / "master/startupstrings.xml"); // a folder
    const std::string_view oneLine = "<strings><s id=\"A\">Alpha</s></strings>";
    dir.Write("master/override/strings.xml", oneLine);
    const std::string_view noComma = "Key.A,A\nKey.B\n";
    dir.Write("res/string.csv", noComma);
    const std::string_view noLineFeed = "Key.A,A\nKey.B,B";
    dir.Write("res/caption.csv", noLineFeed);
    fs::create_directories(dir.Path() / "res/tooltipHeader.csv");
    const std::string_view badMap = "<maps><map guid=\"g1\">one.ico</map>"
                                    "<map id=\"g2\">two.png</map></maps>";
    dir.Write("res/icons.map.xml", badMap);
    const std::string_view openQuote = "<?xml?>\n<strings>\n  <s id=\"A\">Alpha</s>\n"
                                       "  <s id=\"B>Beta</s>\n";
    dir.Write("master/strings.xml", openQuote);
    SetDirectories(dir);
    const std::wstring master = (dir.Path() / "master").wstring();
    const std::wstring res = (dir.Path() / "res").wstring();
    Resources::Preload();
    // A key whose id has no start-up text reads strings.xml.
    EXPECT_EQ(Resources::GetString(L"Key.A"), L"Alpha");

    const LoadReport report = GetLoadReport();
    ExpectFiles(report,
                {
                    {File::StartupStrings, Combine(master, L"startupstrings") + L".xml",
                     Outcome::Refused, 0, 0, L"not a regular file", std::nullopt},
                    {File::OverrideStrings, Combine(Combine(master, L"override"), L"strings.xml"),
                     Outcome::Refused, 0, oneLine.size(), L"fewer than two lines", std::nullopt},
                    {File::StringKeys, Combine(res, L"string.csv"), Outcome::Read, 1,
                     noComma.size(), L"without a comma", 8},
                    {File::CaptionKeys, Combine(res, L"caption.csv"), Outcome::Read, 1,
                     noLineFeed.size(), L"no line feed", 8},
                    {File::TooltipHeaderKeys, Combine(res, L"tooltipHeader.csv"), Outcome::Refused,
                     0, 0, L"not a regular file", std::nullopt},
                    {File::TooltipBodyKeys, Combine(res, L"tooltipBody.csv"), Outcome::Missing, 0,
                     0, L"", std::nullopt},
                    {File::IconMap, Combine(res, L"icons.map.xml"), Outcome::Refused, 0,
                     badMap.size(), L"attribute is not guid (id)", badMap.find("<map id")},
                    {File::IconLibrary, L"QanIcons.dll", Outcome::Missing, 0, 0, L"not found",
                     std::nullopt},
                    {File::FullStrings, Combine(master, L"strings") + L".xml", Outcome::Read, 1,
                     openQuote.size(), L"without its closing quote", openQuote.find("\"B>")},
                });
    EXPECT_TRUE(report.AnyRefused());
    const std::wstring text = Framework::FormatLoadReport(report);
    EXPECT_NE(
        text.find(L"icons.map.xml: refused: a map whose attribute is not guid (id) (at byte " +
                  std::to_wstring(badMap.find("<map id")) + L")"),
        std::wstring::npos)
        << text;
}

// The cursor table's record, from the collection the service builds: where and why its
// reading stopped, and how many cursors the look-ups see (blank ones included).
TEST(LoadReport, CursorTableStopsAreRecorded) {
    Platform platform;
    platform.freeModule = [](HINSTANCE) {};
    static int module;
    const auto handle = reinterpret_cast<HINSTANCE>(&module);
    // A count, then a one-unit name "x" and id 7.
    auto table = [](std::int32_t count, std::size_t extra) {
        std::vector<std::byte> bytes(4 + 4 + 2 + 4 + extra);
        const std::int32_t nameLength = 1;
        const std::uint32_t id = 7;
        std::memcpy(bytes.data(), &count, 4);
        std::memcpy(bytes.data() + 4, &nameLength, 4);
        bytes[8] = std::byte{'x'};
        std::memcpy(bytes.data() + 10, &id, 4);
        return bytes;
    };
    struct Case {
        const char* name;
        std::vector<std::byte> bytes;
        std::uint64_t rows;
        std::wstring reason;
        std::optional<std::uint64_t> offset;
    };
    const std::vector<Case> cases = {
        {"whole", table(1, 0), 1, L"", std::nullopt},
        {"trailing bytes", table(1, 3), 1, L"bytes after the last cursor", 14},
        {"count promises more", table(3, 0), 3, L"inside a name's length", 14},
        {"no count", std::vector<std::byte>(3), 0, L"fewer than four bytes", 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        platform.findRawData = [&](HINSTANCE, int) { return std::span<const std::byte>(c.bytes); };
        Framework::Internal::CursorResourceCollection cursors;
        LoadReport::FileRecord record;
        cursors.LoadFromModule(handle, &record);
        EXPECT_EQ(record.outcome, Outcome::Read);
        EXPECT_EQ(record.path, L"QanIcons.dll");
        EXPECT_EQ(record.rows, c.rows);
        EXPECT_EQ(record.bytes, c.bytes.size());
        if (c.reason.empty())
            EXPECT_EQ(record.reason, L"");
        else
            EXPECT_NE(record.reason.find(c.reason), std::wstring::npos) << record.reason;
        EXPECT_EQ(record.offset, c.offset);
    }
    Framework::Internal::CursorResourceCollection none;
    LoadReport::FileRecord record;
    none.LoadFromModule(nullptr, &record);
    EXPECT_EQ(record.outcome, Outcome::Missing);
}

TEST(LoadReport, OversizedFileIsRefusedForItsSize) {
    Platform platform;
    QanTest::TempDir dir;
    const fs::path big = dir.Write("res/string.csv", "");
    std::error_code error;
    fs::resize_file(big, Framework::Platform::kMaxFileSize + 1, error);
    if (error)
        GTEST_SKIP() << "the file system refuses sparse files past the limit";
    SetDirectories(dir);
    Resources::Preload();
    const LoadReport report = GetLoadReport();
    ASSERT_GT(report.files.size(), 2u);
    EXPECT_EQ(report.files[2].file, File::StringKeys);
    EXPECT_EQ(report.files[2].outcome, Outcome::Refused);
    EXPECT_NE(report.files[2].reason.find(L"larger than"), std::wstring::npos);
}

TEST(LoadReport, SettingsChangedAfterConstructionAndWhatFollows) {
    Platform platform;
    QanTest::TempDir dir;
    WriteCorrect(dir);
    SetDirectories(dir);
    Resources::SetAppName(L"Before");
    Resources::Preload();
    EXPECT_TRUE(GetLoadReport().changedSettings.empty());

    Resources::SetResourceDirectories(L"m2", L"r2", L"i2", L"b2", L"Sub2");
    Resources::SetAppName(L"After");
    struct Row {
        Setting setting;
        std::wstring now;
        bool takesEffect;
    };
    const std::vector<Row> rows = {
        {Setting::MasterStringDirectory, L"m2", true},
        {Setting::ResourceDirectory, L"r2", false},
        {Setting::IconDirectory, L"i2", true},
        {Setting::IconSubdirectory, L"Sub2", true},
        {Setting::ImagesDirectory, Combine(L"b2", L"Images"), true},
        {Setting::CursorsDirectory, Combine(L"b2", L"Cursors"), false},
        {Setting::AppName, L"After", true},
    };
    LoadReport report = GetLoadReport();
    ASSERT_EQ(report.changedSettings.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        SCOPED_TRACE(Framework::LoadReportName(rows[i].setting));
        EXPECT_EQ(report.changedSettings[i].setting, rows[i].setting);
        EXPECT_EQ(report.changedSettings[i].now, rows[i].now);
        EXPECT_EQ(report.changedSettings[i].takesEffect, rows[i].takesEffect);
        EXPECT_FALSE(report.changedSettings[i].effect.empty());
    }
    EXPECT_EQ(report.changedSettings[6].atConstruction, L"Before");

    // Once strings.xml is read (from the new, empty directory), a new master directory
    // no longer matters.
    EXPECT_EQ(Resources::GetString(L"Key.C"), L"");
    report = GetLoadReport();
    ASSERT_TRUE(report.fullStringsRead);
    EXPECT_EQ(report.files.back().path, Combine(L"m2", L"strings") + L".xml");
    EXPECT_EQ(report.files.back().outcome, Outcome::Missing);
    EXPECT_FALSE(report.changedSettings[0].takesEffect);
    // Back to the values it was built with: nothing is reported as changed.
    SetDirectories(dir);
    Resources::SetAppName(L"Before");
    EXPECT_TRUE(GetLoadReport().changedSettings.empty());
}

// Reports taken while look-ups run the lazy load on other threads (for the thread
// sanitizer): each sees the full file's record whole or not at all.
TEST(LoadReport, TakenWhileTheLazyLoadRuns) {
    Platform platform;
    QanTest::TempDir dir;
    WriteCorrect(dir);
    SetDirectories(dir);
    Resources::Preload();
    std::atomic<bool> stop{false};
    std::thread lookups([&] {
        do
            Resources::GetString(L"Key.C");
        while (!stop);
    });
    bool sawFullLoad = false;
    for (int i = 0; i < 2000 && !sawFullLoad; ++i) {
        const LoadReport report = GetLoadReport();
        sawFullLoad = report.fullStringsRead;
        EXPECT_EQ(report.files.size(), sawFullLoad ? 9u : 8u);
        if (sawFullLoad) {
            EXPECT_EQ(report.files.back().rows, 3u);
        }
        std::this_thread::yield();
    }
    stop = true;
    lookups.join();
    EXPECT_TRUE(GetLoadReport().fullStringsRead);
}

} // namespace

// The string collection's life cycle: start-up texts, overrides, key tables and the lazy
// load of the full text file, on real files.
#include "StringTestFiles.h"
#include "service/Settings.h"
#include "strings/StringResourceCollection.h"
#include "support/FakePlatform.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace {
using namespace Framework::Internal;
using StringTests::KeyTableBytes;
using StringTests::Row;
using StringTests::TextFileBytes;
using Text = std::optional<std::wstring>;

class StringCollection : public ::testing::Test {
protected:
    StringCollection() {
        ProcessSettings().masterStringDirectory = master.Wide();
        ProcessSettings().resourceDirectory = resources.Wide();
    }
    ~StringCollection() override { ProcessSettings() = Settings{}; }

    void Startup(const std::vector<Row>& rows) {
        master.Write("startupstrings.xml", TextFileBytes(rows));
    }
    void Full(const std::vector<Row>& rows) { master.Write("strings.xml", TextFileBytes(rows)); }
    void Overrides(const std::vector<Row>& rows) {
        master.Write("override/strings.xml", TextFileBytes(rows));
    }
    void Keys(const char* file, const std::vector<Row>& rows) {
        resources.Write(file, KeyTableBytes(rows));
    }

    QanTest::TempDir master;
    QanTest::TempDir resources;
    QanTest::FakePlatform platform;
};

TEST_F(StringCollection, SameKeyGoesThroughFourKeyTables) {
    Keys("string.csv", {{"k", "s"}});
    Keys("caption.csv", {{"k", "c"}});
    Keys("tooltipHeader.csv", {{"k", "h"}});
    Keys("tooltipBody.csv", {{"k", "b"}});
    Startup({{"b", "body"}, {"c", "caption"}, {"h", "header"}, {"s", "string"}});
    StringResourceCollection strings;
    EXPECT_EQ(strings.GetResource(L"k", String), Text(L"string"));
    EXPECT_EQ(strings.GetResource(L"k", Caption), Text(L"caption"));
    EXPECT_EQ(strings.GetResource(L"k", TooltipHeader), Text(L"header"));
    EXPECT_EQ(strings.GetResource(L"k", TooltipBody), Text(L"body"));
}

TEST_F(StringCollection, KindsAboveThreeAreNotAnswered) {
    for (const char* file : {"string.csv", "caption.csv", "tooltipHeader.csv", "tooltipBody.csv"})
        Keys(file, {{"k", "i"}});
    Startup({{"i", "text"}});
    Full({{"i", "text"}});
    StringResourceCollection strings;
    const int reads = platform.readFileCalls;
    EXPECT_EQ(strings.GetResource(L"k", static_cast<StringKind>(4)), std::nullopt);
    EXPECT_EQ(strings.GetResource(L"k", static_cast<StringKind>(0xFFFFFFFFu)), std::nullopt);
    EXPECT_EQ(platform.readFileCalls, reads);
    EXPECT_EQ(strings.GetResource(L"k", TooltipBody), Text(L"text"));
}

TEST_F(StringCollection, OverrideFileIsTestedForExistenceBeforeItIsRead) {
    StringResourceCollection without;
    EXPECT_EQ(platform.readFileCalls, 5);
    Overrides({{"x", "y"}});
    StringResourceCollection with;
    EXPECT_EQ(platform.readFileCalls, 5 + 6);
}

TEST_F(StringCollection, KeyMissingFromItsTableIsNotAnsweredAndLoadsNothing) {
    Keys("string.csv", {{"only.string", "s1"}});
    Full({{"s1", "full"}});
    StringResourceCollection strings;
    const int reads = platform.readFileCalls;
    EXPECT_EQ(strings.GetResource(L"unknown", String), std::nullopt);
    EXPECT_EQ(strings.GetResource(L"only.string", Caption), std::nullopt);
    EXPECT_EQ(strings.GetResource(L"ONLY.STRING", String), std::nullopt);  // no case folding
    EXPECT_EQ(strings.GetResource(L" only.string", String), std::nullopt); // no trimming
    EXPECT_EQ(platform.readFileCalls, reads);
    EXPECT_EQ(strings.GetResource(L"only.string", String), Text(L"full"));
}

TEST_F(StringCollection, IdOnlyInFullFileLoadsItOnce) {
    Keys("string.csv", {{"early", "e"}, {"late", "l"}, {"nowhere", "n"}});
    Startup({{"e", "early from start-up"}});
    Full({{"e", "early from full"}, {"l", "late from full"}});
    StringResourceCollection strings;
    const int reads = platform.readFileCalls;

    EXPECT_EQ(strings.GetResource(L"early", String), Text(L"early from start-up"));
    EXPECT_EQ(platform.readFileCalls, reads);
    EXPECT_EQ(strings.GetResource(L"late", String), Text(L"late from full"));
    EXPECT_EQ(platform.readFileCalls, reads + 1);
    // The full file replaced the start-up texts.
    EXPECT_EQ(strings.GetResource(L"early", String), Text(L"early from full"));
    // Answered without a text, and without another read.
    EXPECT_EQ(strings.GetResource(L"nowhere", String), Text(L""));
    EXPECT_EQ(platform.readFileCalls, reads + 1);
}

TEST_F(StringCollection, MissingStartupFileMakesTheFirstLookUpLoadTheFullFile) {
    Keys("string.csv", {{"k", "i"}});
    Full({{"i", "full"}});
    StringResourceCollection strings;
    const int reads = platform.readFileCalls;
    EXPECT_EQ(strings.GetResource(L"k", String), Text(L"full"));
    EXPECT_EQ(platform.readFileCalls, reads + 1);
}

TEST_F(StringCollection, MissingFullFileIsTriedOnceAndStartupTextsStay) {
    Keys("string.csv", {{"early", "e"}, {"late", "l"}});
    Startup({{"e", "early"}});
    Overrides({{"e", "override\\n"}});
    StringResourceCollection strings;
    const int reads = platform.readFileCalls;

    EXPECT_EQ(strings.GetResource(L"late", String), Text(L""));
    EXPECT_EQ(platform.readFileCalls, reads + 1);
    EXPECT_EQ(strings.GetResource(L"late", String), Text(L""));
    EXPECT_EQ(platform.readFileCalls, reads + 1);
    // The start-up rows and their buffer survive, with the override merged into them.
    EXPECT_EQ(strings.GetResource(L"early", String), Text(L"override\n"));
}

TEST_F(StringCollection, OverrideWinsBeforeAndAfterTheLazyLoad) {
    Keys("string.csv", {{"both", "b"}, {"full.only", "f"}, {"plain", "p"}});
    Startup({{"b", "start-up"}, {"p", "plain"}});
    Full({{"b", "full"}, {"f", "full only"}, {"p", "plain full"}});
    Overrides({{"f", "override of full only"}, {"b", "override"}});
    StringResourceCollection strings;

    EXPECT_EQ(strings.GetResource(L"both", String), Text(L"override"));
    EXPECT_EQ(strings.GetResource(L"plain", String), Text(L"plain"));
    // The override of an id the start-up texts lack shows once the full file is read.
    EXPECT_EQ(strings.GetResource(L"full.only", String), Text(L"override of full only"));
    EXPECT_EQ(strings.GetResource(L"both", String), Text(L"override"));
    EXPECT_EQ(strings.GetResource(L"plain", String), Text(L"plain full"));
}

TEST_F(StringCollection, OverrideForAnIdTheFullFileLacksIsDroppedAtTheLoad) {
    Keys("string.csv", {{"gone", "g"}, {"late", "l"}});
    Startup({{"g", "start-up"}});
    Full({{"l", "late"}});
    Overrides({{"g", "override"}});
    StringResourceCollection strings;
    EXPECT_EQ(strings.GetResource(L"gone", String), Text(L"override"));
    EXPECT_EQ(strings.GetResource(L"late", String), Text(L"late"));
    EXPECT_EQ(strings.GetResource(L"gone", String), Text(L""));
}

TEST_F(StringCollection, MasterDirectoryIsReadAgainAtTheLazyLoad) {
    Keys("string.csv", {{"early", "e"}, {"late", "l"}});
    Startup({{"e", "first start-up"}});
    Full({{"e", "first full"}, {"l", "first late"}});
    Overrides({{"e", "first override"}});
    StringResourceCollection strings;

    QanTest::TempDir moved;
    moved.Write("startupstrings.xml", TextFileBytes({{"e", "second start-up"}}));
    moved.Write("strings.xml", TextFileBytes({{"e", "second full"}, {"l", "second late"}}));
    moved.Write("override/strings.xml", TextFileBytes({{"l", "second override"}}));
    ProcessSettings().masterStringDirectory = moved.Wide();

    EXPECT_EQ(strings.GetResource(L"early", String), Text(L"first override"));
    EXPECT_EQ(strings.GetResource(L"late", String), Text(L"second late"));
    EXPECT_EQ(strings.GetResource(L"early", String), Text(L"first override"));
}

TEST_F(StringCollection, TextsAreDecodedWhenHandedOut) {
    Keys("caption.csv", {{"k", "i"}});
    Startup({{"i", "caf\xC3\xA9 &amp; \\tbar\\n&#x1F600;"}});
    StringResourceCollection strings;
    EXPECT_EQ(strings.GetResource(L"k", Caption), Text(L"caf\u00E9 & \tbar\n\U0001F600"));
}

TEST_F(StringCollection, KeysAreNarrowedToUtf8) {
    const std::string longKey(300, 'x');
    Keys("string.csv", {{"Gr\xC3\xB6\xC3\x9F"
                         "e",
                         "g"},
                        {longKey, "l"},
                        {"\xF0\x9F\x98\x80", "s"}});
    Startup({{"g", "size"}, {"l", "long"}, {"s", "smile"}});
    StringResourceCollection strings;
    EXPECT_EQ(strings.GetResource(L"Gr\u00F6\u00DFe", String), Text(L"size"));
    EXPECT_EQ(strings.GetResource(std::wstring(300, L'x'), String), Text(L"long"));
    EXPECT_EQ(strings.GetResource(L"\U0001F600", String), Text(L"smile"));
    EXPECT_EQ(strings.GetResource(std::wstring(299, L'x'), String), std::nullopt);
}

TEST_F(StringCollection, KeyTableIdsWithCarriageReturnMatchNoText) {
    resources.Write("string.csv", "crlf,i\r\nlf,i\n");
    Startup({{"i", "text"}});
    Full({{"i", "text"}});
    StringResourceCollection strings;
    EXPECT_EQ(strings.GetResource(L"lf", String), Text(L"text"));
    EXPECT_EQ(strings.GetResource(L"crlf", String), Text(L""));
}

TEST_F(StringCollection, FoldersWhereFilesAreExpectedLeaveTablesEmpty) {
    std::filesystem::create_directories(resources.Path() / "string.csv");
    std::filesystem::create_directories(master.Path() / "startupstrings.xml");
    std::filesystem::create_directories(master.Path() / "override" / "strings.xml");
    Keys("caption.csv", {{"k", "i"}});
    Full({{"i", "full"}});
    StringResourceCollection strings;
    EXPECT_EQ(strings.GetResource(L"k", String), std::nullopt);
    EXPECT_EQ(strings.GetResource(L"k", Caption), Text(L"full"));
}

TEST_F(StringCollection, DirectoriesWithNonAsciiNames) {
    const std::filesystem::path folder(u8"r\u00E9pertoire \u65E5\u672C");
    resources.Write(folder / "string.csv", "k,i\n");
    resources.Write(folder / "strings.xml", TextFileBytes({{"i", "found"}}));
    ProcessSettings().masterStringDirectory = StringTests::WidePath(resources.Path() / folder);
    ProcessSettings().resourceDirectory = StringTests::WidePath(resources.Path() / folder);
    StringResourceCollection strings;
    EXPECT_EQ(strings.GetResource(L"k", String), Text(L"found"));
}

} // namespace

// Icon look-up through the map: the four path outcomes, the ".png.png" rule, the search
// over the map as the file gives it, and the path-kind cache.
#include "icons/IconResourceCollection.h"
#include "icons/PathKind.h"
#include "platform/Path.h"
#include "service/Settings.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {
using namespace Framework;
using namespace Framework::Internal;
using ResourceID = Resources::ResourceID;

class IconLookup : public ::testing::Test {
protected:
    void SetUp() override {
        ProcessSettings().iconDirectory = dir.Wide();
        ProcessSettings().iconSubdirectory = L"S";
        location = Path::Combine(dir.Wide(), L"S");
    }
    void TearDown() override {
        ProcessSettings().iconDirectory.clear();
        ProcessSettings().iconSubdirectory.clear();
    }
    std::optional<ResourceID> Look(const std::wstring& fileName) {
        IconResourceCollection icons;
        icons.Entries() = {{L"K", fileName}};
        return icons.GetResource(L"K");
    }
    void MakeFolder() { std::filesystem::create_directories(dir.Path() / "S"); }
    void MakeFile() { dir.Write("S", "container"); }

    QanTest::TempDir dir;
    std::wstring location;
};

TEST_F(IconLookup, FolderLocationGivesFullPaths) {
    MakeFolder();
    ResourceID png;
    png.pngPath = Path::Combine(location, L"x.png");
    EXPECT_EQ(Look(L"x.png.png"), png);
    ResourceID icon;
    icon.iconPath = Path::Combine(location, L"x.ico") + Path::kSeparator;
    EXPECT_EQ(Look(L"x.ico"), icon);
    ResourceID upper;
    upper.pngPath = Path::Combine(location, L"X.PNG");
    EXPECT_EQ(Look(L"X.PNG.PNG"), upper);
}

TEST_F(IconLookup, FileLocationIsAContainerOfEntryNames) {
    MakeFile();
    ResourceID png;
    png.containerPath = location;
    png.pngPath = L"x.png";
    EXPECT_EQ(Look(L"x.png.png"), png);
    ResourceID icon;
    icon.containerPath = location;
    icon.iconPath = L"x.ico";
    EXPECT_EQ(Look(L"x.ico"), icon);
    ResourceID mixed;
    mixed.containerPath = location;
    mixed.pngPath = L"a.Png";
    EXPECT_EQ(Look(L"a.Png.pNg"), mixed);
}

TEST_F(IconLookup, MissingLocationIsAHitWithEveryFieldEmpty) {
    EXPECT_EQ(Look(L"x.ico"), ResourceID{});
    EXPECT_EQ(Look(L"x.png.png"), ResourceID{});
}

TEST_F(IconLookup, OnlyAFullDoublePngSuffixCounts) {
    MakeFile();
    EXPECT_EQ(Look(L".png")->iconPath, L".png");
    EXPECT_EQ(Look(L"x.pngpng")->iconPath, L"x.pngpng");
    EXPECT_EQ(Look(L"x.png.png ")->iconPath, L"x.png.png ");
    EXPECT_EQ(Look(L".png.png")->pngPath, L".png");
    EXPECT_EQ(Look(L" a.ico ")->iconPath, L" a.ico ");
}

TEST_F(IconLookup, LocationFollowsTheSettingsAtLookUpTime) {
    MakeFolder();
    std::filesystem::create_directories(dir.Path() / "T");
    IconResourceCollection icons;
    icons.Entries() = {{L"K", L"k.ico"}};
    EXPECT_EQ(icons.GetResource(L"K")->iconPath,
              Path::Combine(location, L"k.ico") + Path::kSeparator);
    ProcessSettings().iconSubdirectory = L"T";
    EXPECT_EQ(icons.GetResource(L"K")->iconPath,
              Path::Combine(Path::Combine(dir.Wide(), L"T"), L"k.ico") + Path::kSeparator);
}

TEST(IconSearch, ExactKeysAndFirstOfDuplicates) {
    QanTest::TempDir dir;
    dir.Write("icons", "x");
    // With a file location the entry name shows which entry answered.
    ProcessSettings().iconDirectory = dir.Wide();
    ProcessSettings().iconSubdirectory = L"icons";
    IconResourceCollection icons;
    icons.Entries() = {{L"A", L"1"}, {L"B", L"2"}, {L"B", L"3"}, {L"B", L"4"}, {L"C", L"5"}};
    EXPECT_EQ(icons.GetResource(L"A")->iconPath, L"1");
    EXPECT_EQ(icons.GetResource(L"B")->iconPath, L"2");
    EXPECT_EQ(icons.GetResource(L"C")->iconPath, L"5");
    EXPECT_FALSE(icons.GetResource(L"a").has_value());
    EXPECT_FALSE(icons.GetResource(L"").has_value());
    EXPECT_FALSE(icons.GetResource(L"BB").has_value());
    ProcessSettings().iconDirectory.clear();
    ProcessSettings().iconSubdirectory.clear();
}

TEST(IconSearch, AnUnsortedMapCanMissAPresentKey) {
    IconResourceCollection icons;
    icons.Entries() = {{L"b", L"b.ico"}, {L"a", L"a.ico"}};
    EXPECT_FALSE(icons.GetResource(L"b").has_value());
}

TEST(IconSearch, EmptyCollectionOfThePlatformFindsNothing) {
    const auto platformIcons = LoadPlatformIconResourceCollection();
    EXPECT_FALSE(platformIcons->GetResource(L"").has_value());
    EXPECT_FALSE(platformIcons->GetResource(L"StockIcon::Warning").has_value());
}

TEST(PathKindCache, AnswersFromTheFileSystemOnce) {
    QanTest::TempDir dir;
    const auto folder = dir.Path() / "Folder";
    std::filesystem::create_directories(folder);
    const auto file = dir.Write("file.ico", "x");
    const auto missing = dir.Path() / "missing";
    EXPECT_EQ(GetPathKind(L""), PathKind::None);
    EXPECT_EQ(GetPathKind(folder.wstring()), PathKind::Folder);
    EXPECT_EQ(GetPathKind(file.wstring()), PathKind::File);
    EXPECT_EQ(GetPathKind(missing.wstring()), PathKind::None);

    // Never refreshed: the folder goes, the missing one appears, the answers stay.
    std::filesystem::remove(folder);
    std::filesystem::create_directories(missing);
    EXPECT_EQ(GetPathKind(folder.wstring()), PathKind::Folder);
    EXPECT_EQ(GetPathKind(missing.wstring()), PathKind::None);
}

TEST(PathKindCache, IsKeyedByTheLowerCasedPath) {
    QanTest::TempDir dir;
    const auto folder = dir.Path() / "MixedCase";
    std::filesystem::create_directories(folder);
    EXPECT_EQ(GetPathKind(folder.wstring()), PathKind::Folder);
    // Other spellings share the entry, whether or not the file system would agree.
    EXPECT_EQ(GetPathKind((dir.Path() / "MIXEDCASE").wstring()), PathKind::Folder);
    EXPECT_EQ(GetPathKind((dir.Path() / "mixedcase").wstring()), PathKind::Folder);
}

TEST(PathKindCache, ConcurrentLookUpsAgree) {
    QanTest::TempDir dir;
    std::vector<std::wstring> paths;
    for (int i = 0; i < 64; ++i) {
        const auto path = dir.Path() / ("d" + std::to_string(i));
        if (i % 2)
            std::filesystem::create_directories(path);
        paths.push_back(path.wstring());
    }
    std::vector<std::thread> threads;
    std::atomic<int> wrong{0};
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int round = 0; round < 20; ++round)
                for (std::size_t i = 0; i < paths.size(); ++i)
                    if (GetPathKind(paths[i]) != (i % 2 ? PathKind::Folder : PathKind::None))
                        ++wrong;
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
}

} // namespace

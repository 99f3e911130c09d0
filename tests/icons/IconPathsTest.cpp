// Paths for prefixed keys: "ext://" keys under the images directory, "guid://" keys
// through the service's icon look-up, everything else empty.
#include "platform/Path.h"
#include "support/TempDir.h"

#include <framework/Resources.h>
#include <gtest/gtest.h>

namespace {
using namespace Framework;
using namespace Framework::Internal;
using ResourceID = Resources::ResourceID;
constexpr wchar_t kSep = Path::kSeparator;

// A service that answers every icon with the paths it is given and records the keys.
class RecordingService final : public IResources {
public:
    ResourceID icon;
    mutable std::vector<std::wstring> iconKeys;

    ResourceID GetIcon(const QanStringT<wchar_t>& key) const override {
        iconKeys.push_back(key);
        return icon;
    }
    QanStringT<wchar_t> GetString(const QanStringT<wchar_t>&, StringKind) const override {
        return {};
    }
    ResourceID GetCursor(const QanStringT<wchar_t>&) const override { return {}; }
    QanStringT<wchar_t> GetLegacyString(const QanStringT<wchar_t>&) const override { return {}; }
    QanStringT<wchar_t> GetLegacyStringHeaderFirst(const QanStringT<wchar_t>&) const override {
        return {};
    }
    QanStringT<wchar_t> GetLegacyGuid(QanStringViewT<char>, int) const override { return {}; }
    void AddLegacyComponent(const wchar_t*, HINSTANCE) const override {}
    void RemoveLegacyComponent(const wchar_t*) const override {}
    void AddLegacyResources(const wchar_t*, const Resources::RegistrarMapEntry*, int,
                            Resources::ResourceType) const override {}
};

struct InstalledService {
    InstalledService() { IResources::SetResourcesForTests(&service); }
    ~InstalledService() { IResources::SetResourcesForTests(nullptr); }
    RecordingService service;
};

TEST(ImagePath, ExtensionKeysJoinTheImagesDirectory) {
    Resources::SetResourceDirectories(L"", L"", L"", L"B", L"");
    EXPECT_EQ(Resources::GetImagePath(L"EXT://tools/pen.png"),
              std::wstring(L"B") + kSep + L"Images" + kSep + L"tools/pen.png");
    EXPECT_EQ(Resources::GetImagePath(L"ext://pen"),
              std::wstring(L"B") + kSep + L"Images" + kSep + L"pen");
    EXPECT_EQ(Resources::GetImagePath(L"ext://"), std::wstring(L"B") + kSep + L"Images" + kSep);
}

TEST(ImagePath, OtherKeysHaveNone) {
    Resources::SetResourceDirectories(L"", L"", L"", L"B", L"");
    for (const wchar_t* key : {L"guid://x", L"pen.png", L"ext:/pen.png", L"ext:", L"", L" ext://a"})
        EXPECT_EQ(Resources::GetImagePath(key), L"") << key;
}

TEST(IconPath, GuidKeysAskTheServiceForTheRest) {
    InstalledService installed;
    installed.service.icon.iconPath = L"icon path";
    installed.service.icon.pngPath = L"png path";
    EXPECT_EQ(Resources::GetIconPath(L"Guid://K"), L"icon path");
    EXPECT_EQ(Resources::GetIconPath(L"GUID://"), L"icon path");
    EXPECT_EQ(installed.service.iconKeys, (std::vector<std::wstring>{L"K", L""}));
}

TEST(IconPath, ExtensionAndPlainKeysHaveNone) {
    InstalledService installed;
    installed.service.icon.iconPath = L"icon path";
    for (const wchar_t* key : {L"ext://a.ico", L"EXT://guid://K", L"a.ico", L"K", L"guid:/K", L""})
        EXPECT_EQ(Resources::GetIconPath(key), L"") << key;
    EXPECT_TRUE(installed.service.iconKeys.empty());
}

// The whole way: the service reads the map from the resource directory and resolves
// the icon location from the icon directory and subdirectory.
class IconPathThroughTheMap : public ::testing::Test {
protected:
    void SetUp() override {
        resources.Write(
            "icons.map.xml",
            "<icons><map guid=\"K\">k.ico</map><map guid=\"P\">p.png.png</map></icons>");
        std::filesystem::create_directories(icons.Path() / "S");
        location = Path::Combine(icons.Wide(), L"S");
    }
    QanTest::TempDir resources;
    QanTest::TempDir icons;
    std::wstring location;
};

TEST_F(IconPathThroughTheMap, IconFoldersAndPngFiles) {
    Resources::SetResourceDirectories(L"", resources.Wide(), icons.Wide(), L"", L"S");
    EXPECT_EQ(Resources::GetIconPath(L"Guid://K"), Path::Combine(location, L"k.ico") + kSep);
    EXPECT_EQ(Resources::GetIconPath(L"guid://P"), L"");
    EXPECT_EQ(Resources::GetIcon(L"P").pngPath, Path::Combine(location, L"p.png"));
    EXPECT_EQ(Resources::GetIconPath(L"guid://unknown"), L"");
}

TEST_F(IconPathThroughTheMap, WithoutAnIconDirectoryTheMapIsNotRead) {
    Resources::SetResourceDirectories(L"", resources.Wide(), L"", L"", L"S");
    EXPECT_EQ(Resources::GetIcon(L"K"), ResourceID{});
    // Setting it later changes locations, not the map read at construction.
    Resources::SetResourceDirectories(L"", resources.Wide(), icons.Wide(), L"", L"S");
    EXPECT_EQ(Resources::GetIcon(L"K"), ResourceID{});
}

} // namespace

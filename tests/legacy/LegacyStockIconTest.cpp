// The shell's stock icons in the legacy icon table: registered through the platform,
// their modules loaded once and never freed.
#include "legacy/LegacyResourceCollection.h"
#include "service/ResourcesImpl.h"
#include "support/FakePlatform.h"

#include <gtest/gtest.h>

#include <map>

namespace {
using namespace Framework;
using namespace Framework::Internal;
using Framework::Platform::StockIconLocation;
using ResourceID = Resources::ResourceID;

HINSTANCE Shell() {
    return reinterpret_cast<HINSTANCE>(std::uintptr_t{0x7000});
}

std::optional<ResourceID> FindIcon(const LegacyResourceCollection& c, const std::wstring& key) {
    std::optional<ResourceID> out;
    c.GetResource(out, key, Resources::Icon);
    return out;
}

// A shell that describes every stock icon as a resource of one module.
void DescribeFromShell(QanTest::FakePlatform& platform) {
    platform.stockIcon = [](int id, StockIconLocation& location) {
        location.modulePath = L"C:\\Windows\\system32\\shell32.dll";
        location.iconIndex = -(id + 1000);
        return true;
    };
    platform.loadModule = [](const wchar_t* path) {
        return std::wstring(path) == L"C:\\Windows\\system32\\shell32.dll" ? Shell() : nullptr;
    };
}

TEST(LegacyStockIcons, RegisteredWithTheShellModuleAndPositiveId) {
    QanTest::FakePlatform platform;
    DescribeFromShell(platform);
    {
        LegacyResourceCollection c;
        c.AddStockIcon(78, L"StockIcon::Warning");
        c.AddStockIcon(80, L"StockIcon::Error");
        ResourceID expected;
        expected.module = Shell();
        expected.id = 1078;
        EXPECT_EQ(FindIcon(c, L"StockIcon::Warning"), expected);
        expected.id = 1080;
        EXPECT_EQ(FindIcon(c, L"StockIcon::Error"), expected);
        // Icons only; the module is loaded once for both.
        std::optional<ResourceID> out;
        c.GetResource(out, L"StockIcon::Error", Resources::String);
        EXPECT_FALSE(out);
        EXPECT_EQ(platform.loadModuleCalls.load(), 1);
    }
    EXPECT_EQ(platform.freeModuleCalls.load(), 0);
}

TEST(LegacyStockIcons, UndescribedIconStaysUnknown) {
    QanTest::FakePlatform platform;
    platform.stockIcon = [](int, StockIconLocation&) { return false; };
    platform.loadModule = [](const wchar_t*) { return Shell(); };
    LegacyResourceCollection c;
    c.AddStockIcon(79, L"StockIcon::Info");
    EXPECT_FALSE(FindIcon(c, L"StockIcon::Info"));
    EXPECT_EQ(platform.loadModuleCalls.load(), 0);
}

TEST(LegacyStockIcons, ModuleThatFailsToLoadLeavesNullHandle) {
    QanTest::FakePlatform platform;
    platform.stockIcon = [](int, StockIconLocation& location) {
        location.modulePath = L"missing.dll";
        location.iconIndex = -23;
        return true;
    };
    platform.loadModule = [](const wchar_t*) -> HINSTANCE { return nullptr; };
    LegacyResourceCollection c;
    c.AddStockIcon(23, L"StockIcon::Help");
    ResourceID expected;
    expected.id = 23;
    EXPECT_EQ(FindIcon(c, L"StockIcon::Help"), expected);
}

TEST(LegacyStockIcons, ServiceRegistersTheFourKeys) {
    QanTest::FakePlatform platform;
    DescribeFromShell(platform);
    const ResourcesImpl service;
    const std::map<std::wstring, int> keys{{L"StockIcon::Warning", 78},
                                           {L"StockIcon::Error", 80},
                                           {L"StockIcon::Info", 79},
                                           {L"StockIcon::Help", 23}};
    for (const auto& [key, id] : keys) {
        const ResourceID icon = service.GetIcon(key);
        EXPECT_EQ(icon.module, Shell()) << std::string(key.begin(), key.end());
        EXPECT_EQ(icon.id, id + 1000) << std::string(key.begin(), key.end());
    }
    EXPECT_EQ(service.GetIcon(L"StockIcon::Other"), ResourceID{});
}

#if defined(_WIN32)
TEST(LegacyStockIcons, ShellDescribesTheWarningIcon) {
    LegacyResourceCollection c;
    c.AddStockIcon(78, L"StockIcon::Warning");
    const auto icon = FindIcon(c, L"StockIcon::Warning");
    ASSERT_TRUE(icon);
    EXPECT_NE(icon->module, nullptr);
    EXPECT_GT(icon->id, 0);
}
#else
TEST(LegacyStockIcons, SystemWithoutStockIconsKnowsNoKey) {
    LegacyResourceCollection c;
    c.AddStockIcon(78, L"StockIcon::Warning");
    EXPECT_FALSE(FindIcon(c, L"StockIcon::Warning"));
}
#endif

} // namespace

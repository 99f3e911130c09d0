// First-use construction of the built-in service, its retry after a failure, and Preload.
// Every TEST runs in a process of its own under ctest, since the service is built once
// per process.
#include "ScriptedService.h"
#include "support/FakePlatform.h"
#include "support/TempDir.h"

#include "platform/Path.h"

#include <framework/Resources.h>

#include <gtest/gtest.h>

#include <mutex>
#include <new>
#include <thread>

namespace {
using Framework::Resources;
using Framework::Internal::IResources;
using QanTest::FakePlatform;

// Records the files the library reads, in order, and reads them for real.
struct ReadRecorder {
    std::mutex mutex;
    std::vector<std::wstring> paths;

    void Attach(FakePlatform& platform) {
        platform.readFile = [this](const wchar_t* path, std::uint64_t& size) {
            {
                std::lock_guard lock(mutex);
                paths.emplace_back(path ? path : L"");
            }
            return Framework::Platform::SystemPlatform().ReadFileInfoBuffer(path, size);
        };
    }
    bool ReadEndingWith(const std::wstring& name) {
        std::lock_guard lock(mutex);
        for (const auto& path : paths)
            if (path.size() >= name.size() &&
                path.compare(path.size() - name.size(), name.size(), name) == 0)
                return true;
        return false;
    }
};

// The built-in service also loads the shell's module for its stock icons on Windows; these
// tests count only the platform icon library.
void WithoutStockIcons(FakePlatform& platform) {
    platform.stockIcon = [](int, Framework::Platform::StockIconLocation&) { return false; };
}

TEST(Preload, AlwaysTrueAndBuildsOnce) {
    FakePlatform platform;
    WithoutStockIcons(platform);
    EXPECT_TRUE(Resources::Preload());
    EXPECT_TRUE(Resources::Preload());
    EXPECT_EQ(platform.loadModuleCalls, 1);
    Resources::GetString(L"anything");
    EXPECT_EQ(platform.loadModuleCalls, 1);
}

TEST(Preload, WithATestServiceBuildsNothingAndStillCountsAsDone) {
    FakePlatform platform;
    WithoutStockIcons(platform);
    {
        QanTest::ScriptedService service;
        EXPECT_TRUE(Resources::Preload());
        EXPECT_EQ(platform.loadModuleCalls, 0);
        EXPECT_EQ(platform.readFileCalls, 0);
    }
    EXPECT_TRUE(Resources::Preload());
    EXPECT_EQ(platform.loadModuleCalls, 0) << "a later Preload must not build";
    Resources::GetCursor(L"x");
    EXPECT_EQ(platform.loadModuleCalls, 1) << "the first look-up builds";
}

TEST(TestService, ReplacesTheBuiltInOneWithoutBuildingIt) {
    FakePlatform platform;
    WithoutStockIcons(platform);
    QanTest::ScriptedService service;
    service.text = L"scripted";
    EXPECT_EQ(&IResources::GetImpl(), &service);
    EXPECT_EQ(Resources::GetString(L"k"), L"scripted");
    EXPECT_EQ(platform.loadModuleCalls, 0);
}

TEST(TestService, ClearingItReturnsToTheBuiltInService) {
    FakePlatform platform;
    WithoutStockIcons(platform);
    const IResources* builtIn = &IResources::GetImpl();
    {
        QanTest::ScriptedService service;
        EXPECT_EQ(&IResources::GetImpl(), &service);
    }
    EXPECT_EQ(&IResources::GetImpl(), builtIn);
    EXPECT_EQ(platform.loadModuleCalls, 1);
}

TEST(Construction, AFailureIsRetriedOnTheNextCall) {
    FakePlatform platform;
    WithoutStockIcons(platform);
    int attempts = 0;
    platform.loadModule = [&](const wchar_t*) -> HINSTANCE {
        if (++attempts == 1)
            throw std::bad_alloc();
        return nullptr;
    };
    EXPECT_THROW(Resources::GetString(L"k"), std::bad_alloc);
    EXPECT_EQ(Resources::GetString(L"k"), L"");
    EXPECT_EQ(attempts, 2);
    Resources::GetIcon(L"k");
    EXPECT_EQ(attempts, 2) << "built once the retry succeeded";
}

TEST(Construction, ConcurrentFirstCallersShareOneService) {
    FakePlatform platform;
    WithoutStockIcons(platform);
    std::vector<const IResources*> seen(8);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < seen.size(); ++i)
        threads.emplace_back([&seen, i] { seen[i] = &IResources::GetImpl(); });
    for (auto& thread : threads)
        thread.join();
    for (const IResources* service : seen)
        EXPECT_EQ(service, seen[0]);
    EXPECT_EQ(platform.loadModuleCalls, 1);
}

TEST(Construction, LoadsThePlatformIconLibraryByBareName) {
    FakePlatform platform;
    WithoutStockIcons(platform);
    std::wstring asked;
    platform.loadModule = [&](const wchar_t* name) -> HINSTANCE {
        asked = name;
        return nullptr;
    };
    Resources::Preload();
    EXPECT_EQ(asked, L"QanIcons.dll");
}

TEST(Construction, WithoutSettingsSucceedsAndSkipsTheIconMap) {
    FakePlatform platform;
    WithoutStockIcons(platform);
    ReadRecorder reads;
    reads.Attach(platform);
    EXPECT_TRUE(Resources::Preload());
    EXPECT_FALSE(reads.ReadEndingWith(L"icons.map.xml"));
}

TEST(Construction, IconMapIsIgnoredWithoutAnIconDirectory) {
    QanTest::TempDir dir;
    dir.Write("icons.map.xml", "<maps><map guid=\"K\">k.ico</map></maps>\n");
    FakePlatform platform;
    WithoutStockIcons(platform);
    ReadRecorder reads;
    reads.Attach(platform);
    Resources::SetResourceDirectories(dir.Wide(), dir.Wide(), L"", dir.Wide(), L"");
    Resources::Preload();
    EXPECT_FALSE(reads.ReadEndingWith(L"icons.map.xml"));
    EXPECT_EQ(Resources::GetIcon(L"K"), Resources::ResourceID{});
}

TEST(Construction, IconMapIsReadFromTheResourceDirectory) {
    QanTest::TempDir resources;
    QanTest::TempDir icons;
    resources.Write("icons.map.xml", "<maps><map guid=\"K\">k.ico</map></maps>\n");
    FakePlatform platform;
    WithoutStockIcons(platform);
    ReadRecorder reads;
    reads.Attach(platform);
    Resources::SetResourceDirectories(L"", resources.Wide(), icons.Wide(), L"", L"");
    Resources::Preload();
    EXPECT_TRUE(reads.ReadEndingWith(Framework::Path::Combine(resources.Wide(), L"icons.map.xml")));
    EXPECT_EQ(Resources::GetIcon(L"K").iconPath,
              Framework::Path::AddBackslash(Framework::Path::Combine(icons.Wide(), L"k.ico")));
}

} // namespace

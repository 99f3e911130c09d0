// First-use construction of the built-in service, its retry after a failure, and Preload.
// Every TEST runs in a process of its own under ctest, since the service is built once
// per process.
#include "ScriptedService.h"
#include "support/FakePlatform.h"
#include "support/TempDir.h"

#include "platform/Path.h"

#include <gtest/gtest.h>

#include <mutex>
#include <new>
#include <thread>

namespace {
using Framework::Resources;
using Framework::Internal::IResources;

// Counts loads of the platform icon library and records every file read. The shell's
// module for stock icons (loaded on Windows) is kept out of the count.
struct Platform : QanTest::FakePlatform {
    std::mutex mutex;
    std::vector<std::wstring> reads;

    Platform() {
        stockIcon = [](int, Framework::Platform::StockIconLocation&) { return false; };
        readFile = [this](const wchar_t* path, std::uint64_t& size) {
            std::lock_guard lock(mutex);
            reads.emplace_back(path);
            return Framework::Platform::SystemPlatform().ReadFileInfoBuffer(path, size);
        };
    }
    bool Read(const std::wstring& path) {
        std::lock_guard lock(mutex);
        return std::find(reads.begin(), reads.end(), path) != reads.end();
    }
};

TEST(Preload, AlwaysTrueAndBuildsOnce) {
    Platform platform;
    EXPECT_TRUE(Resources::Preload());
    EXPECT_TRUE(Resources::Preload());
    Resources::GetString(L"anything");
    EXPECT_EQ(platform.loadModuleCalls, 1);
}

TEST(Preload, WithATestServiceBuildsNothingAndStillCountsAsDone) {
    Platform platform;
    {
        QanTest::ScriptedService service;
        EXPECT_EQ(&IResources::GetImpl(), &service);
        EXPECT_TRUE(Resources::Preload());
    }
    EXPECT_TRUE(Resources::Preload());
    EXPECT_EQ(platform.loadModuleCalls, 0) << "neither Preload builds";
    EXPECT_EQ(platform.readFileCalls, 0);
    const IResources* builtIn = &IResources::GetImpl();
    Resources::GetCursor(L"x");
    EXPECT_EQ(&IResources::GetImpl(), builtIn);
    EXPECT_EQ(platform.loadModuleCalls, 1) << "the first look-up builds";
}

TEST(Construction, AFailureIsRetriedOnTheNextCall) {
    Platform platform;
    int attempts = 0;
    std::wstring asked;
    platform.loadModule = [&](const wchar_t* name) -> HINSTANCE {
        asked = name;
        if (++attempts == 1)
            throw std::bad_alloc();
        return nullptr;
    };
    EXPECT_THROW(Resources::GetString(L"k"), std::bad_alloc);
    EXPECT_EQ(Resources::GetString(L"k"), L"");
    Resources::GetIcon(L"k");
    EXPECT_EQ(attempts, 2) << "built once the retry succeeded";
    EXPECT_EQ(asked, L"QanIcons.dll") << "loaded by bare name";
}

TEST(Construction, ConcurrentFirstCallersShareOneService) {
    Platform platform;
    std::vector<const IResources*> seen(8);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < seen.size(); ++i)
        threads.emplace_back([&seen, i] { seen[i] = &IResources::GetImpl(); });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(std::count(seen.begin(), seen.end(), seen[0]), 8);
    EXPECT_EQ(platform.loadModuleCalls, 1);
}

// The map lives in the resource directory (that it is skipped without an icon directory
// is the icon tests' concern).
TEST(Construction, IconMapIsReadFromTheResourceDirectory) {
    QanTest::TempDir resources, icons;
    resources.Write("icons.map.xml", "<maps><map guid=\"K\">k.ico</map></maps>\n");
    const auto map = Framework::Path::Combine(resources.Wide(), L"icons.map.xml");
    Platform platform;
    Resources::SetResourceDirectories(L"", resources.Wide(), icons.Wide(), L"", L"");
    Resources::Preload();
    EXPECT_TRUE(platform.Read(map));
    const auto folder = Framework::Path::Combine(icons.Wide(), L"k.ico");
    EXPECT_EQ(Resources::GetIcon(L"K").iconPath, Framework::Path::AddBackslash(folder));
}

} // namespace

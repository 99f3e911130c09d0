// Look-ups from many threads while the first miss reads the full text file. Every answer
// is checked; run under ThreadSanitizer to check the locking as well.
#include "StringTestFiles.h"
#include "service/Settings.h"
#include "strings/StringResourceCollection.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {
using namespace Framework::Internal;
using StringTests::KeyTableBytes;
using StringTests::Row;
using StringTests::TextFileBytes;

constexpr int kKeys = 2000;
constexpr int kStartupKeys = 200; // ids of keys below this are in the start-up file
constexpr int kThreads = 16;

std::string Id(int n) {
    std::string id = std::to_string(n);
    return "id" + std::string(6 - id.size(), '0') + id;
}
std::wstring Expected(int n) {
    // Overridden every seventh id; the override shows in both phases.
    return (n % 7 == 0 ? L"override " : L"text ") + std::to_wstring(n);
}

TEST(StringCollectionThreads, LookUpsDuringTheLazyLoadAllGetTheirTexts) {
    QanTest::TempDir dir;
    std::vector<Row> keys, startup, full, overrides;
    for (int n = 0; n < kKeys; ++n) {
        keys.emplace_back("key" + Id(n), Id(n));
        full.emplace_back(Id(n), "text " + std::to_string(n));
        if (n < kStartupKeys)
            startup.emplace_back(Id(n), "text " + std::to_string(n));
        if (n % 7 == 0)
            overrides.emplace_back(Id(n), "override " + std::to_string(n));
    }
    dir.Write("string.csv", KeyTableBytes(keys));
    dir.Write("startupstrings.xml", TextFileBytes(startup));
    dir.Write("strings.xml", TextFileBytes(full));
    dir.Write("override/strings.xml", TextFileBytes(overrides));
    ProcessSettings().masterStringDirectory = dir.Wide();
    ProcessSettings().resourceDirectory = dir.Wide();
    const StringResourceCollection strings;

    std::atomic<int> ready{0};
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            ++ready;
            while (ready < kThreads) {
            }
            // Half the threads start with start-up keys, half with keys only in the full
            // file, each at its own offset, so that the load happens amid look-ups.
            for (int i = 0; i < kKeys; ++i) {
                const int n = t % 2 == 0 ? (i * 37 + t) % kKeys : (kKeys - 1 - i + t) % kKeys;
                const std::string id = Id(n);
                const auto text =
                    strings.GetResource(L"key" + std::wstring(id.begin(), id.end()), String);
                if (text != Expected(n))
                    ++wrong;
                if (strings.GetResource(L"no such key", String).has_value())
                    ++wrong;
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
    ProcessSettings() = Settings{};
}

} // namespace

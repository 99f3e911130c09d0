// Resource files that are no regular files, or larger than the library reads, count as
// missing, and promptly: at the whole-file read, at the module mapping, and through the
// string look-ups that build on them. A look-up that blocks is released and failed here
// rather than left to hang the run.
#include "support/TempDir.h"

#include "base/Settings.h"
#include "platform/Platform.h"
#include "service/ResourcesImpl.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <functional>
#include <future>
#include <iostream>
#include <thread>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {
using namespace Framework;
using Framework::Platform::kMaxFileSize;
using Framework::Platform::SystemPlatform;
namespace fs = std::filesystem;

constexpr std::uint64_t kTerabyte = std::uint64_t{1} << 40;

#ifndef _WIN32
bool MakeFifo(const fs::path& path) {
    return ::mkfifo(path.c_str(), 0600) == 0;
}

// Opening the writing end and closing it again ends a reader's wait in open or read.
void ReleaseFifo(const fs::path& path) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd >= 0)
        ::close(fd);
}
#endif

// A file of the given size that holds no data; false when the file system refuses it.
bool MakeSparse(const fs::path& path, std::uint64_t size) {
    { std::ofstream create(path, std::ios::binary | std::ios::trunc); }
    std::error_code error;
    fs::resize_file(path, size, error);
    return !error && fs::file_size(path, error) == size && !error;
}

// Runs work on a thread of its own and waits a generous while for it. Past that, every
// FIFO given is released again and again until the work ends, and the answer is false.
// Exceptions of the work are thrown here.
bool FinishesPromptly(const std::function<void()>& work,
                      [[maybe_unused]] const std::vector<fs::path>& fifos) {
    std::packaged_task<void()> task(work);
    std::future<void> done = task.get_future();
    std::thread runner(std::move(task));
    bool prompt = done.wait_for(std::chrono::seconds(30)) == std::future_status::ready;
    while (!prompt && done.wait_for(std::chrono::milliseconds(50)) != std::future_status::ready) {
#ifndef _WIN32
        for (const auto& fifo : fifos)
            ReleaseFifo(fifo);
#endif
    }
    runner.join();
    done.get();
    return prompt;
}

// What stands where a resource file is expected. Each kind that cannot be made on this
// system is left out.
enum class Kind { Fifo, Folder, Device };

std::vector<Kind> KindsOnThisSystem() {
#ifdef _WIN32
    return {Kind::Folder, Kind::Device};
#else
    return {Kind::Fifo, Kind::Folder, Kind::Device};
#endif
}

const char* Name(Kind kind) {
    switch (kind) {
    case Kind::Fifo:
        return "a FIFO";
    case Kind::Folder:
        return "a folder";
    case Kind::Device:
        return "a device";
    }
    return "";
}

// Makes the odd kind at path and returns the path to read (a device has a fixed path).
fs::path Make(Kind kind, const fs::path& path) {
    switch (kind) {
    case Kind::Fifo:
#ifndef _WIN32
        EXPECT_TRUE(MakeFifo(path)) << path;
#endif
        return path;
    case Kind::Folder:
        fs::create_directories(path);
        return path;
    case Kind::Device:
#ifdef _WIN32
        return fs::path(L"\\\\.\\NUL");
#else
        return fs::path("/dev/null");
#endif
    }
    return path;
}

TEST(Files, OnlyRegularFilesAreReadOrMapped) {
    QanTest::TempDir dir;
    for (const Kind kind : KindsOnThisSystem()) {
        SCOPED_TRACE(Name(kind));
        const fs::path path = Make(kind, dir.Path() / "QanIcons.dll");
        const std::wstring wide = path.wstring();
        std::uint64_t size = 99;
        bool read = true;
        HINSTANCE module = nullptr;
        EXPECT_TRUE(FinishesPromptly(
            [&] { read = SystemPlatform().ReadFileInfoBuffer(wide.c_str(), size) != nullptr; },
            {path}));
        EXPECT_TRUE(
            FinishesPromptly([&] { module = SystemPlatform().LoadModule(wide.c_str()); }, {path}));
        EXPECT_FALSE(read);
        EXPECT_EQ(size, 0u);
        EXPECT_EQ(module, nullptr);
        SystemPlatform().FreeModule(module);
        if (kind != Kind::Device)
            fs::remove(path);
    }
}

TEST(Files, LargerThanTheLimitIsRefusedBeforeAnythingIsAllocated) {
    QanTest::TempDir dir;
    // Just past the limit, and a few terabytes, for which an allocation would throw.
    int made = 0;
    for (const std::uint64_t length : {kMaxFileSize + 1, 3 * kTerabyte}) {
        const fs::path path = dir.Path() / "big";
        if (!MakeSparse(path, length)) {
            std::cout << "note: the file system refuses a sparse file of " << length << " bytes\n";
            continue;
        }
        ++made;
        std::uint64_t size = 99;
        EXPECT_FALSE(SystemPlatform().ReadFileInfoBuffer(path.wstring().c_str(), size)) << length;
        EXPECT_EQ(size, 0u);
    }
    if (made == 0)
        GTEST_SKIP() << "the file system refuses sparse files past the limit";
}

// The string answers of a service built now over the two directories, asked through the
// exported functions. "s" has a start-up text, "f" only a text in the full file.
std::vector<std::wstring> Answers(const QanTest::TempDir& master, const QanTest::TempDir& resources,
                                  const std::vector<fs::path>& fifos) {
    Resources::SetResourceDirectories(master.Wide(), resources.Wide(), L"", L"", L"");
    std::vector<std::wstring> answers;
    EXPECT_TRUE(FinishesPromptly(
        [&] {
            Internal::ResourcesImpl service;
            Internal::IResources::SetResourcesForTests(&service);
            for (const wchar_t* key : {L"s", L"f", L"s"})
                answers.push_back(Resources::GetString(key) + L"|" + Resources::GetCaption(key));
            Internal::IResources::SetResourcesForTests(nullptr);
        },
        fifos));
    Internal::ProcessSettings() = Internal::Settings{};
    return answers;
}

// Every string file in place, with "file" (under master or resources) replaced by what
// make puts there, and the answers then compared with those when it is simply missing.
// make is given the path and a copy of the file's own bytes, kept aside.
using MakeOdd = std::function<fs::path(const fs::path& path, const fs::path& kept)>;
void ExpectAnswersAsIfMissing(const char* file, const MakeOdd& make) {
    SCOPED_TRACE(file);
    QanTest::TempDir master, resources;
    const std::string header = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<strings>\n";
    master.Write("startupstrings.xml", header + "<s id=\"s\">start-up</s>\n</strings>\n");
    master.Write("strings.xml", header + "<s id=\"f\">full f</s>\n<s id=\"s\">full s</s>\n"
                                         "</strings>\n");
    resources.Write("string.csv", "f,f\ns,s\n");
    resources.Write("caption.csv", "f,s\ns,f\n");
    const fs::path path =
        (std::string_view(file).ends_with(".csv") ? resources : master).Path() / file;

    const fs::path kept = master.Path() / "kept";
    fs::rename(path, kept);
    const auto missing = Answers(master, resources, {});
    const fs::path odd = make(path, kept);
    EXPECT_EQ(Answers(master, resources, {odd}), missing);
    std::error_code ignored;
    fs::remove_all(odd, ignored);
}

TEST(StringFiles, WhatIsNoRegularFileAnswersAsAMissingFile) {
    for (const Kind kind : KindsOnThisSystem()) {
        if (kind == Kind::Device)
            continue; // no device can be made at a path of our choosing
        SCOPED_TRACE(Name(kind));
        for (const char* file : {"startupstrings.xml", "strings.xml", "string.csv"})
            ExpectAnswersAsIfMissing(
                file, [kind](const fs::path& path, const fs::path&) { return Make(kind, path); });
    }
}

// The file keeps its own rows at its start, so that one read in spite of its size would
// give answers of its own.
TEST(StringFiles, OneLargerThanTheLimitAnswersAsAMissingFile) {
    // A few terabytes where the file system takes it, else just past the limit.
    QanTest::TempDir probe;
    std::uint64_t length = 3 * kTerabyte;
    if (!MakeSparse(probe.Path() / "big", length))
        length = kMaxFileSize + 1;
    if (!MakeSparse(probe.Path() / "big", length))
        GTEST_SKIP() << "the file system refuses sparse files past the limit";
    for (const char* file : {"startupstrings.xml", "strings.xml", "string.csv"})
        ExpectAnswersAsIfMissing(file, [length](const fs::path& path, const fs::path& kept) {
            fs::rename(kept, path);
            std::error_code error;
            fs::resize_file(path, length, error);
            EXPECT_FALSE(error) << error.message();
            EXPECT_EQ(fs::file_size(path), length);
            return path;
        });
}

} // namespace

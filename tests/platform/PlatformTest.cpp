// The system services every area relies on: UTF-8 both ways for every scalar value, path
// joining with the system's separator, the bounded wide copy, and whole-file reads.
#include "support/TempDir.h"

#include "base/Unicode.h"
#include "platform/Path.h"
#include "platform/Platform.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {
using namespace Framework;
using Framework::Platform::SystemPlatform;

// A path as the library takes it, whatever the locale: through its own UTF-8 decoding.
std::wstring Wide(const std::filesystem::path& path) {
    const std::u8string bytes = path.u8string();
    return Utf8::Decode({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

TEST(Utf8, EveryScalarValueSurvivesTheRoundTrip) {
    std::wstring all;
    for (char32_t c = 1; c <= 0x10FFFF; ++c) {
        if (c == 0xD800)
            c = 0xE000;
        if constexpr (sizeof(wchar_t) == 2) {
            if (c >= 0x10000) {
                all += static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10));
                all += static_cast<wchar_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
                continue;
            }
        }
        all += static_cast<wchar_t>(c);
    }
    const std::string bytes = Utf8::Encode(all);
    EXPECT_EQ(bytes.size(), 0x7Fu + 2 * 0x780 + 3 * (0x10000 - 0x800 - 0x800) + 4 * 0x100000);
    EXPECT_EQ(Utf8::Decode(bytes), all);
}

TEST(Utf8, IllFormedBytesGiveOneReplacementPerMaximalSubpart) {
    const std::pair<std::string_view, std::wstring_view> rows[] = {
        {"\x80", L"\uFFFD"},                               // lone continuation byte
        {"\xC0\xAF", L"\uFFFD\uFFFD"},                     // overlong: no valid prefix
        {"\xE0\x80\x80", L"\uFFFD\uFFFD\uFFFD"},           // overlong three-byte form
        {"\xED\xA0\x80", L"\uFFFD\uFFFD\uFFFD"},           // encoded surrogate
        {"\xF4\x90\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD"}, // above U+10FFFF
        {"\xE6\x97", L"\uFFFD"},                           // truncated sequence is one subpart
        {"\xF0\x9F\x98x", L"\uFFFDx"},                     // truncated before an ASCII byte
        {"a\xFF"
         "b",
         L"a\uFFFDb"},
    };
    for (const auto& [bytes, expected] : rows)
        EXPECT_EQ(Utf8::Decode(bytes), expected) << testing::PrintToString(bytes);
    // Unpaired surrogates and values beyond Unicode cannot be encoded.
    std::wstring lone(1, static_cast<wchar_t>(0xDC00));
    EXPECT_EQ(Utf8::Encode(lone), "\xEF\xBF\xBD");
}

TEST(Path, JoinsWithExactlyOneSeparator) {
    const std::wstring s(1, Path::kSeparator);
    EXPECT_EQ(Path::Combine(L"base", L"name"), L"base" + s + L"name");
    EXPECT_EQ(Path::Combine(L"base" + s, L"name"), L"base" + s + L"name");
    EXPECT_EQ(Path::Combine(L"base" + s, s + L"name"), L"base" + s + L"name");
    EXPECT_EQ(Path::Combine(L"", L"name"), L"name");
    EXPECT_EQ(Path::Combine(L"base", L""), L"base" + s);
    EXPECT_EQ(Path::AddBackslash(L"dir"), L"dir" + s);
    EXPECT_EQ(Path::AddBackslash(L"dir" + s), L"dir" + s);
    EXPECT_EQ(Path::AddBackslash(L""), L"");
}

TEST(CopyWide, FollowsTheBoundedCopyContract) {
    const auto& platform = SystemPlatform();
    wchar_t buffer[4] = {L'x', L'x', L'x', L'x'};
    EXPECT_EQ(platform.CopyWide(buffer, 4, L"abc"), 0);
    EXPECT_EQ(std::wstring(buffer), L"abc");
    EXPECT_NE(platform.CopyWide(buffer, 3, L"abc"), 0);
    EXPECT_EQ(buffer[0], L'\0') << "a destination too small is emptied";
    buffer[0] = L'x';
    EXPECT_NE(platform.CopyWide(buffer, 0, L"a"), 0);
    EXPECT_NE(platform.CopyWide(buffer, -4, L"a"), 0);
    EXPECT_NE(platform.CopyWide(nullptr, 4, L"a"), 0);
    EXPECT_EQ(buffer[0], L'x') << "no size means nothing may be written";
}

TEST(Files, WholeFileReadsAndKinds) {
    QanTest::TempDir dir;
    const std::wstring file =
        Wide(dir.Write(std::filesystem::path(u8"caf\u00E9.txt"), std::string("a\0b", 3)));
    dir.Write("empty", "");
    std::uint64_t size = 99;
    auto bytes = SystemPlatform().ReadFileInfoBuffer(file.c_str(), size);
    ASSERT_TRUE(bytes);
    EXPECT_EQ(std::string(bytes.get(), size), std::string("a\0b", 3));
    EXPECT_TRUE(
        SystemPlatform().ReadFileInfoBuffer((dir.Path() / "empty").wstring().c_str(), size));
    EXPECT_EQ(size, 0u);
    EXPECT_FALSE(SystemPlatform().ReadFileInfoBuffer(dir.Wide().c_str(), size)) << "a folder";
    EXPECT_FALSE(SystemPlatform().ReadFileInfoBuffer((dir.Wide() + L"x").c_str(), size));
    EXPECT_TRUE(SystemPlatform().IsFile(file));
    EXPECT_FALSE(SystemPlatform().IsFolder(file));
    EXPECT_TRUE(SystemPlatform().IsFolder(dir.Wide()));
    EXPECT_TRUE(SystemPlatform().Exists(dir.Wide()));
    EXPECT_FALSE(SystemPlatform().Exists(dir.Wide() + L"x"));
    EXPECT_FALSE(SystemPlatform().Exists(L""));
}

// A read that tells as its bytes arrive: every count it tells is final and growing, the
// last is the whole file, and what it told is the file's bytes.
TEST(Files, ReadTellsItsBytesAsTheyArrive) {
    QanTest::TempDir dir;
    std::string content(700 * 1024 + 17, '\0');
    for (std::size_t i = 0; i < content.size(); ++i)
        content[i] = static_cast<char>('a' + i % 23);
    const std::wstring file = Wide(dir.Write("large.csv", content));
    std::vector<std::size_t> counts;
    std::string seen;
    std::uint64_t size = 0;
    const auto bytes = SystemPlatform().ReadFileInfoBuffer(
        file.c_str(), size, [&](const char* at, std::size_t count, std::size_t total) {
            EXPECT_EQ(total, content.size());
            EXPECT_TRUE(counts.empty() || count > counts.back());
            seen.append(at + seen.size(), count - seen.size());
            counts.push_back(count);
        });
    ASSERT_TRUE(bytes);
    EXPECT_EQ(std::string(bytes.get(), size), content);
    EXPECT_EQ(seen, content);
    ASSERT_FALSE(counts.empty());
    EXPECT_EQ(counts.back(), content.size());
    bool told = false;
    EXPECT_FALSE(SystemPlatform().ReadFileInfoBuffer(
        (dir.Wide() + L"missing").c_str(), size,
        [&told](const char*, std::size_t, std::size_t) { told = true; }));
    EXPECT_FALSE(told);
}

} // namespace

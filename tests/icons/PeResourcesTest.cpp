// The PE resource reader on the fixture library and on copies of it with one targeted
// corruption each: it finds raw-data resources, and malformed files give nothing.
#include "platform/PeResources.h"
#include "CursorTableWriter.h"
#include "platform/Platform.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {
using namespace Framework::Platform;
using Bytes = std::vector<std::byte>;

// Little-endian fields, as in the file and on every host the tests run on; at() checks
// that the last byte of the field is there.
std::uint32_t Get(const std::string& b, std::size_t at, int width = 4) {
    std::uint32_t value = 0;
    std::memcpy(&value, &b.at(at + width - 1) - (width - 1), width);
    return value;
}
void Put(std::string& b, std::size_t at, std::uint32_t value, int width = 4) {
    std::memcpy(&b.at(at + width - 1) - (width - 1), &value, width);
}

// Where the structures of the (PE32+) fixture lie, found the long way round, down to
// resource 2: one type (10), then names 1, 2 and 3, then one language each.
struct Layout {
    explicit Layout(const std::string& b) : pe(Get(b, 0x3C)), opt(pe + 24) {
        const std::uint32_t rva = Get(b, opt + 128);
        for (std::size_t s = opt + Get(b, pe + 20, 2), n = 0; n < Get(b, pe + 6, 2); ++n, s += 40)
            if (rva >= Get(b, s + 12) && rva < Get(b, s + 12) + Get(b, s + 16))
                section = s, root = Get(b, s + 20) + rva - Get(b, s + 12);
        names = root + (Get(b, root + 20) & 0x7FFFFFFF);
        languages = root + (Get(b, names + 28) & 0x7FFFFFFF);
        data = root + Get(b, languages + 20);
    }
    std::size_t pe, opt, section = 0, root = 0, names, languages, data;
};

// Resource 2 of the fixture, as its resource script spells it.
const QanTool::CursorTable::Entry kFixtureTable[] = {{u"Arrow", 7},           {u"Cross", 11},
                                                     {u"Cross", 12},          {u"Hand", 9},
                                                     {u"Move\U0001F5B1", 14}, {u"Wait", 13}};

class PeReader : public ::testing::Test {
protected:
    static auto Span(const std::string& file) { return std::as_bytes(std::span(file)); }
    static Bytes Find(const std::string& file, std::uint32_t id = 2) {
        const auto found = FindPeRawData(Span(file), id);
        return {found.begin(), found.end()};
    }
    const std::string file = QanTest::ReadAll(
        std::filesystem::path(SystemPlatform().ExecutableDirectory()) / "QanIcons.dll");
    const Layout at{file};
    const Bytes expected = QanTool::CursorTable::Write(kFixtureTable);
};

TEST_F(PeReader, EachCorruptionGivesNothingOrTheWholeResource) {
    ASSERT_TRUE(Get(file, at.root + 16) == 10 && Get(file, at.names + 24) == 2); // type, name
    enum Want { NotPe, Empty, Found };
    const auto link = [&](std::size_t to) { return std::uint32_t(0x80000000 | (to - at.root)); };
    // What is changed, the outcome, and the field: offset, new value and width.
    const std::tuple<const char*, Want, std::size_t, std::uint32_t, int> rows[] = {
        {"e_lfanew 2 bytes before the end", NotPe, 0x3C, std::uint32_t(file.size() - 2), 4},
        {"no PE signature", NotPe, at.pe + 1, 'X', 1},
        {"unknown optional header", NotPe, at.opt, 0x107, 2},
        {"two data directories", Empty, at.opt + 108, 2, 4},
        {"resource rva past the sections", Empty, at.opt + 128, 0xFFFFFF00, 4},
        {"section data past the end", Empty, at.section + 20, 0xFFFFFF00, 4},
        {"type given by name", Empty, at.root + 16, 0x8000000A, 4},
        {"type names a data entry", Empty, at.root + 20, link(at.names) & 0xFFFF, 4},
        {"name directory past the end", Empty, at.names + 28, 0x8FFFFFF0, 4},
        {"language names a directory", Empty, at.languages + 20, link(at.languages), 4},
        {"data rva past the end", Empty, at.data, 0xFFFFFFF0, 4},
        {"loop: name names its own directory", Empty, at.names + 28, link(at.names), 4},
        // Counts are capped by the bytes there; the real entries come first.
        {"huge name counts", Found, at.names + 12, 0xFFFFFFFF, 4},
    };
    for (const auto& [what, want, offset, value, width] : rows) {
        std::string bad = file;
        Put(bad, offset, value, width);
        EXPECT_EQ(IsPeImage(Span(bad)), want != NotPe) << what;
        EXPECT_EQ(Find(bad), want == Found ? expected : Bytes{}) << what;
    }
    // A loop that would end in data: name 2 names its own directory, whose first entry
    // (name 1) is made to name a data entry directly.
    std::string loop = file;
    Put(loop, at.names + 28, link(at.names));
    Put(loop, at.names + 20, Get(file, at.root + (Get(file, at.names + 20) & 0x7FFFFFFF) + 20));
    EXPECT_TRUE(Find(loop).empty());
}

TEST_F(PeReader, FindsResourcesByIdAndTruncatedCopiesGiveNothingOrTheWholeResource) {
    EXPECT_EQ(Find(file, 3), (Bytes{std::byte{0x78}, std::byte{0x56}, std::byte{0}, std::byte{0}}));
    EXPECT_TRUE(Find(file, 4).empty() && Find(file, 0x10002).empty());
    const auto data = FindPeRawData(Span(file), 2);
    const auto dataEnd = static_cast<std::size_t>(data.data() + data.size() - Span(file).data());
    for (std::size_t length = 0; length < file.size(); length += length < 1024 ? 1 : 61) {
        const std::string cut = file.substr(0, length);
        EXPECT_EQ(Find(cut), length < dataEnd ? Bytes{} : expected) << length;
        EXPECT_FALSE(length < at.opt + 2 && IsPeImage(Span(cut))) << length; // headers cut short
    }
}

} // namespace

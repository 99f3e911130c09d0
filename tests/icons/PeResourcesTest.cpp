// The PE resource reader on the fixture library and on hand-corrupted copies of it: it
// finds raw-data resources, and malformed files give nothing rather than stray bytes.
#include "platform/PeResources.h"
#include "CursorTableWriter.h"
#include "support/Fixture.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {
using namespace Framework::Platform;
using Bytes = std::vector<std::byte>;

std::uint32_t Get32(const Bytes& b, std::size_t at) {
    return static_cast<std::uint32_t>(b.at(at)) | static_cast<std::uint32_t>(b.at(at + 1)) << 8 |
           static_cast<std::uint32_t>(b.at(at + 2)) << 16 |
           static_cast<std::uint32_t>(b.at(at + 3)) << 24;
}
std::uint16_t Get16(const Bytes& b, std::size_t at) {
    return static_cast<std::uint16_t>(static_cast<unsigned>(b.at(at)) |
                                      static_cast<unsigned>(b.at(at + 1)) << 8);
}
void Put32(Bytes& b, std::size_t at, std::uint32_t value) {
    for (int i = 0; i < 4; ++i)
        b.at(at + i) = static_cast<std::byte>(value >> (8 * i) & 0xFF);
}
void Put16(Bytes& b, std::size_t at, std::uint16_t value) {
    b.at(at) = static_cast<std::byte>(value & 0xFF);
    b.at(at + 1) = static_cast<std::byte>(value >> 8);
}

// Where the structures of the (PE32+) fixture are, found the long way round.
struct Layout {
    std::size_t pe = 0, optional = 0, sections = 0, sectionCount = 0;
    std::size_t resourceSection = 0; // header of the section holding the resources
    std::size_t root = 0;            // file offset of the resource directory
    std::size_t Directory(std::uint32_t field) const { return root + (field & 0x7FFFFFFF); }
};

Layout Locate(const Bytes& b) {
    Layout l;
    l.pe = Get32(b, 0x3C);
    l.optional = l.pe + 24;
    l.sections = l.optional + Get16(b, l.pe + 20);
    l.sectionCount = Get16(b, l.pe + 6);
    const std::uint32_t rva = Get32(b, l.optional + 112 + 16);
    for (std::size_t i = 0; i < l.sectionCount; ++i) {
        const std::size_t s = l.sections + 40 * i;
        const std::uint32_t va = Get32(b, s + 12);
        if (rva >= va && rva < va + Get32(b, s + 16)) {
            l.resourceSection = s;
            l.root = Get32(b, s + 20) + (rva - va);
        }
    }
    return l;
}

// Offsets of the three directories on the way to resource 2 and of its data entry.
struct Walk {
    std::size_t types, typeEntry, names, nameEntry, languages, dataEntry;
};

Walk WalkTo2(const Bytes& b, const Layout& l) {
    Walk w{};
    w.types = l.root;
    w.typeEntry = w.types + 16; // the fixture has one type only: 10
    w.names = l.Directory(Get32(b, w.typeEntry + 4));
    w.nameEntry = w.names + 16 + 8; // ids 1, 2, 3: the second entry
    w.languages = l.Directory(Get32(b, w.nameEntry + 4));
    w.dataEntry = l.root + Get32(b, w.languages + 16 + 4);
    return w;
}

class PeReader : public ::testing::Test {
protected:
    void SetUp() override {
        file = QanTest::ReadBytes(QanTest::FixturePath("QanIcons.dll"));
        ASSERT_GT(file.size(), 1024u);
        layout = Locate(file);
        walk = WalkTo2(file, layout);
        ASSERT_EQ(Get32(file, walk.typeEntry), 10u);
        ASSERT_EQ(Get32(file, walk.nameEntry), 2u);
        const std::vector<QanTools::CursorTable::Entry> table{
            {u"Arrow", 7}, {u"Cross", 11},          {u"Cross", 12},
            {u"Hand", 9},  {u"Move\U0001F5B1", 14}, {u"Wait", 13}};
        expected = QanTools::CursorTable::Write(table);
    }
    Bytes Find(const Bytes& bytes, std::uint32_t id = 2) const {
        return QanTest::Bytes(FindPeRawData(bytes, id));
    }
    // Resource 2 of a copy of the fixture after corrupt has damaged it.
    template <class Corrupt>
    Bytes FindIn(Corrupt corrupt) const {
        Bytes bad = file;
        corrupt(bad);
        return Find(bad);
    }

    Bytes file;
    Layout layout;
    Walk walk;
    Bytes expected;
};

TEST_F(PeReader, FindsRawDataResourcesById) {
    EXPECT_TRUE(IsPeImage(file));
    EXPECT_EQ(Find(file, 2), expected);
    EXPECT_EQ(Find(file, 1), (Bytes{std::byte{0x34}, std::byte{0x12}, std::byte{0}, std::byte{0}}));
    EXPECT_EQ(Find(file, 3), (Bytes{std::byte{0x78}, std::byte{0x56}, std::byte{0}, std::byte{0}}));
    EXPECT_TRUE(Find(file, 4).empty());
    EXPECT_TRUE(Find(file, 0x10002).empty());
}

TEST_F(PeReader, ReadsThe32BitOptionalHeaderToo) {
    // PE32 has its data directories 16 bytes earlier; the optional header keeps its size.
    Bytes pe32 = file;
    Put16(pe32, layout.optional, 0x10B);
    std::copy(file.begin() + layout.optional + 108, file.begin() + layout.optional + 108 + 4 + 128,
              pe32.begin() + layout.optional + 92);
    EXPECT_TRUE(IsPeImage(pe32));
    EXPECT_EQ(Find(pe32), expected);
    Put16(pe32, layout.optional, 0x107);
    EXPECT_FALSE(IsPeImage(pe32));
}

TEST_F(PeReader, HeadersThatDoNotLeadToAPeFile) {
    EXPECT_FALSE(IsPeImage({}));
    const std::string text = "MZ is not enough";
    EXPECT_FALSE(IsPeImage(std::as_bytes(std::span(text))));
    for (std::uint32_t lfanew :
         {0xFFFFFFF0u, 0xFFFFFFFFu, static_cast<std::uint32_t>(file.size() - 2)}) {
        Bytes bad = file;
        Put32(bad, 0x3C, lfanew);
        EXPECT_FALSE(IsPeImage(bad)) << lfanew;
        EXPECT_TRUE(Find(bad).empty());
    }
    Bytes noSignature = file;
    noSignature.at(layout.pe + 1) = std::byte{'X'};
    EXPECT_FALSE(IsPeImage(noSignature));
    Bytes noMz = file;
    noMz.at(0) = std::byte{'Z'};
    EXPECT_FALSE(IsPeImage(noMz));
}

TEST_F(PeReader, TruncatedCopiesGiveNothingOrTheWholeResource) {
    const std::size_t dataEnd = [&] {
        const Bytes data = Find(file);
        return static_cast<std::size_t>(
            std::search(file.begin(), file.end(), data.begin(), data.end()) - file.begin() +
            data.size());
    }();
    for (std::size_t length = 0; length < file.size(); length += length < 1024 ? 1 : 61) {
        const Bytes cut(file.begin(), file.begin() + length);
        const Bytes found = Find(cut);
        if (length < dataEnd)
            EXPECT_TRUE(found.empty()) << length;
        else
            EXPECT_EQ(found, expected) << length;
    }
}

TEST_F(PeReader, OffsetsAndSizesPastTheEndGiveNothing) {
    auto expectEmpty = [&](auto corrupt, const char* what) {
        EXPECT_TRUE(FindIn(corrupt).empty()) << what;
    };
    expectEmpty([&](Bytes& b) { Put32(b, layout.optional + 128, 0); }, "no resource directory");
    expectEmpty([&](Bytes& b) { Put32(b, layout.optional + 108, 2); }, "two data directories");
    expectEmpty([&](Bytes& b) { Put32(b, layout.optional + 128, 0xFFFFFF00); },
                "rva past sections");
    expectEmpty([&](Bytes& b) { Put16(b, layout.pe + 6, 0); }, "no sections");
    expectEmpty([&](Bytes& b) { Put32(b, layout.resourceSection + 20, 0xFFFFFF00); },
                "section past the end");
    expectEmpty([&](Bytes& b) { Put32(b, walk.dataEntry, 0xFFFFFFF0); }, "data rva");
    expectEmpty([&](Bytes& b) { Put32(b, walk.dataEntry + 4, 0xFFFFFFFF); }, "data size");
    expectEmpty([&](Bytes& b) { Put32(b, walk.dataEntry + 4, 0); }, "empty data");
    expectEmpty([&](Bytes& b) { Put32(b, walk.nameEntry + 4, 0x8FFFFFF0); }, "name directory");
    expectEmpty([&](Bytes& b) { Put32(b, walk.languages + 16 + 4, 0x0FFFFFF0); }, "data entry");
    expectEmpty([&](Bytes& b) { Put32(b, layout.optional + 132, 8); }, "directory size");
}

TEST_F(PeReader, TheWalkIsExactlyTypeNameLanguage) {
    auto expectEmpty = [&](auto corrupt, const char* what) {
        EXPECT_TRUE(FindIn(corrupt).empty()) << what;
    };
    expectEmpty([&](Bytes& b) { Put32(b, walk.typeEntry, 0x8000000A); }, "type given by name");
    expectEmpty(
        [&](Bytes& b) { Put32(b, walk.typeEntry + 4, Get32(b, walk.typeEntry + 4) & 0xFFFF); },
        "type names a data entry");
    expectEmpty(
        [&](Bytes& b) {
            Put32(b, walk.languages + 16 + 4, 0x80000000 | (walk.languages - layout.root));
        },
        "language names a directory");
}

TEST_F(PeReader, DirectoryLoopsEndTheWalk) {
    const auto names = 0x80000000u | static_cast<std::uint32_t>(walk.names - layout.root);
    const std::pair<std::size_t, std::uint32_t> loops[] = {
        {walk.typeEntry + 4, 0x80000000u}, // the type names the root again
        {walk.nameEntry + 4, 0x80000000u}, // the name goes back to the root
        {walk.nameEntry + 4, names},       // the name names its own directory
    };
    for (const auto& [field, target] : loops) {
        Bytes bad = file;
        Put32(bad, field, target);
        EXPECT_TRUE(Find(bad).empty()) << field << " " << target;
    }
    // A loop that would otherwise end in data: name 2 names its own directory, whose
    // first entry (name 1) is made to name a data entry directly.
    Bytes bad = file;
    const auto languages1 = layout.Directory(Get32(file, walk.names + 16 + 4));
    Put32(bad, walk.names + 16 + 4, Get32(file, languages1 + 16 + 4));
    Put32(bad, walk.nameEntry + 4, names);
    EXPECT_TRUE(Find(bad).empty());
}

TEST_F(PeReader, HugeCountsAreCappedByTheBytesThere) {
    for (std::size_t directory : {walk.types, walk.names, walk.languages}) {
        Bytes big = file;
        Put16(big, directory + 12, 0xFFFF);
        Put16(big, directory + 14, 0xFFFF);
        // The real entries come first, so the walk still succeeds.
        EXPECT_EQ(Find(big), expected) << directory;
    }
    Bytes sections = file;
    Put16(sections, layout.pe + 6, 0xFFFF);
    const Bytes found = Find(sections);
    EXPECT_TRUE(found.empty() || found == expected);
}

} // namespace

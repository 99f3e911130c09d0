// The tools' cursor table library: what it writes is what the library reads, its strict
// reader names what is wrong, and its resource script spells the same bytes.
#include "CursorTableWriter.h"
#include "icons/CursorTable.h"

#include <gtest/gtest.h>

#include <regex>

namespace {
using namespace QanTools::CursorTable;

const std::vector<Entry> kTable{{u"", 1}, {u"Arrow", 7}, {u"Move\U0001F5B1", 0xFFFFFFFF}};

TEST(CursorTableFile, WrittenTablesReadBackComplete) {
    const auto bytes = Write(kTable);
    EXPECT_EQ(bytes.size(), 4 + (4 + 0 + 4) + (4 + 10 + 4) + (4 + 12 + 4));
    const auto read = Read(bytes);
    EXPECT_EQ(read.status, ReadStatus::Complete);
    EXPECT_EQ(read.storedCount, 3);
    EXPECT_EQ(read.entries, kTable);

    const auto library = Framework::Internal::ReadCursorTable(bytes);
    ASSERT_EQ(library.Size(), 3u);
    ASSERT_EQ(library.entries.size(), 3u);
    EXPECT_EQ(library.entries[1].name, L"Arrow");
    EXPECT_EQ(library.entries[2].name, L"Move\U0001F5B1");
    EXPECT_EQ(library.entries[2].id, 0xFFFFFFFFu);
}

TEST(CursorTableFile, StrictReadNamesTheFault) {
    const auto bytes = Write(kTable);
    for (std::size_t length = 1; length < bytes.size(); ++length)
        EXPECT_EQ(Read(std::span(bytes).first(length)).status, ReadStatus::Truncated) << length;
    auto longer = bytes;
    longer.push_back(std::byte{0});
    EXPECT_EQ(Read(longer).status, ReadStatus::TrailingBytes);
    const std::vector<std::byte> negative(4, std::byte{0xFF});
    EXPECT_EQ(Read(negative).status, ReadStatus::NegativeCount);
    EXPECT_EQ(Read(negative).storedCount, -1);
}

TEST(CursorTableFile, ResourceScriptSpellsTheSameBytes) {
    const std::string script = WriteRcScript(kTable);
    ASSERT_EQ(script.find("2 RCDATA"), script.find_first_not_of("/ ", script.find('\n') + 1));
    // Re-assemble the numbers as the resource compiler does: "L" is 32-bit, else 16-bit.
    std::vector<std::byte> bytes;
    const std::regex number(R"((0x[0-9A-Fa-f]+|[0-9]+)(L?))");
    const std::string body = script.substr(script.find('{'));
    for (std::sregex_iterator it(body.begin(), body.end(), number), end; it != end; ++it) {
        const unsigned long value = std::stoul((*it)[1].str(), nullptr, 0);
        const int width = (*it)[2].length() ? 4 : 2;
        for (int i = 0; i < width; ++i)
            bytes.push_back(static_cast<std::byte>(value >> (8 * i) & 0xFF));
    }
    EXPECT_EQ(bytes, Write(kTable));
    EXPECT_EQ(WriteRcScriptForBinary("dir\\cursors \"1\".bin", 2),
              "2 RCDATA \"dir\\\\cursors \\\"1\\\".bin\"\n");
}

} // namespace

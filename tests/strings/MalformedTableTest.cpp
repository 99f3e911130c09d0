// Bad files: any bytes, any length. Scans keep the rows found before the fault and never
// look outside the file's bytes (run under AddressSanitizer to check the second part).
#include "StringTestFiles.h"
#include "strings/CsvKeyTable.h"
#include "strings/XmlStringTable.h"
#include "support/FakePlatform.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

namespace {
using namespace Framework::Internal;
using StringTests::Row;
using StringTests::Rows;

// Serves one byte string as the file, in a buffer of exactly its size, so that a read
// one past the end is caught by the address sanitizer.
class ExactFile {
public:
    ExactFile() {
        platform.readFile = [this](const wchar_t*, std::uint64_t& size) {
            size = bytes.size();
            std::unique_ptr<char[]> buffer(new char[bytes.size()]);
            if (!bytes.empty())
                std::memcpy(buffer.get(), bytes.data(), bytes.size());
            return buffer;
        };
    }
    std::string bytes;

private:
    QanTest::FakePlatform platform;
};

bool Inside(const StringTable& table, std::size_t size, QanStringViewT<char> view) {
    const char* begin = table.buffer.get();
    return view.data() >= begin && view.data() + view.size() <= begin + size;
}

bool StartsWith(const std::vector<Row>& all, const std::vector<Row>& part) {
    return part.size() <= all.size() && std::equal(part.begin(), part.end(), all.begin());
}

const char* const kTextFile = "<?xml version=\"1.0\"?>\n<strings lang=\"en\">\n"
                              "<s id=\"a\">Alpha \"quoted\"</s>\n<s id=\"b\"></s>\n"
                              "<s id=\"c\">multi\nline</s><s id=\"d\">&lt;D&gt;</s>\n</strings>\n";
const char* const kKeyTable = "alpha,1\nbeta,2,3\ngamma,4\r\n,\ndelta,5\n";

TEST(MalformedTextFile, EveryTruncationGivesALeadingPartOfTheRows) {
    ExactFile file;
    const std::string whole = kTextFile;
    StringTable complete;
    file.bytes = whole;
    LoadXmlStringTable(complete, L"t.xml", false);
    const auto all = Rows(complete);
    ASSERT_EQ(all.size(), 4u);

    for (std::size_t length = 0; length <= whole.size(); ++length) {
        file.bytes = whole.substr(0, length);
        StringTable table;
        LoadXmlStringTable(table, L"t.xml", false);
        EXPECT_TRUE(StartsWith(all, Rows(table))) << "truncated at " << length;
    }
}

TEST(MalformedKeyTable, EveryTruncationGivesALeadingPartOfTheRows) {
    ExactFile file;
    const std::string whole = kKeyTable;
    StringTable complete;
    file.bytes = whole;
    LoadCsvKeyTable(complete, L"k.csv");
    const auto all = Rows(complete);
    ASSERT_EQ(all.size(), 5u);

    for (std::size_t length = 0; length <= whole.size(); ++length) {
        file.bytes = whole.substr(0, length);
        StringTable table;
        LoadCsvKeyTable(table, L"k.csv");
        EXPECT_TRUE(StartsWith(all, Rows(table))) << "truncated at " << length;
    }
}

// Random bytes drawn mostly from the scanners' own delimiters, so that every branch of
// the scans is reached. Every row lies inside the file and obeys the grammar.
TEST(MalformedFiles, RandomBytesGiveRowsInsideTheFile) {
    std::mt19937 random(20261122);
    const char alphabet[] = {'\n', '\n', '"', '"',  '<',  '<',   ',',
                             ',',  '>',  'a', '\r', '\0', '\xFF'};
    ExactFile file;
    for (int round = 0; round < 3000; ++round) {
        const std::size_t length = random() % 64;
        file.bytes.clear();
        for (std::size_t i = 0; i < length; ++i)
            file.bytes.push_back(alphabet[random() % sizeof alphabet]);

        StringTable texts;
        LoadXmlStringTable(texts, L"t.xml", round % 2 == 0);
        for (const auto& row : texts.entries) {
            ASSERT_TRUE(Inside(texts, length, row.key) && Inside(texts, length, row.text));
            EXPECT_EQ(row.key.find('"'), QanStringViewT<char>::npos);
            EXPECT_EQ(row.text.find('<'), QanStringViewT<char>::npos);
        }

        StringTable keys;
        LoadCsvKeyTable(keys, L"k.csv");
        for (const auto& row : keys.entries) {
            ASSERT_TRUE(Inside(keys, length, row.key) && Inside(keys, length, row.text));
            EXPECT_EQ(row.key.find(','), QanStringViewT<char>::npos);
            EXPECT_EQ(row.text.find('\n'), QanStringViewT<char>::npos);
        }
    }
}

TEST(MalformedFiles, TinyFilesAndFilesWithoutDelimiters) {
    ExactFile file;
    for (const char* bytes :
         {"", "\n", "\"", "<", ",", "a", "\n\n\"", "\n\n\"\"", "\n\n\"a\"", "no delimiters at all",
          "\n\n\"unpartnered quote <", "key without id,"}) {
        file.bytes = bytes;
        StringTable texts;
        LoadXmlStringTable(texts, L"t.xml", true);
        EXPECT_TRUE(texts.entries.empty()) << bytes;
        StringTable keys;
        LoadCsvKeyTable(keys, L"k.csv");
        EXPECT_TRUE(keys.entries.empty()) << bytes;
    }
}

} // namespace

// StoredTextTest.cpp: the stored-text encoder against the library's decoder. Every text,
// encoded and decoded again, must come back exactly; the files written from encoded texts
// must be what fmt leaves alone, lint-clean, and read back by the library's reader.
#include "StoredText.h"
#include "Format.h"
#include "Lint.h"
#include "StringDirectory.h"
#include "StringFileWriter.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

// Grouped by what the decoder does to them.
const std::vector<std::pair<const char*, std::vector<std::string>>> kAwkwardTexts = {
    {"entities",
     {"&lt;", "a & b", "&amp;lt;", "<tag>", "x > y", "&#65;", "&#x1F600;", "&", "&;",
      "&quot;&apos;"}},
    {"backslashes", {"\\",   "\\\\", "\\\\\\", "a\\",       "\\n", "\\\\n",         "\\r",
                     "\\t",  "\\q",  "\\/\\/", "\\//",      "//",  "C:\\temp\\new", "\\\n",
                     "\\\r", "\\\t", "\\\\\n", "\\n\\r\\t", "n\\", "\\&amp;"}},
    {"controls",
     {"\n", "line1\nline2", "\r\n", "\r", "\t", "a\tb", "\n\n", "\x01",
      "\x01"
      "CT=&Open\x01TT=Tip",
      "\x1f\x7f", "\x0b\x0c", "\x01\\n"}},
    {"unicode",
     {"\xF0\x9F\x98\x80",
      "Gr\xC3\xBC\xC3\x9F"
      "e",
      "\xE6\x97\xA5\xE6\x9C\xAC", "\xF4\x8F\xBF\xBF", "\xEF\xBF\xBD", "\xEF\xBF\xBF"}},
    {"quotes", {"\"quoted\"", "it's", "'\"'", "\"", "id=\"x\">"}},
    {"edges", {"", " ", "  spaces at both ends  ", ">", "<"}},
};

TEST(StoredText, EveryAwkwardTextComesBackExactly) {
    for (const auto& [group, texts] : kAwkwardTexts)
        for (const auto& text : texts) {
            const auto stored = QanTool::EncodeStoredText(text);
            ASSERT_TRUE(stored) << group << ": " << text;
            EXPECT_EQ(QanTool::DecodeStoredText(*stored), text) << group << ": stored " << *stored;
            EXPECT_EQ(stored->find_first_of("<\n\r"), std::string::npos)
                << group << ": " << *stored;
        }
}

// Every text of up to four characters over the characters that escapes are made of: the
// pairs and look-behinds of the decoder cannot hide a case that a table forgot.
TEST(StoredText, EveryShortTextOverTheEscapeAlphabetComesBack) {
    const std::string alphabet = "\\nrt/&<;#1a\n\r\t";
    std::vector<std::string> level{""};
    std::size_t checked = 0;
    for (int length = 1; length <= 4; ++length) {
        std::vector<std::string> next;
        for (const auto& prefix : level)
            for (const char c : alphabet) {
                std::string text = prefix + c;
                const auto stored = QanTool::EncodeStoredText(text);
                ASSERT_TRUE(stored);
                ASSERT_EQ(QanTool::DecodeStoredText(*stored), text) << "stored " << *stored;
                ++checked;
                next.push_back(std::move(text));
            }
        level = std::move(next);
    }
    EXPECT_GT(checked, 40000u);
}

TEST(StoredText, RefusesWhatNoFileCanStore) {
    for (const std::string& text :
         {std::string("a\0b", 3), std::string("\xC3"), std::string("\xFF")})
        EXPECT_FALSE(QanTool::EncodeStoredText(text)) << text.size();
}

TEST(StoredText, WrittenFilesAreCanonicalLintCleanAndReadBack) {
    std::vector<QanTool::StoredString> rows;
    std::vector<std::pair<std::string, std::string>> expected;
    int n = 0;
    for (const auto& [group, texts] : kAwkwardTexts)
        for (const auto& text : texts) {
            // Ids in an order that is not byte order, with characters ids may hold.
            const std::string id = std::string(group) + "#" + std::to_string(100 - n++) + ".x_-";
            rows.push_back({id, *QanTool::EncodeStoredText(text)});
            expected.emplace_back(id, text);
        }
    const std::string file = QanTool::CanonicalStringFile(rows);
    std::string formatted, reason;
    ASSERT_TRUE(QanTool::FormatTextFile(file, formatted, reason)) << reason;
    EXPECT_EQ(formatted, file);

    QanTest::TempDir dir;
    dir.Write("strings.xml", file);
    const auto findings = QanTool::LintDirectory(dir.Path(), "d");
    std::ostringstream printed;
    findings.Print(printed);
    EXPECT_EQ(printed.str(), "");

    const auto read = QanTool::ReadMasterStrings(dir.Path());
    ASSERT_EQ(read.strings.size(), expected.size());
    std::sort(expected.begin(), expected.end());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(read.strings[i].id, expected[i].first);
        EXPECT_EQ(read.strings[i].text, expected[i].second) << expected[i].first;
    }
}

TEST(StoredText, IdsThatCannotStandInAStringElementAreRefused) {
    const std::pair<std::string, bool> rows[] = {{"CAP_BRUSH", true},
                                                 {"po.a_b#1", true},
                                                 {"a,b c", true},
                                                 {"\xC3\xA9t\xC3\xA9", true},
                                                 {"", false},
                                                 {"a\"b", false},
                                                 {"a<b", false},
                                                 {"a&b", false},
                                                 {"a\nb", false},
                                                 {"a\x01"
                                                  "b",
                                                  false},
                                                 {"\xC3", false}};
    for (const auto& [id, writable] : rows)
        EXPECT_EQ(QanTool::IsWritableId(id), writable) << id;
}

} // namespace

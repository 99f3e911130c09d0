// PseudoTest.cpp: pseudo-localised texts keep every part that the library or a host
// interprets, change every other letter, grow by the requested share and still store.
#include "Pseudo.h"
#include "StoredText.h"
#include "base/Unicode.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

struct Row {
    std::string text;
    std::vector<std::string> kept; // in the order they must appear in the result
};

std::size_t Length(const std::string& utf8) {
    return Framework::Unicode::DecodeScalars(utf8).size();
}

std::size_t AsciiLetters(std::string_view s) {
    std::size_t n = 0;
    for (char c : s)
        n += (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    return n;
}

TEST(Pseudo, KeepsWhatIsInterpretedAndGrowsTheRest) {
    const Row rows[] = {
        // Placeholders.
        {"Copied %d files to %s", {"%d", "%s"}},
        {"%1$s of %2$d (%-5.2f%%) %ls %lld %3",
         {"%1$s", "%2$d", "%-5.2f", "%%", "%ls", "%lld", "%3"}},
        {"Page {0} of {1}", {"{0}", "{1}"}},
        // "% s" is a placeholder (flag " ") in printf: kept rather than risked.
        {"100% sure", {"100", "% s"}},
        // Mnemonics and accelerators.
        {"&Open...\tCtrl+O", {"&O", "\tCtrl+O"}},
        {"Save && &Exit", {"&&", "&E"}},
        {"&%s and &{0}", {"&%s", "&{0}"}},
        // Line feeds, carriage returns, tagged fields.
        {"First line\nSecond line\r\nThird", {"\n", "\r\n"}},
        {"\x01"
         "CT=&Save\x01TT=Saves the picture\x01LP=",
         {"\x01"
          "CT=",
          "&S", "\x01TT=", "\x01LP="}},
        // Characters that were entities in the file: plain characters here.
        {"<b> & \"x\" 'y' \\n", {"<", ">", "&", "\"", "\\"}},
        {"\xF0\x9F\x98\x80 smile", {"\xF0\x9F\x98\x80"}},
    };
    for (const int percent : {0, 35, 100}) {
        for (const auto& row : rows) {
            const std::string out = QanTool::PseudoLocalise(row.text, percent);
            std::size_t at = 0, keptLetters = 0;
            for (const auto& part : row.kept) {
                const std::size_t found = out.find(part, at);
                ASSERT_NE(found, std::string::npos) << part << " in " << out;
                at = found + part.size();
                keptLetters += AsciiLetters(part);
            }
            EXPECT_EQ(AsciiLetters(out), keptLetters) << out;
            EXPECT_GE(Length(out) * 100, Length(row.text) * static_cast<std::size_t>(100 + percent))
                << out;
            for (const char c : {'\x01', '\n', '\r', '\t'})
                EXPECT_EQ(std::count(out.begin(), out.end(), c),
                          std::count(row.text.begin(), row.text.end(), c))
                    << out;
            EXPECT_NE(out.find('['), std::string::npos) << out;
            EXPECT_EQ(QanTool::DecodeStoredText(*QanTool::EncodeStoredText(out)), out);
        }
    }
}

TEST(Pseudo, TaggedFieldsStayFindableWithTheirValuesBracketed) {
    const std::string out = QanTool::PseudoLocalise("\x01"
                                                    "CT=Open\x01TT=Tip",
                                                    35);
    ASSERT_EQ(out.rfind("\x01"
                        "CT=[",
                        0),
              0u)
        << out;
    const std::size_t tt = out.find("\x01TT=[");
    ASSERT_NE(tt, std::string::npos) << out;
    EXPECT_EQ(out.back(), ']');
    EXPECT_EQ(out[tt - 1], ']');
}

TEST(Pseudo, TextsWithoutLettersToChangeStayAsTheyAre) {
    for (const std::string_view text : {"", "\n", "\r\n\n",
                                        "\x01"
                                        "CT=",
                                        "\x01"
                                        "CT=\x01TT="})
        EXPECT_EQ(QanTool::PseudoLocalise(text, 35), text);
}

} // namespace

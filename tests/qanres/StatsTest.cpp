// qanres stats and compare: the interpreted parts of a text, the counts per language and
// kind, and the comparison in both output forms.
#include "Stats.h"
#include "TextFeatures.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {
using namespace QanTool;

TEST(TextFeatures, WhatATranslationMustKeep) {
    const struct {
        const char* source;
        const char* target;
        const char* difference; // empty: they agree
    } rows[] = {
        {"%s of %d", "%s von %d", ""},
        {"%s of %d", "%d von %s", "printf placeholders %s %d vs %d %s"},
        {"%1$s of %2$d", "%2$d von %1$s", ""}, // positional: any order
        {"100%% %s", "100 %% %s", ""},         // %% is a literal percent
        {"%-5.2f %ld %zu", "%-5.2f %ld", "printf placeholders %-5.2f %ld %zu vs %-5.2f %ld"},
        {"{0} of {1}", "{1} von {0}", ""},
        {"{0} of {1}", "{0} von", "{n} placeholders {0} {1} vs {0}"},
        {"&Open", "&Offnen", ""},
        {"&Open", "Offnen", "mnemonic '&' 1 vs 0"},
        {"Salt && pepper", "Salz && Pfeffer", ""}, // && is a literal ampersand
        {"\x01"
         "CT=a\x01"
         "TT=b",
         "\x01"
         "CT=x\x01"
         "TT=y",
         ""},
        {"\x01"
         "CT=a\x01"
         "TT=b",
         "\x01"
         "TT=y\x01"
         "CT=x",
         "tagged fields CT TT vs TT CT"},
        {"a\nb\tc", "a\nb c", "tabs 1 vs 0"},
        {"a\r\nb", "a\nb", "carriage returns 1 vs 0"},
    };
    for (const auto& row : rows) {
        const auto differences = FeatureDifferences(Features(row.source), Features(row.target));
        if (*row.difference == '\0')
            EXPECT_TRUE(differences.empty()) << row.source << " | " << row.target << ": "
                                             << (differences.empty() ? "" : differences[0]);
        else
            EXPECT_EQ(differences, std::vector<std::string>{row.difference})
                << row.source << " | " << row.target;
    }
}

// English is complete; German lacks one text, leaves one as English and breaks a
// placeholder; a caption key names an id that no language has.
class TwoLanguages : public ::testing::Test {
protected:
    TwoLanguages() {
        const char* head = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<strings>\n";
        en.Write("strings.xml", std::string(head) + "<s id=\"CAP_OPEN\">&amp;Open</s>\n"
                                                    "<s id=\"CAP_SAVE\">&amp;Save</s>\n"
                                                    "<s id=\"STR_COUNT\">%d files</s>\n"
                                                    "<s id=\"STR_OK\">OK</s>\n</strings>\n");
        de.Write("strings.xml", std::string(head) + "<s id=\"CAP_OPEN\">&amp;Offnen</s>\n"
                                                    "<s id=\"STR_COUNT\">Dateien</s>\n"
                                                    "<s id=\"STR_EXTRA\">mehr</s>\n"
                                                    "<s id=\"STR_OK\">OK</s>\n</strings>\n");
        res.Write("caption.csv", "File.Open,CAP_FILE_OPNE\nFile.Save,CAP_SAVE\n");
        res.Write("string.csv", "Count,STR_COUNT\nOk,STR_OK\n");
    }
    QanTest::TempDir en, de, res;
};

TEST_F(TwoLanguages, StatsCountAnsweredMissingAndIdenticalKeysPerKind) {
    const auto stats = ComputeStats(ReadKeyTables(res.Path()),
                                    {ReadLanguage(en.Path(), "en"), ReadLanguage(de.Path(), "de")});
    ASSERT_EQ(stats.size(), 2u);
    EXPECT_EQ(stats[0].texts, 4u);
    EXPECT_EQ(stats[1].texts, 4u);
    const auto counts = [](const KindStats& k) {
        return std::vector<std::size_t>{k.keys, k.answered, k.missing, k.identical};
    };
    EXPECT_EQ(counts(stats[0].kinds[0]), (std::vector<std::size_t>{2, 2, 0, 0}));
    EXPECT_EQ(counts(stats[0].kinds[1]), (std::vector<std::size_t>{2, 1, 1, 0})); // the typo
    EXPECT_EQ(counts(stats[1].kinds[0]), (std::vector<std::size_t>{2, 2, 0, 1})); // OK = OK
    EXPECT_EQ(counts(stats[1].kinds[1]), (std::vector<std::size_t>{2, 0, 2, 0}));
    EXPECT_EQ(counts(stats[1].kinds[3]), (std::vector<std::size_t>{0, 0, 0, 0}));
}

TEST_F(TwoLanguages, CompareListsTheSameFindingsAsTextAndAsJson) {
    const auto comparison = Compare(ReadLanguage(en.Path(), "en"), ReadLanguage(de.Path(), "de"));
    EXPECT_EQ(comparison.missing, std::vector<std::string>{"CAP_SAVE"});
    EXPECT_EQ(comparison.extra, std::vector<std::string>{"STR_EXTRA"});
    EXPECT_EQ(comparison.identical, std::vector<std::string>{"STR_OK"});
    ASSERT_EQ(comparison.differing.size(), 1u);
    EXPECT_EQ(comparison.differing[0].first, "STR_COUNT");

    std::ostringstream text, json;
    EXPECT_EQ(PrintComparison(comparison, false, text), 1);
    EXPECT_EQ(PrintComparison(comparison, true, json), 1);
    EXPECT_EQ(text.str(), "missing CAP_SAVE\nextra STR_EXTRA\nidentical STR_OK\n"
                          "differs STR_COUNT: printf placeholders %d vs none\n"
                          "de against en: 1 missing, 1 extra, 1 identical, 1 with differing "
                          "placeholders, mnemonics, fields or escapes\n");
    EXPECT_EQ(json.str(), "{\"source\":\"en\",\"target\":\"de\",\"missing\":[\"CAP_SAVE\"],"
                          "\"extra\":[\"STR_EXTRA\"],\"identical\":[\"STR_OK\"],\"differing\":"
                          "[{\"id\":\"STR_COUNT\",\"differences\":[\"printf placeholders %d vs "
                          "none\"]}]}\n");
    std::ostringstream same;
    EXPECT_EQ(PrintComparison(Compare(ReadLanguage(en.Path(), "en"), ReadLanguage(en.Path(), "en")),
                              false, same),
              0);
}

} // namespace

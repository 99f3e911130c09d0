// A product checked as the library reads it: key tables in one directory, each language's
// texts in its own, or a tree lint recognises; names the library never reads; the summary
// and the JSON form of the same findings.
#include "Json.h"
#include "Lint.h"
#include "LintChecks.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {
using namespace QanTool;

std::string Strings(const std::string& body) {
    return "<?xml version=\"1.0\"?>\n<strings>\n" + body + "</strings>\n";
}

std::vector<std::string> Lines(const DiagnosticList& findings, const std::string& root) {
    std::vector<std::string> lines;
    for (const Diagnostic* d : findings.Sorted()) {
        std::string line = Format(*d);
        if (line.rfind(root, 0) == 0)
            line.erase(0, root.size());
        lines.push_back(line);
    }
    return lines;
}

// res/ holds the key tables; strings/en is the source language and strings/de lacks a
// text; a caption key names a misspelt id.
class LintedProduct : public ::testing::Test {
protected:
    LintedProduct() {
        root.Write("res/caption.csv", "File.Open,CAP_FILE_OPNE\nFile.Save,CAP_SAVE\n");
        root.Write("strings/en/strings.xml",
                   Strings("<s id=\"CAP_OPEN\">Open</s>\n<s id=\"CAP_SAVE\">Save</s>\n"));
        root.Write("strings/de/strings.xml", Strings("<s id=\"CAP_OPEN\">Offnen</s>\n"));
    }
    LintDirectoryRef Dir(const std::string& relative) const {
        return {root.Path() / relative, relative};
    }
    QanTest::TempDir root;
    const std::vector<std::string> expected = {
        "res/caption.csv:1:11: error: id 'CAP_FILE_OPNE' has a text in no language: the key is "
        "answered with an empty text",
        "res/caption.csv:2:11: error: id 'CAP_SAVE' has no text in strings/de: there the key is "
        "answered with an empty text",
        "strings/en/strings.xml:3:1: warning: text 'CAP_OPEN' is reached by no key of the key "
        "tables"};
};

TEST_F(LintedProduct, EveryKeyIdIsCheckedAgainstEveryLanguage) {
    const auto outcome = Lint({.directories = {},
                               .resources = Dir("res"),
                               .languages = {Dir("strings/en"), Dir("strings/de")}});
    EXPECT_EQ(Lines(outcome.findings, ""), expected);
    EXPECT_EQ(Summary(outcome), "checked 3 files in 3 directories: 2 errors, 1 warning (source "
                                "language: strings/en)");
}

TEST_F(LintedProduct, ATreeIsRecognisedWithEnglishAsTheSource) {
    const auto outcome =
        Lint({.directories = {{root.Path(), ""}}, .resources = {}, .languages = {}});
    EXPECT_EQ(Lines(outcome.findings, ""), expected);
    EXPECT_EQ(outcome.sourceLanguage, "strings/en");
}

TEST_F(LintedProduct, TheJsonHoldsTheSameFindingsAndCounts) {
    const auto outcome = Lint({.directories = {},
                               .resources = Dir("res"),
                               .languages = {Dir("strings/en"), Dir("strings/de")}});
    const std::string json = FindingsAsJson(outcome);
    EXPECT_EQ(json.rfind("{\"files\":3,\"directories\":3,\"errors\":2,\"warnings\":1,", 0), 0u)
        << json;
    for (const Diagnostic* d : outcome.findings.Sorted())
        EXPECT_NE(json.find("{\"file\":" + JsonString(d->file) +
                            ",\"line\":" + std::to_string(d->line) +
                            ",\"column\":" + std::to_string(d->column) + ",\"severity\":\"" +
                            (d->severity == Severity::Error ? "error" : "warning") +
                            "\",\"message\":" + JsonString(d->message) + "}"),
                  std::string::npos)
            << Format(*d) << "\n"
            << json;
}

TEST(LintNames, FilesTheLibraryNeverReadsAndDirectoriesWithoutAnyAreReported) {
    QanTest::TempDir root;
    root.Write("res/string.csv", "k,A\n");
    root.Write("res/captions.csv", "k,A\n");
    root.Write("res/tooltipheader.csv", "k,A\n");
    root.Write("res/Strings.xml", Strings("<s id=\"A\">a</s>\n"));
    root.Write("res/notes.txt", "todo\n");
    root.Write("res/.hidden", "");
    std::filesystem::create_directories(root.Path() / "empty");
    const auto outcome =
        Lint({.directories = {{root.Path() / "res", "res"}, {root.Path() / "empty", "empty"}},
              .resources = {},
              .languages = {}});
    std::vector<std::string> expected{
        "empty: error: no resource file here or below: the library would read nothing (it "
        "looks for startupstrings.xml, strings.xml, the key tables *.csv, icons.map.xml)",
        "res: warning: no language given: the key tables' ids were not checked against texts "
        "(name each language with --master-strings DIR)",
        "res/Strings.xml: warning: the library reads 'strings.xml' and finds this file only "
        "where names ignore case (Windows): rename it",
        "res/captions.csv: warning: unknown file: the library reads no file of this name; did "
        "you mean 'caption.csv'?",
        "res/notes.txt: warning: unknown file: the library reads no file of this name",
        "res/tooltipheader.csv: warning: the library reads 'tooltipHeader.csv' and finds this "
        "file only where names ignore case (Windows): rename it"};
#ifdef _WIN32
    // Where names ignore case, Strings.xml is read as strings.xml: res holds a language.
    std::erase_if(expected, [](const std::string& line) { return line.rfind("res: ", 0) == 0; });
#endif
    EXPECT_EQ(Lines(outcome.findings, ""), expected);
}

// The formats page lists every check that lint's help lists.
TEST(LintChecks, TheFormatsPageDescribesEveryCheck) {
    const std::string page = QanTest::ReadAll(QANRES_FORMATS_PAGE);
    for (const LintCheck& check : kLintCheckList) {
        std::string finding = check.finding;
        for (std::size_t at = 0; (at = finding.find('|', at)) != std::string::npos; at += 2)
            finding.replace(at, 1, "\\|");
        EXPECT_NE(page.find(finding), std::string::npos) << finding;
        EXPECT_NE(LintChecksHelp().find(check.finding), std::string::npos) << check.finding;
    }
}

} // namespace

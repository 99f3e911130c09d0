// CatalogueTest.cpp: PO and XLIFF catalogues written and read back, and the import rules
// for catalogues that export did not write: ids, plural forms, fuzzy, untranslated and
// obsolete messages, and the files that no import may accept.
#include "Import.h"
#include "Po.h"
#include "Translate.h"
#include "Xliff.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

const std::vector<std::string> kTexts = {"",
                                         "plain",
                                         "&Open...\tCtrl+O",
                                         "a\nb\n",
                                         "\n",
                                         "ends\n",
                                         "\r\n",
                                         "\x01",
                                         "\x01"
                                         "CT=&Save\x01TT=Saves it",
                                         "\\n literal",
                                         "C:\\new\\",
                                         "\"q\" 'a'",
                                         "<b>&amp;</b>",
                                         "\x7f\x1f\x0b",
                                         "\xF0\x9F\x98\x80 \xE2\x82\xAC",
                                         "%1$s {0}",
                                         "\x01"
                                         "2",
                                         "tab\tand\\\t",
                                         "\xEF\xBF\xBE"};

QanTool::Catalogue Awkward(bool translated) {
    QanTool::Catalogue c;
    c.sourceLanguage = "en";
    c.targetLanguage = translated ? "de" : "";
    int n = 0;
    for (const auto& text : kTexts) {
        QanTool::CatalogueEntry e;
        e.id = "ID." + std::to_string(n++);
        e.source = "src:" + text;
        e.target = text;
        e.hasTarget = translated;
        e.notes = {"caption: key-" + e.id, "string: k\\\"ey"};
        c.entries.push_back(e);
    }
    return c;
}

std::map<std::string, std::string> ById(const QanTool::ImportResult& r) {
    std::map<std::string, std::string> m;
    for (const auto& s : r.strings)
        m[s.id] = s.text;
    return m;
}

TEST(Catalogue, PoAndXliffCarryEveryTextBackExactly) {
    for (const bool translated : {true, false}) {
        const auto catalogue = Awkward(translated);
        const auto po = QanTool::ReadPo(QanTool::WritePo(catalogue));
        ASSERT_EQ(po.error, "");
        const auto fromPo = ById(QanTool::ImportPo(po, {}));
        const auto xliff = QanTool::ReadXliff(QanTool::WriteXliff(catalogue));
        ASSERT_EQ(xliff.error, "");
        const auto fromXliff = ById(QanTool::ImportCatalogue(xliff.catalogue, {}));
        ASSERT_EQ(fromPo.size(), kTexts.size());
        ASSERT_EQ(fromXliff.size(), kTexts.size());
        for (const auto& e : catalogue.entries) {
            // A template gives the source text back; a translation gives the target.
            const std::string& expected = translated ? e.target : e.source;
            EXPECT_EQ(fromPo.at(e.id), expected) << "po " << e.id;
            EXPECT_EQ(fromXliff.at(e.id), expected) << "xliff " << e.id;
        }
        EXPECT_EQ(xliff.catalogue.targetLanguage, catalogue.targetLanguage);
        EXPECT_EQ(xliff.catalogue.entries.front().notes, catalogue.entries.front().notes);
    }
}

TEST(Catalogue, XliffWritesWhatXmlCannotCarryAsCodePoints) {
    QanTool::Catalogue c;
    c.entries.push_back({"a b", "\x01x\r", "\x1f", true, {}});
    c.entries.push_back({"u1", "taken", "", false, {}});
    const std::string xml = QanTool::WriteXliff(c);
    EXPECT_NE(xml.find("<source><cp hex=\"0001\"/>x&#13;</source>"), std::string::npos) << xml;
    EXPECT_NE(xml.find("<target><cp hex=\"001F\"/></target>"), std::string::npos) << xml;
    // Not a name token: the unit id is the first free number, the string id is its name.
    EXPECT_NE(xml.find("<unit id=\"u2\" name=\"a b\">"), std::string::npos) << xml;
}

TEST(Catalogue, XliffFromOtherToolsAndItsRefusals) {
    const std::string head = "<?xml version=\"1.0\"?><xliff xmlns=\"urn:oasis:names:tc:xliff:"
                             "document:2.0\" version=\"2.0\" srcLang=\"en\" trgLang=\"fr\"><file "
                             "id=\"f\">";
    const std::string tail = "</file></xliff>";
    const std::pair<std::string, std::string> good[] = {
        {"<unit id=\"u\"><segment><source>a</source><target><![CDATA[<x>&]]></target></segment>"
         "</unit>",
         "<x>&"},
        {"<unit id=\"u\"><segment><source>a</source><target>one </target></segment><ignorable>"
         "<source> </source></ignorable><segment><source>b</source><target><pc id=\"1\">two"
         "</pc>&#13;</target></segment></unit>",
         "one two\r"},
    };
    for (const auto& [body, text] : good) {
        const auto read = QanTool::ReadXliff(head + body + tail);
        ASSERT_EQ(read.error, "") << body;
        ASSERT_EQ(read.catalogue.entries.size(), 1u);
        EXPECT_EQ(read.catalogue.entries[0].target, text);
    }
    const std::pair<std::string, std::string> bad[] = {
        {head + "<unit id=\"u\"><segment><source>a<ph id=\"1\"/></source></segment></unit>" + tail,
         "line 1: inline <ph>"},
        {head + "<unit id=\"u\"><segment><source><cp hex=\"0\"/></source></segment></unit>" + tail,
         "line 1: <cp>"},
        {head + "<unit id=\"u\"><segment><target>a</target></segment></unit>" + tail,
         "line 1: unit u has no <source>"},
        {head + "<unit id=\"u\">", "line 1: "},
        {"<xliff version=\"1.2\"/>", "line 1: not an XLIFF 2"},
    };
    for (const auto& [doc, message] : bad) {
        const auto read = QanTool::ReadXliff(doc);
        EXPECT_EQ(read.error.rfind(message, 0), 0u) << read.error;
        EXPECT_TRUE(read.catalogue.entries.empty());
    }
}

TEST(Catalogue, Fnv1a64MatchesTheReferenceValues) {
    EXPECT_EQ(QanTool::Fnv1a64(""), 0xcbf29ce484222325ull);
    EXPECT_EQ(QanTool::Fnv1a64("a"), 0xaf63dc4c8601ec8cull);
    EXPECT_EQ(QanTool::Fnv1a64("foobar"), 0x85944171f73967e8ull);
}

std::string Hash(std::string_view bytes) {
    std::ostringstream hex;
    hex << std::hex << std::setw(16) << std::setfill('0') << QanTool::Fnv1a64(bytes);
    return hex.str();
}

TEST(Catalogue, ForeignPoFilesGetStableIdsAndStatedTreatment) {
    const std::string po = R"(# translator comment
msgid ""
msgstr ""
"Content-Type: text/plain; charset=UTF-8\n"
"Language: de\n"

#: src/file.c:10
#, c-format
msgid "File %s not found"
msgstr "Datei %s nicht gefunden"

msgctxt "menu"
msgid "Open"
msgstr "Öffnen"

msgid "a b"
msgstr "eins"

msgid "a-b"
msgstr "zwei"

#, fuzzy
msgid "Close"
msgstr "Schliessen"

msgid "Untranslated"
msgstr ""

msgid "one file"
msgid_plural "%d files"
msgstr[0] "eine Datei"
msgstr[1] "%d Dateien"

msgid "Escapes\101\x42\t"
msgstr "\101\x42\a"

msgid "This message is long enough that its slug has to be cut at forty-eight bytes"
msgstr "lang"

msgid "!!!"
msgstr "x"

#~ msgid "old"
#~ msgstr "alt"
)";
    const auto file = QanTool::ReadPo(po);
    ASSERT_EQ(file.error, "");
    const std::string longId = "This message is long enough that its slug has to be cut at "
                               "forty-eight bytes";
    for (const bool keepFuzzy : {false, true}) {
        QanTool::ImportOptions options;
        options.keepFuzzy = keepFuzzy;
        const auto result = QanTool::ImportPo(file, options);
        ASSERT_EQ(result.error, "");
        const std::map<std::string, std::string> expected = {
            {"po.File_s_not_found", "Datei %s nicht gefunden"},
            {"po.menu.Open", "\xC3\x96"
                             "ffnen"},
            {"po.a_b." + Hash("a b"), "eins"},
            {"po.a_b." + Hash("a-b"), "zwei"},
            {"po.Close", keepFuzzy ? "Schliessen" : "Close"},
            {"po.Untranslated", "Untranslated"},
            {"po.one_file#0", "eine Datei"},
            {"po.one_file#1", "%d Dateien"},
            {"po.EscapesAB", "AB\a"},
            {"po.This_message_is_long_enough_that_its_slug_has_to." + Hash(longId), "lang"},
            {"po._", "x"},
        };
        EXPECT_EQ(ById(result), expected);
        std::string summary;
        for (const auto& line : result.summary)
            summary += line + "\n";
        EXPECT_NE(summary.find("1 obsolete message (#~) dropped"), std::string::npos) << summary;
        EXPECT_NE(summary.find("1 plural message as 2 strings"), std::string::npos) << summary;
        EXPECT_NE(summary.find("c-format 1"), std::string::npos) << summary;
        EXPECT_NE(
            summary.find(keepFuzzy ? "1 fuzzy translation kept" : "1 fuzzy translation dropped"),
            std::string::npos)
            << summary;
    }
    QanTool::ImportOptions skip;
    skip.skipUntranslated = true;
    const auto skipped = ById(QanTool::ImportPo(file, skip));
    EXPECT_EQ(skipped.count("po.Untranslated"), 0u);
    EXPECT_EQ(skipped.count("po.Close"), 0u);
}

TEST(Catalogue, BrokenPoFilesAreRefusedWithTheirLine) {
    const std::pair<std::string, std::string> rows[] = {
        {"msgid \"a\nmsgstr \"\"\n", "line 1: unterminated string"},
        {"msgstr \"a\"\n", "line 1: msgstr without msgid"},
        {"msgid \"a\"\nmsgfoo \"b\"\n", "line 2: unknown keyword msgfoo"},
        {"msgid \"a\"\nmsgstr \"\\0\"\n", "line 2: a zero or out-of-range"},
        {"msgid \"a\"\nmsgstr \"\\q\"\n", "line 2: unknown escape \\q"},
        {"msgid \"a\"\n\"b\" x\nmsgstr \"\"\n", "line 2: text after the closing quote"},
        {"msgid \"a\"\n", "line 1: message without msgstr"},
        {"msgid \"a\"\nmsgstr[0] \"b\"\n", "line 2: msgstr[N] without msgid_plural"},
        {"\"a\"\n", "line 1: a string outside a message"},
    };
    for (const auto& [text, message] : rows) {
        const auto file = QanTool::ReadPo(text);
        EXPECT_EQ(file.error.rfind(message, 0), 0u) << text << " gave " << file.error;
        EXPECT_TRUE(file.entries.empty());
    }
    const auto latin1 =
        QanTool::ReadPo("msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=ISO-8859-1\\n\"\n");
    ASSERT_EQ(latin1.error, "");
    EXPECT_NE(QanTool::ImportPo(latin1, {}).error.find("msgconv"), std::string::npos);
    const auto ownWithoutContext = QanTool::ReadPo(
        "msgid \"\"\nmsgstr \"X-Qanres-Ids: msgctxt\\n\"\n\nmsgid \"a\"\nmsgstr \"b\"\n");
    EXPECT_EQ(QanTool::ImportPo(ownWithoutContext, {}).error.rfind("line 4: ", 0), 0u);
}

TEST(Catalogue, AnEmptyTranslationIsToldApartFromAnUntranslatedMessage) {
    QanTool::Catalogue c;
    c.entries.push_back({"EMPTY", "Source", "", true, {}});
    c.entries.push_back({"MISSING", "Source", "", false, {}});
    c.entries.push_back({"BOTH_EMPTY", "", "", true, {}});
    for (const std::string& document : {QanTool::WritePo(c), QanTool::WriteXliff(c)}) {
        const bool po = document[0] == '#';
        const auto result =
            po ? QanTool::ImportPo(QanTool::ReadPo(document), {})
               : QanTool::ImportCatalogue(QanTool::ReadXliff(document).catalogue, {});
        const std::map<std::string, std::string> expected = {
            {"EMPTY", ""}, {"MISSING", "Source"}, {"BOTH_EMPTY", ""}};
        EXPECT_EQ(ById(result), expected) << document;
    }
}

TEST(Catalogue, StartupFileKeepsItsIdsWithTheImportedTexts) {
    QanTool::StringFiles files;
    const std::map<std::string, std::string> startup = {{"A", "old a"}, {"Z", "old &amp; z"}};
    ASSERT_EQ(QanTool::BuildStringFiles({{"B", "b"}, {"A", "new <a>"}}, startup, files), "");
    EXPECT_EQ(*files.startup, "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<strings>\n"
                              "  <s id=\"A\">new &lt;a&gt;</s>\n  <s id=\"Z\">old &amp; z</s>\n"
                              "</strings>\n");
    EXPECT_EQ(files.full, "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<strings>\n"
                          "  <s id=\"A\">new &lt;a&gt;</s>\n  <s id=\"B\">b</s>\n"
                          "  <s id=\"Z\">old &amp; z</s>\n</strings>\n");
    EXPECT_EQ(files.startupKept, 1u);
    EXPECT_NE(QanTool::BuildStringFiles({{"bad\"id", "x"}}, std::nullopt, files), "");
    EXPECT_NE(QanTool::BuildStringFiles({{"ok", std::string("a\0b", 3)}}, std::nullopt, files), "");
}

TEST(Catalogue, LanguageFromDirectoryName) {
    const std::pair<const char*, const char*> rows[] = {
        {"/x/de", "de"},   {"/x/pt_BR", "pt_BR"}, {"/x/sr-Latn/", "sr-Latn"},
        {"/x/fil", "fil"}, {"/x/resources", ""},  {"/x/d", ""},
        {"/x/de_", ""},    {"/x/DE", ""}};
    for (const auto& [dir, language] : rows)
        EXPECT_EQ(QanTool::LanguageOfDirectory(dir), language) << dir;
}

} // namespace

namespace {

// Cut files are read or refused with a reason, never half-read: run under the sanitizers
// this also shows that no prefix reads out of bounds.
TEST(Catalogue, EveryCutFileIsReadOrRefused) {
    const auto catalogue = Awkward(true);
    const std::string po = QanTool::WritePo(catalogue);
    const std::string xliff = QanTool::WriteXliff(catalogue);
    std::size_t refusedPo = 0, refusedXliff = 0;
    for (std::size_t n = 0; n < po.size(); ++n) {
        const auto file = QanTool::ReadPo(po.substr(0, n));
        EXPECT_TRUE(file.error.empty() || file.entries.empty()) << n;
        refusedPo += !file.error.empty();
    }
    const std::size_t rootClosed = xliff.rfind('>');
    for (std::size_t n = 0; n < rootClosed; ++n) {
        const auto file = QanTool::ReadXliff(xliff.substr(0, n));
        EXPECT_FALSE(file.error.empty()) << n; // the root is not closed yet
        EXPECT_TRUE(file.catalogue.entries.empty()) << n;
        refusedXliff += !file.error.empty();
    }
    EXPECT_GT(refusedPo, 0u);
    EXPECT_EQ(refusedXliff, rootClosed);
    EXPECT_EQ(QanTool::ReadXliff(xliff.substr(0, rootClosed + 1)).catalogue.entries.size(),
              catalogue.entries.size());
}

} // namespace

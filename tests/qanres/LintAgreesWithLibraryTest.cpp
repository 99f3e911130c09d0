// LintAgreesWithLibraryTest.cpp: the checker's word on what the library reads, held against
// real look-ups through the public interface on a directory made of the same bytes. The
// rows as their author wrote them are the probes: every row the checker lets pass must be
// answered with its text, every row it says the library loses or misreads must not be.
#include "Format.h"
#include "KeyTable.h"
#include "Lint.h"
#include "TextFile.h"

#include "base/Settings.h"
#include "base/Unicode.h"
#include "service/ResourcesImpl.h"
#include "strings/DecodeStringText.h"

#include "support/TempDir.h"

#include <framework/Resources.h>

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace {
using Framework::Resources;
using Framework::Internal::IResources;
using Framework::Internal::ProcessSettings;
using Framework::Internal::ResourcesImpl;
using Framework::Internal::Settings;

std::string Text(const std::string& body) {
    return "<?xml version=\"1.0\"?>\n<strings>\n" + body + "</strings>\n";
}
std::string One(const std::string& text) {
    return Text("<s id=\"A\">" + text + "</s>\n");
}

// The built-in service, made fresh from the directory and installed for the look-ups.
class Library {
public:
    explicit Library(const QanTest::TempDir& dir) {
        ProcessSettings() = Settings{};
        ProcessSettings().masterStringDirectory = dir.Wide();
        ProcessSettings().resourceDirectory = dir.Wide();
        service = std::make_unique<ResourcesImpl>();
        IResources::SetResourcesForTests(service.get());
    }
    ~Library() {
        IResources::SetResourcesForTests(nullptr);
        ProcessSettings() = Settings{};
    }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    static std::wstring Get(std::string_view key) {
        return Resources::GetString(Framework::Utf8::Decode(key));
    }

private:
    std::unique_ptr<ResourcesImpl> service;
};

// What lint says about one file: the lines holding an error, and whether an error speaks
// for every row (one about the whole file, or an order that makes look-ups miss).
struct LintWord {
    std::set<int> errorLines, warningLines;
    bool wholeFile = false;
    std::string all;

    LintWord(const QanTool::DiagnosticList& list, const std::string& file) {
        for (const auto& d : list.All()) {
            all += QanTool::Format(d) + "\n";
            if (d.file != file)
                continue;
            if (d.severity == QanTool::Severity::Warning) {
                warningLines.insert(d.line);
                continue;
            }
            errorLines.insert(d.line);
            if ((d.line == 1 && d.column == 1) ||
                d.message.find("out of order") != std::string::npos)
                wholeFile = true;
        }
    }
    bool Flags(int line) const { return wholeFile || errorLines.count(line) != 0; }
};

// One row as written, with the answer its author means a host to get (none when the row
// names an id that has no text).
struct Probe {
    std::string key;
    std::optional<std::wstring> wanted;
    int line = 0;
    QanTool::Reading reading = QanTool::Reading::NotRead;
};

struct Tally {
    int answered = 0, refused = 0;
};

// The agreement on one directory: a row that lint lets pass, and that the library reads as
// written, is answered with its text; a row the library reads otherwise than written is
// flagged by lint and not answered with its text.
void ExpectAgreement(const QanTest::TempDir& dir, const std::string& file,
                     const std::vector<Probe>& probes, const std::string& input, Tally& tally) {
    const LintWord lint(QanTool::LintDirectory(dir.Path(), ""), file);
    const Library library(dir);
    std::set<std::string> seen;
    for (const auto& probe : probes) {
        const std::string where = "input " + ::testing::PrintToString(input) + ", line " +
                                  std::to_string(probe.line) + ", key '" + probe.key +
                                  "'\nlint gave:\n" + lint.all;
        const std::wstring answer = Library::Get(probe.key);
        if (!seen.insert(probe.key).second) {
            // A later row of the same key or id: lint says the first is used.
            EXPECT_TRUE(lint.Flags(probe.line) || lint.warningLines.count(probe.line)) << where;
            continue;
        }
        if (probe.reading == QanTool::Reading::Kept && !lint.Flags(probe.line)) {
            ++tally.answered;
            ASSERT_TRUE(probe.wanted.has_value()) << "lint passes a row without text: " << where;
            EXPECT_EQ(answer, *probe.wanted) << where;
        } else if (probe.reading != QanTool::Reading::Kept) {
            ++tally.refused;
            EXPECT_TRUE(lint.Flags(probe.line)) << "lint misses a lost row: " << where;
            // An empty text cannot be told from a miss.
            if (probe.wanted && !probe.wanted->empty()) {
                EXPECT_NE(answer, *probe.wanted) << "the library answers a lost row: " << where;
            }
        }
    }
}

TEST(LintAgreesWithLibrary, OnEveryStringTextFileFault) {
    const std::string a = "<s id=\"A\">a</s>\n";
    const std::string inputs[] = {
        // Clean, and fixed by fmt.
        Text(a + "<s id=\"B\">b</s>\n"),
        "<?xml version=\"1.0\"?>\n<strings>\n<!-- keep me -->\n  <s id=\"A\">Ay\r\nmore</s>\n"
        "  <s id=\"B\">Bee</s>\n  <s id=\"C\"></s>\n</strings>\n",
        // Every fault the checker's own tests seed.
        "<?xml version=\"1.0\"?>\n<strings>" + a + "<s id=\"B\">b</s>\n</strings>\n",
        "<?xml version=\"1.0\"?>\n<strings><s id=\"A\">a</s></strings>\n",
        Text("<s id=\"A\" lang=\"en\">a</s>\n<s id=\"B\">b</s>\n"),
        Text("<s id=\"A\" >a</s>\n<s id=\"B\">b</s>\n"),
        Text("<s id=\"A\"/>\n<s id=\"B\">b</s>\n"),
        One("a <b>c</b>"),
        "<?xml version=\"1.0\"?>\n<strings>\n<s id=\"A\">a\n",
        Text(a + "<!-- \"z\" -->\n<s id=\"B\">b</s>\n"),
        Text(a + "x=\"z\"\n<s id=\"B\">b</s>\n"),
        One("\xFF"),
        Text("<s id=\"B\">b</s>\n" + a),
        Text(a + "<s id=\"A\">second</s>\n"),
        One("\\\\n \\q \\\\\\n \\"),
        One("&bogus;"),
        One("a\rb"),
        One(std::string("a\0b", 3)),
        Text("<s id=\"\">a</s>\n"),
        // Quotes that pair otherwise than the markup's: fmt once sorted this by "A".
        Text("<s id='a\"b' x=\"A\">T</s>\n<s id=\"B\">b</s>\n"),
        Text("<s id=\"B\">b</s>\n<s id='a\"b' x=\"A\">T</s>\n"),
    };
    Tally tally;
    for (const std::string& input : inputs) {
        QanTest::TempDir dir;
        dir.Write("strings.xml", input);
        // One key per id as written, in key order.
        const QanTool::TextFileReadings readings = QanTool::CompareTextFile(input);
        const QanTool::LineIndex lines(input);
        std::vector<Probe> probes;
        std::string csv;
        for (std::size_t i = 0; i < readings.markup.elements.size(); ++i) {
            const auto& el = readings.markup.elements[i];
            if (el.quotedValues == 0)
                continue;
            const std::string key = "k" + std::string(1, static_cast<char>('a' + i));
            csv += key + "," + std::string(el.id) + "\n";
            probes.push_back({key, Framework::Internal::DecodeStringText(el.text),
                              lines.At(el.begin).line, readings.elements[i].reading});
        }
        dir.Write("string.csv", csv);
        // Later rows of an id ask for the same key as the first.
        std::map<std::string, std::string> firstKey;
        for (std::size_t p = 0, e = 0; e < readings.markup.elements.size(); ++e) {
            const auto& el = readings.markup.elements[e];
            if (el.quotedValues == 0)
                continue;
            const auto [it, inserted] = firstKey.emplace(std::string(el.id), probes[p].key);
            probes[p++].key = it->second;
        }
        ExpectAgreement(dir, "strings.xml", probes, input, tally);
    }
    // Both sides of the agreement are exercised, not only one.
    EXPECT_GT(tally.answered, 10);
    EXPECT_GT(tally.refused, 5);
}

TEST(LintAgreesWithLibrary, OnEveryKeyTableFault) {
    const std::string strings = Text("<s id=\"A\">a</s>\n<s id=\"B\">b</s>\n");
    const std::map<std::string, std::wstring> texts = {{"A", L"a"}, {"B", L"b"}, {"", L""}};
    const std::string inputs[] = {
        "k,A\nm,B\n",
        "\xEF\xBB\xBFk,A\n",
        "k,A\r\nm,B\n",
        "k,A\nm,B",
        "k,A\nk\n",
        "b,A\na,A\n",
        "k\xFF,A\nm,B\n",
        "k,Z\nm,B\n",
        "k,A\nk,B\n",
        ",A\nm,B\n",
        "k,\nm,B\n",
        "k ,A\nm,B\n",
        "k\n\nm,A\n",
        "\xEF\xBB\xBF"
        "c,B\r\nd,A\r\n\r\ne,B\r\nf,A",
    };
    Tally tally;
    for (const std::string& input : inputs) {
        QanTest::TempDir dir;
        dir.Write("strings.xml", strings);
        dir.Write("string.csv", input);
        const QanTool::KeyTableReadings readings = QanTool::CompareKeyTable(input);
        std::vector<Probe> probes;
        int line = 0;
        for (std::size_t i = 0; i < readings.lines.size(); ++i) {
            const auto& written = readings.lines[i];
            ++line;
            if (written.comma == std::string_view::npos)
                continue;
            std::string key(written.key);
            if (i == 0 && key.rfind("\xEF\xBB\xBF", 0) == 0)
                key.erase(0, 3);
            const auto text = texts.find(std::string(written.id));
            probes.push_back(
                {key,
                 text == texts.end() ? std::nullopt : std::optional<std::wstring>(text->second),
                 line, readings.readings[i].reading});
        }
        ExpectAgreement(dir, "string.csv", probes, input, tally);
    }
    EXPECT_GT(tally.answered, 8);
    EXPECT_GT(tally.refused, 3);
}

// Findings across the text files, each held against what the library does at the full
// load that the finding speaks of.
TEST(LintAgreesWithLibrary, OnTheTextFilesTogether) {
    const std::string full = Text("<s id=\"A\">a</s>\n<s id=\"B\">b</s>\n");
    struct Row {
        std::string file, content, finding;
        std::string key;              // looked up before and after the full load
        std::wstring before;          // the answer before
        std::set<std::wstring> after; // the answers the finding allows after
    };
    const Row rows[] = {
        {"startupstrings.xml",
         Text("<s id=\"Z\">z</s>\n"),
         "start-up id 'Z' is missing",
         "kZ",
         L"z",
         {L""}},
        {"startupstrings.xml",
         Text("<s id=\"A\">other</s>\n"),
         "start-up text of 'A' differs",
         "kA",
         L"other",
         {L"a"}},
        {"override/strings.xml",
         Text("<s id=\"Z\">z</s>\n"),
         "override id 'Z' is not in",
         "kZ",
         L"",
         {L""}},
        {"override/strings.xml",
         Text("<s id=\"A\">x</s>\n<s id=\"A\">y</s>\n"),
         "duplicate override id 'A'",
         "kA",
         L"",
         {L"x", L"y"}},
    };
    for (const auto& row : rows) {
        QanTest::TempDir dir;
        dir.Write("strings.xml", full);
        dir.Write(row.file, row.content);
        dir.Write("string.csv", "kA,A\nkB,B\nkZ,Z\n");
        const LintWord lint(QanTool::LintDirectory(dir.Path(), ""), row.file);
        EXPECT_NE(lint.all.find(row.finding), std::string::npos) << lint.all;
        const Library library(dir);
        if (!row.before.empty()) {
            EXPECT_EQ(Library::Get(row.key), row.before) << row.finding;
        }
        EXPECT_EQ(Library::Get("kB"), L"b"); // only in the full file: loads it
        EXPECT_EQ(row.after.count(Library::Get(row.key)), 1u) << row.finding;
    }
}

// fmt refuses a file whose quotes the library pairs otherwise than the markup, naming the
// place on one line, and leaves every byte and every answer as it was.
TEST(LintAgreesWithLibrary, FmtRefusesWhatTheLibraryReadsOtherwise) {
    const std::string input = Text("<s id=\"B\">b</s>\n<s id='a\"b' x=\"A\">T</s>\n");
    QanTest::TempDir dir;
    dir.Write("strings.xml", input);
    dir.Write("string.csv", "kA,A\nkB,B\n");
    std::wstring before[2];
    {
        const Library library(dir);
        before[0] = Library::Get("kA");
        before[1] = Library::Get("kB");
    }
    EXPECT_EQ(before[1], L"b");
    const QanTool::FormatPlan plan = QanTool::PlanFormat(dir.Path());
    EXPECT_TRUE(plan.changes.empty());
    EXPECT_EQ(plan.refusal.rfind("strings.xml:4:1: ", 0), 0u) << plan.refusal;
    EXPECT_EQ(plan.refusal.find('\n'), std::string::npos) << plan.refusal;
    EXPECT_EQ(QanTool::ApplyFormat(dir.Path(), plan).error, "");
    EXPECT_EQ(QanTest::ReadAll(dir.Path() / "strings.xml"), input);
    const Library library(dir);
    EXPECT_EQ(Library::Get("kA"), before[0]);
    EXPECT_EQ(Library::Get("kB"), before[1]);
    const LintWord lint(QanTool::LintDirectory(dir.Path(), ""), "strings.xml");
    EXPECT_TRUE(lint.errorLines.count(4)) << lint.all;
}

} // namespace

// The string collection's life cycle: start-up texts, overrides, key tables and the lazy
// load of the full text file, on real files.
#include "StringTestFiles.h"
#include "base/Settings.h"
#include "base/Unicode.h"
#include "strings/DecodeStringText.h"
#include "strings/FindInTable.h"
#include "strings/MergeOverrides.h"
#include "strings/StringResourceCollection.h"
#include "support/FakePlatform.h"

#include <gtest/gtest.h>

#include <atomic>
#include <random>
#include <thread>

namespace {
using namespace Framework::Internal;
using namespace StringTests;
using Text = std::optional<std::wstring>;

class StringCollection : public ::testing::Test {
protected:
    StringCollection() {
        ProcessSettings().masterStringDirectory = master.Wide();
        ProcessSettings().resourceDirectory = resources.Wide();
    }
    ~StringCollection() override { ProcessSettings() = Settings{}; }

    // A key, its kind, the answer, and the files read since construction.
    using Ask = std::tuple<std::wstring, std::uint32_t, Text, int>;
    // Asks in turn one collection made now.
    void Run(const std::vector<Ask>& asks) {
        const StringResourceCollection strings;
        const int built = platform.readFileCalls;
        for (const auto& [key, kind, text, reads] : asks) {
            EXPECT_EQ(strings.GetResource(key, static_cast<StringKind>(kind)), text) << key.c_str();
            EXPECT_EQ(platform.readFileCalls - built, reads) << key.c_str() << " kind " << kind;
        }
    }

    QanTest::TempDir master, resources;
    QanTest::FakePlatform platform;
};

// Keys are narrowed to UTF-8 and matched exactly, in the key table of their kind only.
TEST_F(StringCollection, EachKindHasItsOwnKeyTable) {
    const char* files[] = {"string.csv", "caption.csv", "tooltipHeader.csv", "tooltipBody.csv"};
    for (int kind = 0; kind < 4; ++kind)
        resources.Write(files[kind], "G\xC3\xB6,g\ncrlf,0\r\nk," + std::to_string(kind) + "\n" +
                                         std::string(300, 'x') + ",g\n");
    master.Write("startupstrings.xml",
                 TextFile({{"0", "str"}, {"1", "cap"}, {"2", "head"}, {"3", "body"}, {"g", "G"}}));
    // Only the id ending in a carriage return, which matches no text, loads the full file.
    Run({Ask{L"k", String, L"str", 0}, Ask{L"k", Caption, L"cap", 0},
         Ask{L"k", TooltipHeader, L"head", 0}, Ask{L"k", TooltipBody, L"body", 0},
         Ask{L"k", 4, {}, 0}, Ask{L"k", 0xFFFFFFFF, {}, 0}, Ask{L"G\u00F6", String, L"G", 0},
         Ask{std::wstring(300, L'x'), String, L"G", 0}, Ask{L"K", String, {}, 0},
         Ask{L" k", String, {}, 0}, Ask{L"crlf", String, L"", 1}});
}

TEST_F(StringCollection, OverridesBeforeAndAfterTheLazyLoad) {
    resources.Write("string.csv", "both,b\nfull,f\ngone,g\nnowhere,n\nplain,p\n");
    master.Write("startupstrings.xml",
                 TextFile({{"b", "start-up"}, {"g", "start-up"}, {"p", "plain\\t&amp;"}}));
    master.Write("strings.xml", TextFile({{"b", "full"}, {"f", "full"}, {"p", "plain full"}}));
    master.Write("override/strings.xml", TextFile({{"g", "g!"}, {"f", "f!"}, {"b", "b!"}}));
    // A key that no table knows loads nothing; the override of an id that the full file
    // lacks is dropped at the load.
    Run({Ask{L"both", String, L"b!", 0}, Ask{L"plain", String, L"plain\t&", 0},
         Ask{L"gone", String, L"g!", 0}, Ask{L"unknown", String, {}, 0},
         Ask{L"full", String, L"f!", 1}, Ask{L"both", String, L"b!", 1},
         Ask{L"plain", String, L"plain full", 1}, Ask{L"gone", String, L"", 1},
         Ask{L"nowhere", String, L"", 1}});
}

// In a folder with a non-ASCII name, without start-up texts, the first look-up loads the
// full file, and the missing override file is not read. A missing full file is tried once
// and leaves the start-up rows, with the overrides merged in.
TEST_F(StringCollection, MissingFiles) {
    const std::filesystem::path folder(u8"r\u00E9pertoire \u65E5\u672C");
    resources.Write("caption.csv", "k,i\n");
    master.Write(folder / "strings.xml", TextFile({{"i", "full"}}));
    const std::u8string utf8 = (master.Path() / folder).u8string();
    ProcessSettings().masterStringDirectory =
        Framework::Utf8::Decode({reinterpret_cast<const char*>(utf8.data()), utf8.size()});
    Run({Ask{L"k", String, {}, 0}, Ask{L"k", Caption, L"full", 1}});
    EXPECT_EQ(platform.readFileCalls, 5 + 1);

    ProcessSettings().masterStringDirectory = master.Wide();
    resources.Write("string.csv", "early,e\nlate,l\n");
    master.Write("startupstrings.xml", TextFile({{"e", "early"}}));
    master.Write("override/strings.xml", TextFile({{"e", "override\\n"}}));
    Run({Ask{L"late", String, L"", 1}, Ask{L"late", String, L"", 1},
         Ask{L"early", String, L"override\n", 1}});
}

// Only the full file follows a change of directory made after construction.
TEST_F(StringCollection, MasterDirectoryIsReadAgainAtTheLazyLoad) {
    resources.Write("string.csv", "early,e\nlate,l\n");
    master.Write("startupstrings.xml", TextFile({{"e", "start-up 1"}}));
    master.Write("override/strings.xml", TextFile({{"e", "override 1"}}));
    QanTest::TempDir moved;
    moved.Write("startupstrings.xml", TextFile({{"e", "start-up 2"}}));
    moved.Write("strings.xml", TextFile({{"e", "full 2"}, {"l", "late 2"}}));
    moved.Write("override/strings.xml", TextFile({{"l", "override 2"}}));
    const StringResourceCollection strings;
    ProcessSettings().masterStringDirectory = moved.Wide();
    EXPECT_EQ(strings.GetResource(L"early", String), Text(L"override 1"));
    EXPECT_EQ(strings.GetResource(L"late", String), Text(L"late 2"));
    EXPECT_EQ(strings.GetResource(L"early", String), Text(L"override 1"));
}

// Look-ups from many threads while the first miss reads the full text file, every answer
// checked; run under ThreadSanitizer to check the locking as well.
TEST_F(StringCollection, ThreadsLookingUpDuringTheLazyLoadAllGetTheirTexts) {
    constexpr int kKeys = 2000, kThreads = 16;
    // Ids of one width keep the files in key order; the first 200 are in the start-up
    // file; every seventh is overridden.
    const auto id = [](int n) { return std::to_string(100000 + n); };
    std::string keys;
    Rows full, overrides;
    for (int n = 0; n < kKeys; ++n) {
        keys += id(n) + "," + id(n) + "\n";
        full.emplace_back(id(n), "text " + id(n));
        if (n % 7 == 0)
            overrides.emplace_back(id(n), "override " + id(n));
    }
    resources.Write("string.csv", keys);
    master.Write("startupstrings.xml", TextFile({full.begin(), full.begin() + 200}));
    master.Write("strings.xml", TextFile(full));
    master.Write("override/strings.xml", TextFile(overrides));
    const StringResourceCollection strings;
    std::atomic<int> ready{0}, wrong{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&, t] {
            for (++ready; ready < kThreads;) {
            }
            // Half the threads start with start-up keys, half with keys only in the full
            // file, each at its own offset, so that the load happens amid look-ups.
            for (int i = 0; i < kKeys; ++i) {
                const int n = t % 2 ? (kKeys - 1 - i + t) % kKeys : (i * 37 + t) % kKeys;
                const auto text = strings.GetResource(std::to_wstring(100000 + n), String);
                wrong += text != (n % 7 ? L"text " : L"override ") + std::to_wstring(100000 + n);
            }
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
}

// Tables large enough to be searched through their index, out of order and with repeated
// keys and ids: every answer, before and after the lazy load, is the one the plain binary
// search gives over the same files (a key it misses in an unsorted table stays missed).
TEST_F(StringCollection, UnsortedAndRepeatedRowsAnswerAsTheBinarySearch) {
    std::mt19937 random(7);
    const auto name = [](const char* kind, int n) { return kind + std::to_string(1000 + n); };
    // Sorted, then disturbed: pairs swapped, and some keys and ids written twice.
    const auto disturb = [&](Rows rows) {
        std::sort(rows.begin(), rows.end());
        for (int i = 0; i < 40; ++i)
            std::swap(rows[random() % rows.size()], rows[random() % rows.size()]);
        for (int i = 0; i < 40; ++i) {
            const std::size_t at = random() % rows.size();
            rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(at),
                        {rows[at].first, rows[at].second + "-again"});
        }
        return rows;
    };
    Rows keyRows, startup, full, overrides;
    for (int n = 0; n < 600; ++n) {
        keyRows.emplace_back(name("key.", n), name("ID_", n % 550));
        if (n % 3 == 0)
            startup.emplace_back(name("ID_", n), "start-up " + std::to_string(n));
        // Some texts need more than their UTF-8 decoded (an entity, an escape, a zero byte
        // that ends them), and must still do so when a later look-up takes them as kept.
        std::string text = "full " + std::to_string(n);
        if (n % 4 == 0)
            text += " &amp; \\t";
        if (n % 6 == 0)
            text += std::string("\0after", 6);
        if (n % 5)
            full.emplace_back(name("ID_", n), text);
        if (n % 11 == 0)
            overrides.emplace_back(name("ID_", n), "override " + std::to_string(n));
    }
    std::string csv;
    for (const auto& [key, id] : disturb(keyRows))
        csv += key + "," + id + "\n";
    resources.Write("string.csv", csv);
    const std::string startupFile = TextFile(disturb(startup)), fullFile = TextFile(disturb(full)),
                      overrideFile = TextFile(disturb(overrides));
    master.Write("startupstrings.xml", startupFile);
    master.Write("strings.xml", fullFile);
    master.Write("override/strings.xml", overrideFile);

    // The plain searches over the same files, loaded as the collection loads them.
    QanTest::TempDir copies;
    const StringTable keys = Load(copies, csv, true);
    const StringTable startupTable = Load(copies, startupFile, false);
    StringTable overrideTable = Load(copies, overrideFile, false, true);
    StringTable fullTable = Load(copies, fullFile, false);
    MergeOverrides(fullTable, overrideTable);
    const auto expected = [&](const std::string& key, bool loaded) -> Text {
        const auto id = FindInTable(keys, key);
        if (!id)
            return std::nullopt;
        if (!loaded) {
            const auto text = FindInTable(startupTable, *id);
            if (!text)
                return std::nullopt; // would load the full file
            return DecodeStringText(FindInTable(overrideTable, *id).value_or(*text));
        }
        const auto text = FindInTable(fullTable, *id);
        return text ? DecodeStringText(*text) : std::wstring();
    };

    const StringResourceCollection strings;
    const int built = platform.readFileCalls;
    int asked = 0, missed = 0;
    std::string loadingKey;
    for (int n = 0; n < 620; ++n) {
        const std::string key = name("key.", n);
        const Text want = expected(key, false);
        if (!want && FindInTable(keys, key)) {
            loadingKey = key; // asked after the start-up texts
            continue;
        }
        EXPECT_EQ(strings.GetResource(Framework::Utf8::Decode(key), String), want) << key;
        ++asked;
        missed += !want;
    }
    EXPECT_EQ(platform.readFileCalls, built) << "the start-up texts answered alone";
    ASSERT_FALSE(loadingKey.empty());
    EXPECT_GT(asked, 100);
    EXPECT_GT(missed, 20); // keys past the table's end, and keys the disturbed order hides
    // Twice: the second time every key that hit is answered from what its first hit kept.
    for (int pass = 0; pass < 2; ++pass)
        for (int n = 0; n < 620; ++n) {
            const std::string key = n == 0 ? loadingKey : name("key.", n);
            EXPECT_EQ(strings.GetResource(Framework::Utf8::Decode(key), String),
                      expected(key, true))
                << key << " pass " << pass;
        }
    EXPECT_EQ(platform.readFileCalls, built + 1);
}

} // namespace

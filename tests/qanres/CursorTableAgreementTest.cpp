// CursorTableAgreementTest.cpp: what "cursor-table dump" and lint report of a damaged
// cursor table is what the library reads. The library's side is GetCursor from a service
// whose platform serves the bytes as the icon library's resource 2. The dump is checked by
// writing the table it reports (its entries, then its empty-named rest) intact and asking
// both services every key: the same answers mean the same table, whatever its order.
#include "Bytes.h"
#include "CursorTable.h"
#include "CursorTableWriter.h"
#include "Lint.h"

#include "service/ResourcesImpl.h"
#include "support/FakePlatform.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Framework::Resources;
using Framework::Internal::IResources;
using QanTool::CursorTable::Entry;

const auto kModule = reinterpret_cast<HINSTANCE>(static_cast<std::uintptr_t>(0x4000));

std::vector<std::byte> Bytes(const std::string& text) {
    const auto bytes = std::as_bytes(std::span(text.data(), text.size()));
    return {bytes.begin(), bytes.end()};
}

// The answers of a service whose "QanIcons.dll" holds table as resource 2, for each key.
std::vector<Resources::ResourceID> Answers(const std::vector<std::byte>& table,
                                           const std::vector<std::wstring>& keys) {
    QanTest::FakePlatform platform;
    platform.loadModule = [](const wchar_t* name) {
        return std::wstring(name) == L"QanIcons.dll" ? kModule : nullptr;
    };
    platform.findRawData = [&](HINSTANCE module, int id) {
        return module == kModule && id == 2 ? std::span<const std::byte>(table)
                                            : std::span<const std::byte>();
    };
    platform.freeModule = [](HINSTANCE) {};
    Framework::Internal::ResourcesImpl service;
    IResources::SetResourcesForTests(&service);
    std::vector<Resources::ResourceID> answers;
    for (const auto& key : keys)
        answers.push_back(Resources::GetCursor(key));
    IResources::SetResourcesForTests(nullptr);
    return answers;
}

// The table a dump reports: "count: N", then one "name<TAB>id" line per entry read; the
// rest of the N have an empty name and id 0.
std::vector<Entry> Reported(const std::string& dump) {
    std::istringstream lines(dump);
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line.rfind("count: ", 0), 0u) << dump;
    const auto count = std::stoull(line.substr(7));
    std::vector<Entry> entries;
    while (std::getline(lines, line)) {
        const auto tab = line.rfind('\t');
        entries.push_back({QanTool::ToUtf16(line.substr(0, tab)),
                           static_cast<std::uint32_t>(std::stoul(line.substr(tab + 1)))});
    }
    entries.resize(static_cast<std::size_t>(count));
    return entries;
}

TEST(CursorTableAgreement, DumpAndLintReportTheTableTheLibraryReads) {
    const std::vector<Entry> full = {{u"Arrow", 2}, {u"Cross", 5}, {u"Hand", 1}, {u"Zoom", 3}};
    const auto intact = QanTool::CursorTable::Write(full);
    auto cut = [&](std::size_t drop) {
        return std::vector<std::byte>(intact.begin(),
                                      intact.end() - static_cast<std::ptrdiff_t>(drop));
    };
    // Bytes as "Arrow"(22) "Cross"(40) "Hand"(56) "Zoom"(72): the table, and whether lint
    // must call it cut short.
    const std::pair<std::vector<std::byte>, bool> rows[] = {
        {intact, false},
        {cut(2), true},  // the last id cut
        {cut(4), true},  // the last id missing
        {cut(10), true}, // the last name runs past the data
        {cut(14), true}, // half of the last name length
        {cut(16), true}, // after three entries
        {cut(40), true}, // inside the second name
        {cut(intact.size() - 2), true},
        {Bytes(std::string("\x05\x00\x00\x00", 4)), true}, // a count and nothing else
        {[&] {
             auto more = intact;
             more.push_back(std::byte{7});
             return more;
         }(),
         false},
    };
    const std::vector<std::wstring> keys = {L"", L"Arrow", L"Cross", L"Hand", L"Zoom", L"None"};
    for (const auto& [bytes, cutShort] : rows) {
        const std::string what = "table of " + std::to_string(bytes.size()) + " bytes";
        std::ostringstream out, err;
        const int status = QanTool::DumpCursorTable(
            std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()), out, err);
        EXPECT_EQ(status != 0, cutShort) << what << ": " << err.str();

        QanTest::TempDir dir;
        dir.Write(QanTool::kCursorTable,
                  std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
        bool lintCutShort = false;
        const auto findings = QanTool::LintDirectory(dir.Path(), "");
        for (const auto& d : findings.All())
            lintCutShort = lintCutShort || d.message.find("ends early") != std::string::npos;
        EXPECT_EQ(lintCutShort, cutShort) << what;

        const auto reported = QanTool::CursorTable::Write(Reported(out.str()));
        EXPECT_EQ(Answers(bytes, keys), Answers(reported, keys)) << what << "\n" << out.str();
    }
}

// The one table the library refuses: its service fails to start, and both reports say so.
TEST(CursorTableAgreement, ANegativeCountStopsTheLibraryAndIsReported) {
    const auto bytes = Bytes(std::string("\xFE\xFF\xFF\xFF", 4));
    EXPECT_THROW(Answers(bytes, {L"Arrow"}), std::length_error);
    std::ostringstream out, err;
    EXPECT_EQ(QanTool::DumpCursorTable("\xFE\xFF\xFF\xFF", out, err), 1);
    EXPECT_NE(err.str().find("negative cursor count -2"), std::string::npos) << err.str();
    QanTest::TempDir dir;
    dir.Write(QanTool::kCursorTable, "\xFE\xFF\xFF\xFF");
    const auto findings = QanTool::LintDirectory(dir.Path(), "");
    EXPECT_TRUE(findings.HasErrors() && findings.All().size() == 1 &&
                findings.All()[0].message.find("fails to start") != std::string::npos);
}

} // namespace

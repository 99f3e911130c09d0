// Product.cpp: the library's loaders and search, run as the lazy full load runs them.
#include "Product.h"

#include "base/Unicode.h"
#include "strings/CsvKeyTable.h"
#include "strings/DecodeStringText.h"
#include "strings/FindInTable.h"
#include "strings/MergeOverrides.h"
#include "strings/XmlStringTable.h"

namespace QanTool {
namespace {

using Framework::Internal::StringTable;

std::wstring Wide(const std::filesystem::path& path) {
    return Framework::Utf8::Decode(
        std::string(reinterpret_cast<const char*>(path.u8string().c_str())));
}

} // namespace

KeyTables ReadKeyTables(const std::filesystem::path& resourceDirectory) {
    static const char* const files[] = {"string.csv", "caption.csv", "tooltipHeader.csv",
                                        "tooltipBody.csv"};
    KeyTables tables;
    for (int kind = 0; kind < 4; ++kind) {
        StringTable table;
        Framework::Internal::LoadCsvKeyTable(table, Wide(resourceDirectory / files[kind]));
        for (const auto& row : table.entries)
            tables.kinds[kind].push_back({std::string(row.key), std::string(row.text)});
    }
    return tables;
}

Language ReadLanguage(const std::filesystem::path& masterStringDirectory, std::string name) {
    using namespace Framework::Internal;
    StringTable strings, overrides;
    LoadXmlStringTable(strings, Wide(masterStringDirectory / "startupstrings.xml"), false);
    LoadXmlStringTable(overrides, Wide(masterStringDirectory / "override" / "strings.xml"), true);
    LoadXmlStringTable(strings, Wide(masterStringDirectory / "strings.xml"), false);
    MergeOverrides(strings, overrides);

    Language language{std::move(name), {}};
    for (const auto& row : strings.entries) {
        const std::string id(row.key);
        if (language.texts.count(id))
            continue;
        // The text the search finds for this id, which for duplicates may be another row's.
        if (const auto found = FindInTable(strings, row.key))
            language.texts.emplace(id, Framework::Utf8::Encode(DecodeStringText(*found)));
    }
    return language;
}

} // namespace QanTool

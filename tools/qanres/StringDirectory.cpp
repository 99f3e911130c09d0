// StringDirectory.cpp: the library's table readers do the reading, so the tool sees each
// file exactly as a host does; only the choice among the three files is made here.
#include "StringDirectory.h"

#include "Lint.h"
#include "StoredText.h"

#include "base/Unicode.h"
#include "strings/CsvKeyTable.h"
#include "strings/XmlStringTable.h"

namespace QanTool {
namespace {

namespace Internal = Framework::Internal;

// The path as the library's settings take it, through UTF-8 whatever the locale is.
QanStringT<wchar_t> WidePath(const std::filesystem::path& path) {
    const std::u8string utf8 = path.u8string();
    return Framework::Utf8::Decode(std::string(utf8.begin(), utf8.end()));
}

} // namespace

std::map<std::string, std::string> ReadStoredTexts(const std::filesystem::path& file) {
    Internal::StringTable table;
    std::error_code ec;
    if (std::filesystem::is_regular_file(file, ec))
        Internal::LoadXmlStringTable(table, WidePath(file), false);
    std::map<std::string, std::string> texts;
    for (const auto& row : table.entries)
        texts.emplace(std::string(row.key), std::string(row.text)); // the first one stays
    return texts;
}

MasterStrings ReadMasterStrings(const std::filesystem::path& dir) {
    const auto startup = ReadStoredTexts(dir / kStartupStrings);
    const auto full = ReadStoredTexts(dir / kFullStrings);
    const auto overrides = ReadStoredTexts(dir / kOverrideStrings);
    MasterStrings result;
    result.hasOverrides = !overrides.empty();
    std::map<std::string, const std::string*> chosen;
    for (const auto& [id, stored] : startup) {
        chosen[id] = &stored;
        result.startupIds.push_back(id);
    }
    for (const auto& [id, stored] : full)
        chosen[id] = &stored;
    for (const auto& [id, stored] : overrides) {
        if (auto it = chosen.find(id); it != chosen.end())
            it->second = &stored;
        else
            result.overrideOnly.push_back(id);
    }
    for (const auto& [id, stored] : chosen)
        result.strings.push_back({id, DecodeStoredText(*stored)});
    return result;
}

std::map<std::string, std::vector<KeyReference>>
ReadKeyReferences(const std::filesystem::path& resourceDir) {
    static constexpr std::pair<const char*, const char*> kTables[] = {
        {"string.csv", "string"},
        {"caption.csv", "caption"},
        {"tooltipHeader.csv", "tooltip-header"},
        {"tooltipBody.csv", "tooltip-body"}};
    std::map<std::string, std::vector<KeyReference>> references;
    for (const auto& [file, kind] : kTables) {
        const auto path = resourceDir / file;
        std::error_code ec;
        if (!std::filesystem::is_regular_file(path, ec))
            continue;
        Internal::StringTable table;
        Internal::LoadCsvKeyTable(table, WidePath(path));
        for (const auto& row : table.entries)
            references[std::string(row.text)].push_back({kind, std::string(row.key)});
    }
    return references;
}

} // namespace QanTool

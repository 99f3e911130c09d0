// Translate.cpp: the commands put the readers, catalogue formats and the writer together;
// every rule about texts lives in those, so export and import stay exact inverses.
#include "Translate.h"

#include "Files.h"
#include "Lint.h"
#include "Po.h"
#include "StoredText.h"
#include "StringDirectory.h"
#include "StringFileWriter.h"
#include "Xliff.h"

#include <algorithm>
#include <cctype>
#include <map>

namespace QanTool {

std::string LanguageOfDirectory(const std::filesystem::path& dir) {
    auto name = dir.filename().string();
    if (name.empty())
        name = dir.parent_path().filename().string();
    // Two or three lower-case letters, then parts of letters and digits after "_" or "-".
    std::size_t i = 0;
    while (i < name.size() && name[i] >= 'a' && name[i] <= 'z')
        ++i;
    if (i < 2 || i > 3)
        return {};
    while (i < name.size()) {
        if (name[i] != '_' && name[i] != '-')
            return {};
        const std::size_t part = ++i;
        while (i < name.size() && std::isalnum(static_cast<unsigned char>(name[i])))
            ++i;
        if (i == part)
            return {};
    }
    return name;
}

std::string ExportCatalogue(const ExportRequest& request, std::string& out, std::ostream& notes) {
    std::error_code ec;
    for (const auto* dir : {&request.sourceDir, request.targetDir ? &*request.targetDir : nullptr})
        if (dir && !std::filesystem::is_directory(*dir, ec))
            return dir->string() + " is not a directory";
    const MasterStrings source = ReadMasterStrings(request.sourceDir);
    std::map<std::string, std::string> targetTexts;
    if (request.targetDir) {
        const MasterStrings target = ReadMasterStrings(*request.targetDir);
        for (const auto& s : target.strings)
            targetTexts.emplace(s.id, s.text);
        std::size_t extra = 0;
        for (const auto& s : target.strings)
            extra += std::binary_search(source.strings.begin(), source.strings.end(), s,
                                        [](const DirectoryString& a, const DirectoryString& b) {
                                            return a.id < b.id;
                                        })
                         ? 0
                         : 1;
        if (extra)
            notes << "qanres: export: " << extra
                  << " ids of the target directory are not in the source directory: left out\n";
    }
    if (!source.overrideOnly.empty())
        notes << "qanres: export: " << source.overrideOnly.size()
              << " override ids are in no text file and never handed out: left out\n";
    const auto keys = request.resourceDir.empty()
                          ? std::map<std::string, std::vector<KeyReference>>()
                          : ReadKeyReferences(request.resourceDir);
    Catalogue catalogue;
    catalogue.sourceLanguage = !request.sourceLanguage.empty()
                                   ? request.sourceLanguage
                                   : LanguageOfDirectory(request.sourceDir);
    if (request.targetDir)
        catalogue.targetLanguage = !request.targetLanguage.empty()
                                       ? request.targetLanguage
                                       : LanguageOfDirectory(*request.targetDir);
    else
        catalogue.targetLanguage = request.targetLanguage;
    for (const auto& s : source.strings) {
        CatalogueEntry e;
        e.id = s.id;
        e.source = s.text;
        if (auto it = targetTexts.find(s.id); it != targetTexts.end()) {
            e.target = it->second;
            e.hasTarget = true;
        }
        if (auto it = keys.find(s.id); it != keys.end())
            for (const auto& k : it->second)
                e.notes.push_back(k.kind + ": " + k.key);
        catalogue.entries.push_back(std::move(e));
    }
    out = request.format == CatalogueFormat::Po ? WritePo(catalogue) : WriteXliff(catalogue);
    return {};
}

std::string BuildStringFiles(const std::vector<ImportedString>& strings,
                             const std::optional<std::map<std::string, std::string>>& startup,
                             StringFiles& files) {
    std::map<std::string, std::string> stored; // by id, in byte order
    for (const auto& s : strings) {
        if (!IsWritableId(s.id))
            return "the id \"" + s.id + "\" cannot be written into a string file";
        auto encoded = EncodeStoredText(s.text);
        if (!encoded)
            return "the text of " + s.id +
                   " holds a zero character or bytes that are not UTF-8: no string file can "
                   "store it";
        stored.emplace(s.id, std::move(*encoded));
    }
    files.startupKept = 0;
    if (startup) {
        std::vector<StoredString> startupRows;
        for (const auto& [id, old] : *startup) {
            auto it = stored.find(id);
            if (it == stored.end()) {
                // Every start-up id must stay in strings.xml with the same text.
                it = stored.emplace(id, old).first;
                ++files.startupKept;
            }
            startupRows.push_back({id, it->second});
        }
        files.startup = CanonicalStringFile(std::move(startupRows));
    }
    std::vector<StoredString> rows;
    for (auto& [id, text] : stored)
        rows.push_back({id, text});
    files.full = CanonicalStringFile(std::move(rows));
    return {};
}

namespace {

CatalogueFormat DetectFormat(const std::string& bytes) {
    std::size_t i = bytes.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
    while (i < bytes.size() &&
           (bytes[i] == ' ' || bytes[i] == '\t' || bytes[i] == '\n' || bytes[i] == '\r'))
        ++i;
    return i < bytes.size() && bytes[i] == '<' ? CatalogueFormat::Xliff : CatalogueFormat::Po;
}

} // namespace

std::string WriteOutputFile(const std::filesystem::path& path, const std::string& bytes,
                            bool force) {
    std::error_code ec;
    if (!force &&
        std::filesystem::symlink_status(path, ec).type() != std::filesystem::file_type::not_found)
        return path.string() + " exists (use --force to replace it)";
    const auto dir = path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
    return WriteFilesSafely(dir, {{path.filename().string(), bytes}});
}

std::string ImportIntoDirectory(const ImportRequest& request, std::ostream& notes) {
    std::error_code ec;
    if (!std::filesystem::is_directory(request.dir, ec))
        return request.dir.string() + " is not a directory";
    const auto bytes = ReadWholeFile(request.file);
    if (!bytes)
        return "cannot read " + request.file.string();
    const CatalogueFormat format = request.format ? *request.format : DetectFormat(*bytes);
    ImportResult imported;
    if (format == CatalogueFormat::Po) {
        const PoFile po = ReadPo(*bytes);
        if (!po.error.empty())
            return request.file.string() + ": " + po.error;
        imported = ImportPo(po, request.options);
    } else {
        const XliffFile xliff = ReadXliff(*bytes);
        if (!xliff.error.empty())
            return request.file.string() + ": " + xliff.error;
        imported = ImportCatalogue(xliff.catalogue, request.options);
    }
    if (!imported.error.empty())
        return request.file.string() + ": " + imported.error;

    std::optional<std::map<std::string, std::string>> startup;
    const auto startupPath = request.dir / kStartupStrings;
    const auto oldStartup = ReadWholeFile(startupPath);
    if (oldStartup)
        startup = ReadStoredTexts(startupPath);
    StringFiles files;
    if (auto error = BuildStringFiles(imported.strings, startup, files); !error.empty())
        return error;

    std::vector<NewFile> writes;
    const auto oldFull = ReadWholeFile(request.dir / kFullStrings);
    if (oldFull && !oldFull->empty() && *oldFull != files.full && !request.force)
        return (request.dir / kFullStrings).string() + " exists (use --force to replace it)";
    if (files.startup && !oldStartup->empty() && *oldStartup != *files.startup && !request.force)
        return startupPath.string() + " exists and its texts would change (use --force)";
    if (!oldFull || *oldFull != files.full)
        writes.push_back({kFullStrings, files.full});
    if (files.startup && *oldStartup != *files.startup)
        writes.push_back({kStartupStrings, *files.startup});
    if (auto error = WriteFilesSafely(request.dir, writes); !error.empty())
        return error;

    for (const auto& line : imported.summary)
        notes << "qanres: " << line << '\n';
    if (files.startup)
        notes << "qanres: import: " << kStartupStrings
              << " rewritten with the imported texts of its ids"
              << (files.startupKept ? " (" + std::to_string(files.startupKept) +
                                          " ids the catalogue lacks kept, also in strings.xml)"
                                    : std::string())
              << '\n';
    if (!ReadStoredTexts(request.dir / kOverrideStrings).empty())
        notes << "qanres: import: " << kOverrideStrings
              << " is left as it was and still replaces the texts of its ids\n";
    return {};
}

} // namespace QanTool

// Translate.h: the export and import commands, from a master string directory to a PO or
// XLIFF catalogue and back.
#pragma once

#include "Import.h"

#include <filesystem>
#include <optional>
#include <ostream>
#include <string>

namespace QanTool {

enum class CatalogueFormat { Po, Xliff };

struct ExportRequest {
    std::filesystem::path sourceDir;
    std::optional<std::filesystem::path> targetDir;
    std::filesystem::path resourceDir;          // key tables; empty: none
    std::string sourceLanguage, targetLanguage; // empty: from the directory names
    CatalogueFormat format = CatalogueFormat::Po;
};

// Builds the catalogue document. Returns "" and fills out, or an error.
std::string ExportCatalogue(const ExportRequest& request, std::string& out, std::ostream& notes);

struct ImportRequest {
    std::filesystem::path file;
    std::filesystem::path dir;
    std::optional<CatalogueFormat> format; // empty: by content
    ImportOptions options;
    bool force = false;
};

// Writes strings.xml (and rewrites an existing startupstrings.xml with the imported texts
// of its ids). Returns "" or an error; the summary goes to notes.
std::string ImportIntoDirectory(const ImportRequest& request, std::ostream& notes);

// The strings.xml and startupstrings.xml bytes for imported texts, given the stored texts
// of an existing start-up file (empty map: none). Returns "" or an error.
struct StringFiles {
    std::string full;
    std::optional<std::string> startup;
    std::size_t startupKept = 0; // start-up ids that the import lacked, kept as they were
};
std::string BuildStringFiles(const std::vector<ImportedString>& strings,
                             const std::optional<std::map<std::string, std::string>>& startup,
                             StringFiles& files);

// Writes a whole file beside path and moves it into place; an existing one only when
// force. Returns "" or an error.
std::string WriteOutputFile(const std::filesystem::path& path, const std::string& bytes,
                            bool force);

// A language tag taken from a directory's name ("de", "pt_BR", "sr-Latn"), or "".
std::string LanguageOfDirectory(const std::filesystem::path& dir);

} // namespace QanTool

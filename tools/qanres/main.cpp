// main.cpp: the qanres command line. Options set the library's directories and application
// name; each command answers one look-up, or checks, formats or builds resource files.
// Exit status: 0 found or clean, 1 nothing found or a fault found, 2 usage error.
#include "Bytes.h"
#include "CursorTable.h"
#include "Files.h"
#include "Format.h"
#include "Lint.h"
#include "LintChecks.h"
#include "Lookups.h"
#include "Pseudo.h"
#include "Stats.h"
#include "Translate.h"

#include "platform/Console.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

namespace {

constexpr int kUsageError = 2;

int Usage(const std::string& message) {
    std::cerr << "qanres: error: " << message << '\n';
    return kUsageError;
}

using QanTool::PathFromUtf8;

bool IsDirectory(const std::string& dir) {
    std::error_code ec;
    return std::filesystem::is_directory(PathFromUtf8(dir), ec);
}

int CursorWrite(const std::string& listPath, const std::string& outPath, bool force) {
    const auto read = QanTool::ReadWholeFile(PathFromUtf8(listPath));
    if (!read)
        return Usage("cannot read " + listPath);
    const std::string& list = *read;
    std::error_code ec;
    if (!force && std::filesystem::exists(PathFromUtf8(outPath), ec))
        return Usage(outPath + " exists (use --force to replace it)");
    std::vector<QanTool::CursorListProblem> problems;
    auto entries = QanTool::ParseCursorList(list, problems);
    if (!problems.empty())
        return Usage(listPath + ":" + std::to_string(problems.front().line) + ": " +
                     problems.front().message);
    const std::string bytes = QanTool::EncodeCursorTable(std::move(entries));
    std::ofstream out(PathFromUtf8(outPath), std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out.flush())
        return Usage("cannot write " + outPath);
    return 0;
}

int CursorDump(const std::string& path) {
    const auto bytes = QanTool::ReadCursorTableFile(path);
    if (!bytes) {
        std::cerr << "qanres: " << path << " holds no cursor table (raw-data resource 2)\n";
        return 1;
    }
    return QanTool::DumpCursorTable(*bytes, std::cout, std::cerr);
}

int Run(int argc, char** argv) {
    CLI::App app{"qanres: looks up, checks and formats the resources of the Qan suite"};
    app.name("qanres");
    app.set_version_flag("--version", "qanres " QANRES_VERSION);
    app.require_subcommand(1);
    // Arguments are paths such as /opt/res on every system, never Windows-style options.
    app.allow_windows_style_options(false);
    app.footer("Exit status: 0 found or clean, 1 nothing found or a fault found, 2 usage error.\n"
               "Every check of lint, with its repair: qanres lint --help.");
    // Options such as --escape may stand after the command too.
    app.fallthrough();

    QanTool::LookupSettings settings;
    app.add_option("--master-strings", settings.masterStrings,
                   "directory of startupstrings.xml, strings.xml and override/; repeat it "
                   "for each language, the source language first (look-ups use the first)")
        ->type_name("DIR")
        ->allow_extra_args(false) // one directory per occurrence, never the command after it
        ->take_all();
    app.add_option("--resources", settings.resources,
                   "directory of the key tables (*.csv) and icons.map.xml")
        ->type_name("DIR");
    app.add_option("--icons", settings.icons, "icon directory (the icon map is read only if set)")
        ->type_name("DIR");
    app.add_option("--base", settings.base, "base directory (its Images folder holds images)")
        ->type_name("DIR");
    app.add_option("--icon-subdir", settings.iconSubdir, "icon sub-directory under --icons")
        ->type_name("NAME");
    app.add_option("--app", settings.app, "application name (prefers its legacy components)")
        ->type_name("NAME");
    app.add_flag("--escape", settings.escape,
                 "show control characters: \\xNN (U+0001 as \\x01), \\n, \\t, \\r; "
                 "a backslash as \\\\");

    int status = 0;
    std::string key;
    const std::pair<const char*, const char*> stringCommands[] = {
        {"string", "the plain string of KEY"},
        {"caption", "the caption of KEY"},
        {"tooltip-header", "the tooltip header of KEY"},
        {"tooltip-body", "the tooltip body of KEY"}};
    for (const auto& [name, help] : stringCommands) {
        auto* cmd = app.add_subcommand(name, help);
        cmd->add_option("KEY", key, "resource key")->required();
        cmd->callback([&, command = std::string(name)] {
            QanTool::ApplySettings(settings);
            status = QanTool::LookupString(command, key, settings.escape, std::cout);
        });
    }
    for (const char* name : {"icon", "cursor"}) {
        auto* cmd =
            app.add_subcommand(name, std::string("the ") + name + " of KEY, one field per line");
        cmd->add_option("KEY", key, "resource key")->required();
        cmd->callback([&, command = std::string(name)] {
            QanTool::ApplySettings(settings);
            status = QanTool::LookupResource(command, key, settings.escape, std::cout);
        });
    }
    for (const auto& [name, help] : {std::pair{"icon-path", "the icon path of a guid:// KEY"},
                                     std::pair{"image-path", "the image path of an ext:// KEY"}}) {
        auto* cmd = app.add_subcommand(name, help);
        cmd->add_option("KEY", key, "prefixed key")->required();
        cmd->callback([&, command = std::string(name)] {
            QanTool::ApplySettings(settings);
            status = QanTool::LookupPath(command, key, settings.escape, std::cout);
        });
    }

    std::string component;
    int legacyId = 0;
    auto* guid = app.add_subcommand("legacy-guid", "the GUID key of a legacy (component, id)");
    guid->add_option("COMPONENT", component, "legacy component name")->required();
    guid->add_option("ID", legacyId, "legacy string id")->required();
    guid->callback([&] {
        QanTool::ApplySettings(settings);
        status = QanTool::LookupLegacyGuid(component, legacyId, std::cout);
    });
    auto* legacy = app.add_subcommand("legacy-string", "the legacy text of KEY");
    legacy->add_option("KEY", key, "GUID key")->required();
    legacy->callback([&] {
        QanTool::ApplySettings(settings);
        status = QanTool::LookupLegacyString(key, settings.escape, std::cout);
    });

    std::string loadReportFormat = "text";
    auto* report = app.add_subcommand(
        "report", "what the library reads with these settings: files, rows, refusals; "
                  "exit status 1 when a file was refused");
    report->add_option("--format", loadReportFormat, "text or json")
        ->check(CLI::IsMember({"text", "json"}));
    report->callback([&] {
        QanTool::ApplySettings(settings);
        status = QanTool::PrintLoadReport(loadReportFormat == "json", std::cout);
    });

    unsigned flags = 0;
    std::string text;
    auto* strip = app.add_subcommand(
        "strip-menu", "TEXT without menu markers; FLAGS: 1 '&', 2 after tab, 4 '%x', 8 '-'");
    strip->add_option("FLAGS", flags, "sum of 1, 2, 4, 8")->required();
    strip->add_option("TEXT", text, "menu text")->required();
    strip->callback([&] { status = QanTool::StripMenu(flags, text, settings.escape, std::cout); });

    std::string dir;
    std::vector<std::string> lintDirs;
    bool werror = false;
    std::string lintFormat = "text";
    auto* lint = app.add_subcommand(
        "lint", "check a product the way the library reads it; prints "
                "file:line:column: error|warning: message, then one summary line");
    lint->add_option("DIR", lintDirs,
                     "resource or language directories, or a directory above them whose tree "
                     "lint recognises");
    lint->add_flag("--werror", werror, "exit 1 on warnings too");
    lint->add_option("--format", lintFormat, "text or json")
        ->check(CLI::IsMember({"text", "json"}));
    lint->footer(QanTool::LintChecksHelp());
    lint->callback([&] {
        QanTool::LintRequest request;
        for (const std::string& given : lintDirs)
            request.directories.push_back({PathFromUtf8(given), given});
        if (!settings.resources.empty())
            request.resources = {PathFromUtf8(settings.resources), settings.resources};
        for (const std::string& language : settings.masterStrings)
            request.languages.push_back({PathFromUtf8(language), language});
        if (request.directories.empty() && !request.resources && request.languages.empty()) {
            status = Usage("lint needs a directory: DIR, --resources DIR or --master-strings DIR");
            return;
        }
        for (const auto* list : {&lintDirs, &settings.masterStrings})
            for (const std::string& given : *list)
                if (!IsDirectory(given)) {
                    status = Usage(given + " is not a directory");
                    return;
                }
        if (!settings.resources.empty() && !IsDirectory(settings.resources)) {
            status = Usage(settings.resources + " is not a directory");
            return;
        }
        const auto outcome = QanTool::Lint(request);
        if (lintFormat == "json") {
            std::cout << QanTool::FindingsAsJson(outcome) << '\n';
        } else {
            outcome.findings.Print(std::cout);
            std::cout << QanTool::Summary(outcome) << '\n';
        }
        const bool failed = outcome.findings.HasErrors() ||
                            (werror && outcome.findings.Count(QanTool::Severity::Warning) > 0);
        status = failed ? 1 : 0;
    });

    bool check = false;
    auto* fmt = app.add_subcommand(
        "fmt", "rewrite a resource directory's files into the form the library reads");
    fmt->add_flag("--check", check, "only report the files that would change (exit 1 if any)");
    fmt->add_option("DIR", dir, "resource directory")->required();
    fmt->callback([&] {
        if (!IsDirectory(dir)) {
            status = Usage(dir + " is not a directory");
            return;
        }
        const auto plan = QanTool::PlanFormat(PathFromUtf8(dir));
        if (!plan.refusal.empty()) {
            status = Usage("fmt refused, nothing changed: " + plan.refusal);
            return;
        }
        if (check) {
            for (const auto& change : plan.changes)
                std::cout << "would reformat " << change.name << '\n';
            status = plan.changes.empty() ? 0 : 1;
            return;
        }
        // Only files that were really replaced are reported as reformatted.
        const auto result = QanTool::ApplyFormat(PathFromUtf8(dir), plan);
        for (const auto& name : result.replaced)
            std::cout << "reformatted " << name << '\n';
        if (!result.error.empty())
            status = Usage(result.error);
    });

    std::vector<std::string> languages;
    std::string reportFormat = "text";
    // Languages given with --master-strings come first, then those named after the command.
    const auto readLanguages = [&] {
        std::vector<std::string> all = settings.masterStrings;
        all.insert(all.end(), languages.begin(), languages.end());
        std::vector<QanTool::Language> read;
        for (const std::string& language : all)
            read.push_back(QanTool::ReadLanguage(PathFromUtf8(language), language));
        return read;
    };
    auto* stats = app.add_subcommand(
        "stats", "per language and kind: texts, keys answered, missing, identical to the source");
    stats->add_option("LANGUAGE", languages,
                      "master string directories, the source language first (or --master-strings)");
    stats->add_option("--format", reportFormat, "text or json")
        ->check(CLI::IsMember({"text", "json"}));
    stats->callback([&] {
        const auto read = readLanguages();
        if (read.empty() || settings.resources.empty()) {
            status = Usage("stats needs --resources DIR and at least one language directory");
            return;
        }
        QanTool::PrintStats(
            QanTool::ComputeStats(QanTool::ReadKeyTables(PathFromUtf8(settings.resources)), read),
            reportFormat == "json", std::cout);
    });
    auto* compare = app.add_subcommand(
        "compare", "two languages: missing, extra and identical texts, and texts whose "
                   "placeholders, mnemonics, tagged fields or escapes differ");
    compare->add_option("LANGUAGE", languages,
                        "source and target master string directories (or --master-strings)");
    compare->add_option("--format", reportFormat, "text or json")
        ->check(CLI::IsMember({"text", "json"}));
    compare->callback([&] {
        const auto read = readLanguages();
        if (read.size() != 2) {
            status = Usage("compare needs exactly two language directories, the source first");
            return;
        }
        status = QanTool::PrintComparison(QanTool::Compare(read[0], read[1]),
                                          reportFormat == "json", std::cout);
    });

    auto* cursors = app.add_subcommand("cursor-table", "write or dump a cursor table");
    cursors->require_subcommand(1);
    std::string listPath, outPath, modulePath;
    bool force = false;
    auto* write = cursors->add_subcommand(
        "write", "encode LIST (one 'name<TAB>id' or 'name id' a line) into the table bytes OUT");
    write->add_option("LIST", listPath, "name/id list")->required();
    write->add_option("OUT", outPath, "table bytes to embed as raw-data resource 2")->required();
    write->add_flag("--force", force, "replace an existing OUT");
    write->callback([&] { status = CursorWrite(listPath, outPath, force); });
    auto* dump = cursors->add_subcommand(
        "dump", "print the cursor table of a QanIcons.dll (or of table bytes)");
    dump->add_option("DLL", modulePath, "module file")->required();
    dump->callback([&] { status = CursorDump(modulePath); });

    // The translators' loop: export to a catalogue, import it back, pseudo-localise.
    std::string format, outFile, sourceLang, targetLang;
    std::vector<std::string> exportDirs;
    auto* exportCmd = app.add_subcommand(
        "export", "write the strings of SOURCE_DIR (and TARGET_DIR's translations) as PO or XLIFF");
    exportCmd->add_option("DIRS", exportDirs, "SOURCE_DIR [TARGET_DIR]: master string directories")
        ->required()
        ->expected(1, 2);
    exportCmd->add_option("--format", format, "po (default) or xliff")
        ->check(CLI::IsMember({"po", "xliff"}));
    exportCmd->add_option("-o,--output", outFile, "write to FILE instead of standard output")
        ->type_name("FILE");
    exportCmd->add_option("--source-lang", sourceLang,
                          "source language (default: from SOURCE_DIR)");
    exportCmd->add_option("--target-lang", targetLang,
                          "target language (default: from TARGET_DIR)");
    exportCmd->add_flag("--force", force, "replace an existing output FILE");
    exportCmd->footer("Key tables are read from --resources DIR (default: SOURCE_DIR).");
    exportCmd->callback([&] {
        QanTool::ExportRequest request;
        request.sourceDir = PathFromUtf8(exportDirs[0]);
        if (exportDirs.size() > 1)
            request.targetDir = PathFromUtf8(exportDirs[1]);
        request.resourceDir =
            PathFromUtf8(settings.resources.empty() ? exportDirs[0] : settings.resources);
        request.sourceLanguage = sourceLang;
        request.targetLanguage = targetLang;
        request.format =
            format == "xliff" ? QanTool::CatalogueFormat::Xliff : QanTool::CatalogueFormat::Po;
        std::string document;
        if (auto error = QanTool::ExportCatalogue(request, document, std::cerr); !error.empty())
            status = Usage(error);
        else if (outFile.empty())
            std::cout << document;
        else if (auto written = QanTool::WriteOutputFile(PathFromUtf8(outFile), document, force);
                 !written.empty())
            status = Usage(written);
    });
    QanTool::ImportRequest importRequest;
    std::string importFile, importDir;
    auto* importCmd = app.add_subcommand(
        "import", "write the texts of a PO or XLIFF FILE into the master string directory DIR");
    importCmd->add_option("FILE", importFile, "PO or XLIFF file")->required();
    importCmd->add_option("DIR", importDir, "master string directory")->required();
    importCmd->add_option("--format", format, "po or xliff (default: by content)")
        ->check(CLI::IsMember({"po", "xliff"}));
    importCmd->add_flag("--force", importRequest.force,
                        "replace existing strings.xml and startupstrings.xml");
    importCmd->add_flag("--keep-fuzzy", importRequest.options.keepFuzzy,
                        "use fuzzy translations (default: the source text, as gettext does)");
    importCmd->add_flag("--skip-untranslated", importRequest.options.skipUntranslated,
                        "leave out untranslated messages (default: write the source text)");
    importCmd->footer(QanTool::kImportRules);
    importCmd->callback([&] {
        importRequest.file = PathFromUtf8(importFile);
        importRequest.dir = PathFromUtf8(importDir);
        if (!format.empty())
            importRequest.format =
                format == "xliff" ? QanTool::CatalogueFormat::Xliff : QanTool::CatalogueFormat::Po;
        if (auto error = QanTool::ImportIntoDirectory(importRequest, std::cerr); !error.empty())
            status = Usage(error);
    });
    std::string pseudoSource, pseudoOut;
    int expand = 35;
    auto* pseudo = app.add_subcommand(
        "pseudo", "write a pseudo-localised master string directory OUT_DIR from SOURCE_DIR");
    pseudo->add_option("SOURCE_DIR", pseudoSource, "master string directory")->required();
    pseudo->add_option("OUT_DIR", pseudoOut, "directory to write (created if missing)")->required();
    pseudo->add_option("--expand", expand, "percentage by which each text grows (default 35)")
        ->check(CLI::Range(0, 1000));
    pseudo->add_flag("--force", force, "replace existing string files in OUT_DIR");
    pseudo->callback([&] {
        if (auto error = QanTool::PseudoDirectory(
                PathFromUtf8(pseudoSource), PathFromUtf8(pseudoOut), expand, force, std::cerr);
            !error.empty())
            status = Usage(error);
    });

    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& e) {
        return app.exit(e);
    } catch (const CLI::CallForAllHelp& e) {
        return app.exit(e);
    } catch (const CLI::CallForVersion& e) {
        return app.exit(e);
    } catch (const CLI::ParseError& e) {
        return Usage(std::string(e.what()) + " (see qanres --help)");
    }
    return status;
}

// Every argument reaches the commands as UTF-8, and output leaves as the bytes written.
template <class Char>
int RunWithUtf8Arguments(int argc, Char** argv) {
    Framework::Platform::UseBinaryStandardStreams();
    std::vector<std::string> arguments = Framework::Platform::Utf8Arguments(argc, argv);
    std::vector<char*> pointers;
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    return Run(argc, pointers.data());
}

} // namespace

#ifdef _WIN32
// The wide entry point: Windows passes arguments as UTF-16 whatever the code page is.
int wmain(int argc, wchar_t** argv) {
    return RunWithUtf8Arguments(argc, argv);
}
#else
int main(int argc, char** argv) {
    return RunWithUtf8Arguments(argc, argv);
}
#endif

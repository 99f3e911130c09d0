// main.cpp: the qanres command line. Options set the library's directories and application
// name; each command answers one look-up, or checks, formats or builds resource files.
// Exit status: 0 found or clean, 1 nothing found or a fault found, 2 usage error.
#include "Bytes.h"
#include "CursorTable.h"
#include "Files.h"
#include "Format.h"
#include "Lint.h"
#include "Lookups.h"

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

bool IsDirectory(const std::string& dir) {
    std::error_code ec;
    return std::filesystem::is_directory(dir, ec);
}

int CursorWrite(const std::string& listPath, const std::string& outPath, bool force) {
    const auto read = QanTool::ReadWholeFile(listPath);
    if (!read)
        return Usage("cannot read " + listPath);
    const std::string& list = *read;
    std::error_code ec;
    if (!force && std::filesystem::exists(outPath, ec))
        return Usage(outPath + " exists (use --force to replace it)");
    std::vector<QanTool::CursorListProblem> problems;
    auto entries = QanTool::ParseCursorList(list, problems);
    if (!problems.empty())
        return Usage(listPath + ":" + std::to_string(problems.front().line) + ": " +
                     problems.front().message);
    const std::string bytes = QanTool::EncodeCursorTable(std::move(entries));
    std::ofstream out(outPath, std::ios::binary | std::ios::trunc);
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

} // namespace

int main(int argc, char** argv) {
    CLI::App app{"qanres: looks up, checks and formats the resources of the Qan suite"};
    app.name("qanres");
    app.set_version_flag("--version", "qanres " QANRES_VERSION);
    app.require_subcommand(1);
    // Options such as --escape may stand after the command too.
    app.fallthrough();

    QanTool::LookupSettings settings;
    app.add_option("--master-strings", settings.masterStrings,
                   "directory of startupstrings.xml, strings.xml and override/")
        ->type_name("DIR");
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

    unsigned flags = 0;
    std::string text;
    auto* strip = app.add_subcommand(
        "strip-menu", "TEXT without menu markers; FLAGS: 1 '&', 2 after tab, 4 '%x', 8 '-'");
    strip->add_option("FLAGS", flags, "sum of 1, 2, 4, 8")->required();
    strip->add_option("TEXT", text, "menu text")->required();
    strip->callback([&] { status = QanTool::StripMenu(flags, text, settings.escape, std::cout); });

    std::string dir;
    auto* lint = app.add_subcommand(
        "lint", "check a resource directory; prints file:line:column: error|warning: message");
    lint->add_option("DIR", dir, "resource directory")->required();
    lint->callback([&] {
        if (!IsDirectory(dir)) {
            status = Usage(dir + " is not a directory");
            return;
        }
        const auto findings = QanTool::LintDirectory(dir, dir);
        findings.Print(std::cout);
        status = findings.HasErrors() ? 1 : 0;
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
        const auto plan = QanTool::PlanFormat(dir);
        if (!plan.refusal.empty()) {
            status = Usage("fmt refused, nothing changed: " + plan.refusal);
            return;
        }
        for (const auto& change : plan.changes)
            std::cout << (check ? "would reformat " : "reformatted ") << change.name << '\n';
        if (check) {
            status = plan.changes.empty() ? 0 : 1;
            return;
        }
        if (const std::string error = QanTool::ApplyFormat(dir, plan); !error.empty())
            status = Usage(error);
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

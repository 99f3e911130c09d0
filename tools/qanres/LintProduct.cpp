// LintProduct.cpp: a product's directories checked together: which directory is what,
// every key-table id against every language's texts, texts that no key reaches, and the
// files that the library would never read because of their names.
#include "Lint.h"

#include "Json.h"

#include <algorithm>
#include <cctype>
#include <set>

namespace QanTool {
namespace {

namespace fs = std::filesystem;

// Every name the library reads in a directory; override/ holds the override file.
constexpr const char* kKnownFiles[] = {kStartupStrings, kFullStrings,        "string.csv",
                                       "caption.csv",   "tooltipHeader.csv", "tooltipBody.csv",
                                       kIconMap,        kIconLibrary,        kCursorTable};

std::string Lower(std::string text) {
    for (char& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

// Edit distance, bounded: names that far apart are no misspelling of each other.
std::size_t Distance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j)
        row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t up = row[j];
            row[j] =
                std::min({row[j] + 1, row[j - 1] + 1, diagonal + (a[i - 1] == b[j - 1] ? 0u : 1u)});
            diagonal = up;
        }
    }
    return row[b.size()];
}

bool IsKnown(const std::string& name) {
    return std::any_of(std::begin(kKnownFiles), std::end(kKnownFiles),
                       [&](const char* known) { return name == known; });
}

bool HoldsResourceFile(const fs::path& dir) {
    std::error_code ec;
    for (const char* known : kKnownFiles)
        if (fs::exists(dir / known, ec))
            return true;
    return fs::exists(dir / kOverrideStrings, ec);
}

std::string Joined(const std::string& display, const std::string& name) {
    if (display.empty())
        return name;
    const char last = display.back();
    return display + (last == '/' || last == '\\' ? "" : "/") + name;
}

// Files whose names the library never asks for: misspelt or differently cased names of
// files it reads get the name it wants.
void CheckNames(const LintDirectoryRef& dir, DiagnosticList& findings) {
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator(dir.path, ec)) {
        const std::string name = entry.path().filename().string();
        if (name.empty() || name[0] == '.' || entry.is_directory(ec) || IsKnown(name))
            continue;
        std::string message = "unknown file: the library reads no file of this name";
        for (const char* known : kKnownFiles) {
            if (Lower(name) == Lower(known)) {
                message = std::string("the library reads '") + known +
                          "' and finds this file only where names ignore case (Windows): "
                          "rename it";
                break;
            }
            if (Distance(Lower(name), Lower(known)) <= 2) {
                message = std::string("unknown file: the library reads no file of this name; "
                                      "did you mean '") +
                          known + "'?";
                break;
            }
        }
        findings.Add(Joined(dir.display, name), {0, 0}, Severity::Warning, message);
    }
}

// The directories below root that hold resource files, in path order.
std::vector<LintDirectoryRef> FindProductDirectories(const LintDirectoryRef& root) {
    std::vector<LintDirectoryRef> found;
    std::error_code ec;
    fs::recursive_directory_iterator it(root.path, fs::directory_options::skip_permission_denied,
                                        ec);
    for (; !ec && it != fs::recursive_directory_iterator(); it.increment(ec)) {
        if (it.depth() > 3) {
            it.disable_recursion_pending();
            continue;
        }
        if (!it->is_directory(ec) || it->path().filename() == "override")
            continue;
        if (HoldsResourceFile(it->path())) {
            const auto relative = fs::relative(it->path(), root.path, ec).generic_string();
            found.push_back({it->path(), Joined(root.display, relative)});
        }
    }
    std::sort(found.begin(), found.end(),
              [](const auto& a, const auto& b) { return a.display < b.display; });
    return found;
}

bool SameDirectory(const LintDirectoryRef& a, const LintDirectoryRef& b) {
    std::error_code ec;
    return fs::equivalent(a.path, b.path, ec);
}

bool HasKeyTables(const fs::path& dir) {
    std::error_code ec;
    for (const char* table : kKeyTables)
        if (fs::exists(dir / table, ec))
            return true;
    return fs::exists(dir / kIconMap, ec);
}

bool HasTexts(const fs::path& dir) {
    std::error_code ec;
    return fs::exists(dir / kStartupStrings, ec) || fs::exists(dir / kFullStrings, ec) ||
           fs::exists(dir / kOverrideStrings, ec);
}

} // namespace

LintOutcome Lint(const LintRequest& request) {
    LintOutcome outcome;
    DiagnosticList& findings = outcome.findings;

    // Which directory is what: given with an option, or recognised by what it holds; a
    // directory holding no resource file stands for the product tree below it.
    std::vector<LintDirectoryRef> resources, languages = request.languages;
    if (request.resources)
        resources.push_back(*request.resources);
    std::vector<LintDirectoryRef> plain;
    for (const auto& dir : request.directories) {
        if (HoldsResourceFile(dir.path)) {
            plain.push_back(dir);
            continue;
        }
        const auto below = FindProductDirectories(dir);
        if (below.empty())
            findings.Add(dir.display, {0, 0}, Severity::Error,
                         "no resource file here or below: the library would read nothing "
                         "(it looks for startupstrings.xml, strings.xml, the key tables *.csv, "
                         "icons.map.xml)");
        plain.insert(plain.end(), below.begin(), below.end());
    }
    for (const auto& dir : plain) {
        if (HasKeyTables(dir.path) || !HasTexts(dir.path))
            resources.push_back(dir);
        if (HasTexts(dir.path))
            languages.push_back(dir);
    }
    // In a recognised tree the language called "en" is the source, else the first given.
    if (request.languages.empty()) {
        const auto english = std::find_if(languages.begin(), languages.end(), [](const auto& d) {
            const auto name = d.path.filename().string();
            return name == "en" || name == "en-US" || name == "en_US";
        });
        if (english != languages.end())
            std::rotate(languages.begin(), english, english + 1);
    }
    for (auto* list : {&resources, &languages}) {
        std::set<fs::path> seen;
        std::erase_if(*list, [&](const LintDirectoryRef& d) {
            std::error_code ec;
            const auto canonical = fs::weakly_canonical(d.path, ec);
            return !seen.insert(ec ? d.path : canonical).second;
        });
    }

    // Each directory's files on their own, once.
    std::map<fs::path, DirectoryContents> contents;
    for (const auto* list : {&resources, &languages})
        for (const auto& dir : *list) {
            std::error_code ec;
            const auto key = fs::weakly_canonical(dir.path, ec);
            if (contents.count(key))
                continue;
            if (!fs::is_directory(dir.path, ec)) {
                findings.Add(dir.display, {0, 0}, Severity::Error, "not a directory");
                contents[key];
                continue;
            }
            DirectoryContents read = LintFiles(dir.path, dir.display, findings);
            if (read.files == 0)
                findings.Add(dir.display, {0, 0}, Severity::Error,
                             "no resource file in this directory: the library would read nothing "
                             "here");
            CheckNames(dir, findings);
            outcome.files += read.files;
            ++outcome.directories;
            contents[key] = std::move(read);
        }
    const auto of = [&](const LintDirectoryRef& dir) -> const DirectoryContents& {
        std::error_code ec;
        return contents[fs::weakly_canonical(dir.path, ec)];
    };
    if (!languages.empty())
        outcome.sourceLanguage = languages.front().display;

    // Every key-table id against every language; texts that no key reaches.
    std::set<std::string> reached;
    for (const auto& resourceDir : resources)
        for (const KeyUse& use : of(resourceDir).keyUses) {
            reached.insert(use.id);
            std::vector<std::string> lacking;
            for (const auto& language : languages)
                if (!of(language).ids.count(use.id))
                    lacking.push_back(language.display);
            const std::string file = Joined(resourceDir.display, use.file);
            if (languages.empty())
                continue;
            if (lacking.size() == languages.size() && languages.size() == 1)
                findings.Add(file, use.at, Severity::Error,
                             "id '" + use.id + "' is in no string text file" +
                                 (SameDirectory(languages[0], resourceDir)
                                      ? std::string()
                                      : " of " + languages[0].display) +
                                 ": the key is answered with an empty text");
            else if (lacking.size() == languages.size())
                findings.Add(file, use.at, Severity::Error,
                             "id '" + use.id +
                                 "' has a text in no language: the key is answered with an "
                                 "empty text");
            else
                for (const auto& language : lacking)
                    findings.Add(file, use.at, Severity::Error,
                                 "id '" + use.id + "' has no text in " + language +
                                     ": there the key is answered with an empty text");
        }
    const bool anyKeys =
        std::any_of(resources.begin(), resources.end(),
                    [&](const LintDirectoryRef& d) { return !of(d).keyUses.empty(); });
    if (anyKeys) {
        std::set<std::string> reported;
        for (const auto& language : languages)
            for (const auto& [id, use] : of(language).ids)
                if (!reached.count(id) && reported.insert(id).second)
                    findings.Add(Joined(language.display, use.file), {use.line, 1},
                                 Severity::Warning,
                                 "text '" + id + "' is reached by no key of the key tables");
    } else if (!languages.empty() && !resources.empty() && request.resources) {
        findings.Add(request.resources->display, {0, 0}, Severity::Warning,
                     "no key table here: no text can be reached");
    }
    if (resources.size() > 0 && languages.empty() && anyKeys)
        findings.Add(resources.front().display, {0, 0}, Severity::Warning,
                     "no language given: the key tables' ids were not checked against texts "
                     "(name each language with --master-strings DIR)");

    // Texts the source language has and a translation lacks, where no key made it an error.
    if (languages.size() > 1)
        for (std::size_t l = 1; l < languages.size(); ++l)
            for (const auto& [id, use] : of(languages[0]).ids)
                if (!reached.count(id) && !of(languages[l]).ids.count(id))
                    findings.Add(Joined(languages[l].display, kFullStrings), {0, 0},
                                 Severity::Warning,
                                 "id '" + id + "' of the source language " + languages[0].display +
                                     " has no text here");
    return outcome;
}

DiagnosticList LintDirectory(const std::filesystem::path& dir, const std::string& displayDir) {
    DiagnosticList findings;
    const DirectoryContents contents = LintFiles(dir, displayDir, findings);
    if (!contents.textFiles.empty())
        for (const KeyUse& use : contents.keyUses)
            if (!contents.ids.count(use.id))
                findings.Add(Joined(displayDir, use.file), use.at, Severity::Error,
                             "id '" + use.id +
                                 "' is in no string text file: the key is answered with an "
                                 "empty text");
    return findings;
}

std::string Summary(const LintOutcome& outcome) {
    const auto plural = [](std::size_t n, const char* one, const char* many) {
        return std::to_string(n) + " " + (n == 1 ? one : many);
    };
    std::string line = "checked " + plural(outcome.files, "file", "files") + " in " +
                       plural(outcome.directories, "directory", "directories") + ": " +
                       plural(outcome.findings.Count(Severity::Error), "error", "errors") + ", " +
                       plural(outcome.findings.Count(Severity::Warning), "warning", "warnings");
    if (!outcome.sourceLanguage.empty())
        line += " (source language: " + outcome.sourceLanguage + ")";
    return line;
}

std::string FindingsAsJson(const LintOutcome& outcome) {
    std::string out = "{\"files\":" + std::to_string(outcome.files) +
                      ",\"directories\":" + std::to_string(outcome.directories) +
                      ",\"errors\":" + std::to_string(outcome.findings.Count(Severity::Error)) +
                      ",\"warnings\":" + std::to_string(outcome.findings.Count(Severity::Warning)) +
                      ",\"sourceLanguage\":" + JsonString(outcome.sourceLanguage) +
                      ",\"findings\":[";
    bool first = true;
    for (const Diagnostic* d : outcome.findings.Sorted()) {
        out += std::string(first ? "" : ",") + "{\"file\":" + JsonString(d->file) +
               ",\"line\":" + std::to_string(d->line) + ",\"column\":" + std::to_string(d->column) +
               ",\"severity\":\"" + (d->severity == Severity::Error ? "error" : "warning") +
               "\",\"message\":" + JsonString(d->message) + "}";
        first = false;
    }
    return out + "]}";
}

} // namespace QanTool

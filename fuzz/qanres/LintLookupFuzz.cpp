// LintLookupFuzz.cpp: lint against the library. The input is written as a resource
// directory (and formatted once when lint finds errors); when lint finds no error in it,
// a service freshly built over it must answer every row its key tables hold, as their
// author wrote them, through the public look-ups: the decoded text of the element the
// row's id names (an override's before the string file's, the first of equal ids), an
// empty text for an id that no text file holds, and the same answers before and after
// the full string file is read; and every icon map entry, the first of equal keys, names
// its file in the icon folder.
#include "Format.h"
#include "IconMap.h"
#include "KeyTable.h"
#include "Lint.h"
#include "ScratchDirectory.h"
#include "TextFile.h"

#include "base/Settings.h"
#include "base/Unicode.h"
#include "platform/Path.h"
#include "service/ResourcesImpl.h"
#include "strings/DecodeStringText.h"

#include <framework/Resources.h>

#include <cstdio>
#include <cstdlib>
#include <cwctype>
#include <map>
#include <optional>

namespace {

using Framework::Resources;

// The texts of a text file by id, as its author wrote them; the first of equal ids.
std::optional<std::map<std::string, std::string>>
Texts(const std::map<std::string, std::string>& files, const char* name) {
    const auto file = files.find(name);
    if (file == files.end())
        return std::nullopt;
    std::map<std::string, std::string> texts;
    for (const auto& element : QanTool::ReadAsMarkup(file->second).elements)
        if (element.quotedValues > 0)
            texts.emplace(std::string(element.id), std::string(element.text));
    return texts;
}

// A "name.png.png" entry, in any case, stands for the single image "name.png".
bool EndsWithDoublePng(const QanStringT<wchar_t>& name) {
    static constexpr std::wstring_view suffix = L".png.png";
    if (name.size() < suffix.size())
        return false;
    for (std::size_t i = 0; i < suffix.size(); ++i)
        if (std::towlower(static_cast<std::wint_t>(name[name.size() - suffix.size() + i])) !=
            static_cast<std::wint_t>(suffix[i]))
            return false;
    return true;
}

void Fail(const std::string& key, const char* table, const QanStringT<wchar_t>& answer,
          const QanStringT<wchar_t>& expected) {
    std::fprintf(stderr, "key %s of %s: answered %s, the files say %s\n", key.c_str(), table,
                 Framework::Utf8::Encode(answer).c_str(),
                 Framework::Utf8::Encode(expected).c_str());
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static QanFuzz::ScratchDirectory directory;
    directory.Fill(QanFuzz::SplitInput(data, size));
    // A directory with errors is given one fmt run first, as a user would: most mutated
    // inputs are out of order, and compared only when lint calls the result clean.
    if (QanTool::LintDirectory(directory.Path(), "").HasErrors()) {
        const QanTool::FormatPlan plan = QanTool::PlanFormat(directory.Path());
        if (!plan.refusal.empty() || !QanTool::ApplyFormat(directory.Path(), plan).error.empty() ||
            QanTool::LintDirectory(directory.Path(), "").HasErrors())
            return 0;
    }
    // How many inputs lint called clean, printed at exit: a run that compares nothing
    // shows as zero.
    static std::size_t clean = 0;
    if (clean++ == 0)
        std::atexit([] { std::fprintf(stderr, "lint-clean directories compared: %zu\n", clean); });
    const auto files = directory.Snapshot();

    // The text each id is answered with. A missing or unreadable string file leaves the
    // start-up texts in place (and lint, finding no error, saw no start-up id without it).
    const auto startup = Texts(files, QanTool::kStartupStrings);
    const auto full = Texts(files, QanTool::kFullStrings);
    const auto overrides = Texts(files, QanTool::kOverrideStrings);
    const auto& texts = full ? *full : startup ? *startup : std::map<std::string, std::string>{};
    auto textOf = [&](const std::string& id) {
        const auto found = texts.find(id);
        if (found == texts.end())
            return QanStringT<wchar_t>();
        if (overrides)
            if (const auto over = overrides->find(id); over != overrides->end())
                return Framework::Internal::DecodeStringText(over->second);
        return Framework::Internal::DecodeStringText(found->second);
    };

    auto& settings = Framework::Internal::ProcessSettings();
    settings.masterStringDirectory = Framework::Utf8::Decode(directory.Path().string());
    settings.resourceDirectory = settings.masterStringDirectory;
    settings.iconDirectory = settings.masterStringDirectory;
    settings.iconSubdirectory.clear();
    Framework::Internal::ResourcesImpl service;
    Framework::Internal::IResources::SetResourcesForTests(&service);

    using Getter = QanStringT<wchar_t> (*)(const QanStringT<wchar_t>&);
    const Getter getters[] = {Resources::GetString, Resources::GetCaption,
                              Resources::GetTooltipHeader, Resources::GetTooltipBody};
    for (int round = 0; round < 2; ++round)
        for (std::size_t t = 0; t < std::size(QanTool::kKeyTables); ++t) {
            const auto file = files.find(QanTool::kKeyTables[t]);
            if (file == files.end())
                continue;
            std::map<std::string, std::string> ids; // the first of equal keys
            for (const auto& line : QanTool::ReadKeyLines(file->second))
                ids.emplace(std::string(line.key), std::string(line.id));
            for (const auto& [key, id] : ids) {
                const QanStringT<wchar_t> answer = getters[t](Framework::Utf8::Decode(key));
                const QanStringT<wchar_t> expected = textOf(id);
                if (answer != expected)
                    Fail(key, QanTool::kKeyTables[t], answer, expected);
            }
        }

    if (const auto map = files.find(QanTool::kIconMap); map != files.end()) {
        namespace Path = Framework::Path;
        const QanStringT<wchar_t> folder =
            Path::Combine(settings.iconDirectory, settings.iconSubdirectory);
        std::map<std::string, std::string> fileOf; // the first of equal keys
        for (const auto& entry : QanTool::ReadIconMap(map->second).entries)
            fileOf.emplace(entry.key, entry.file);
        for (const auto& [key, file] : fileOf) {
            const QanStringT<wchar_t> name = Framework::Utf8::Decode(file);
            Resources::ResourceID expected;
            if (EndsWithDoublePng(name))
                expected.pngPath = Path::Combine(folder, name.substr(0, name.size() - 4));
            else
                expected.iconPath = Path::AddBackslash(Path::Combine(folder, name));
            const Resources::ResourceID answer = Resources::GetIcon(Framework::Utf8::Decode(key));
            if (!(answer == expected))
                Fail(key, QanTool::kIconMap, answer.iconPath + L"|" + answer.pngPath,
                     expected.iconPath + L"|" + expected.pngPath);
        }
    }
    Framework::Internal::IResources::SetResourcesForTests(nullptr);
    return 0;
}

// StringFileWriter.cpp: the files are laid out exactly as fmt lays them out, so that a
// written directory passes "fmt --check" and "lint" without a finding.
#include "StringFileWriter.h"

#include "Files.h"
#include "Format.h"

#include "base/Unicode.h"
#include "platform/DurableWrite.h"

#include <algorithm>
#include <random>

namespace QanTool {

std::string CanonicalStringFile(std::vector<StoredString> strings) {
    std::stable_sort(strings.begin(), strings.end(),
                     [](const StoredString& a, const StoredString& b) { return a.id < b.id; });
    std::string out = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<strings>\n";
    for (const auto& s : strings)
        out += "  <s id=\"" + s.id + "\">" + s.stored + "</s>\n";
    out += "</strings>\n";
    return out;
}

bool IsWritableId(const std::string& id) {
    if (id.empty() || Framework::Unicode::FindInvalidUtf8(id) != std::string::npos)
        return false;
    return std::none_of(id.begin(), id.end(), [](char c) {
        const auto b = static_cast<unsigned char>(c);
        return b < 0x20 || b == 0x7F || c == '"' || c == '<' || c == '>' || c == '&';
    });
}

std::string WriteFilesSafely(const std::filesystem::path& dir, const std::vector<NewFile>& files) {
    FormatPlan replace;
    std::vector<std::pair<std::filesystem::path, std::filesystem::path>> created;
    static std::mt19937_64 random{std::random_device{}()};
    auto removeCreated = [&] {
        std::error_code ec;
        for (const auto& [temporary, target] : created)
            std::filesystem::remove(temporary, ec);
    };
    for (const auto& file : files) {
        const auto target = dir / file.name;
        if (auto old = ReadWholeFile(target)) {
            replace.changes.push_back({file.name, file.bytes, *old});
            continue;
        }
        std::error_code ec;
        if (std::filesystem::symlink_status(target, ec).type() !=
            std::filesystem::file_type::not_found) {
            removeCreated();
            return target.string() + " exists and is not a regular file";
        }
        const auto temporary =
            dir / ("." + file.name + ".qanres-new-" + std::to_string(random() % 1000000000u));
        const auto perms = std::filesystem::perms::owner_read |
                           std::filesystem::perms::owner_write |
                           std::filesystem::perms::group_read | std::filesystem::perms::others_read;
        if (auto error = Framework::Platform::CreateFileDurably(temporary, file.bytes, perms);
            !error.empty()) {
            removeCreated();
            return error;
        }
        created.emplace_back(temporary, target);
    }
    const FormatResult result = ApplyFormat(dir, replace);
    if (!result.error.empty()) {
        removeCreated();
        return result.error;
    }
    std::string error;
    for (const auto& [temporary, target] : created) {
        std::error_code ec;
        if (error.empty()) {
            std::filesystem::create_hard_link(temporary, target, ec);
            if (ec)
                error = "cannot create " + target.string() + ": " + ec.message();
        }
        std::filesystem::remove(temporary, ec);
    }
    if (!created.empty())
        Framework::Platform::SyncDirectory(dir);
    return error;
}

} // namespace QanTool

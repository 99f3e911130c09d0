// SplitInput.h: one fuzz input as the files of a resource directory. The parts are cut at
// a marker line and given, in order, to the names of kResourceFiles; an empty part, and
// every name past the last part, has no file. The marker is in every dictionary that fuzzes a
// directory.
#pragma once

#include "platform/Platform.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace QanFuzz {

inline constexpr std::string_view kFileMarker = "\n--8<--\n";

// The order in which the parts of an input become files.
inline constexpr const char* kResourceFiles[] = {
    "startupstrings.xml", "strings.xml",       "override/strings.xml", "string.csv",
    "caption.csv",        "tooltipHeader.csv", "tooltipBody.csv",      "icons.map.xml"};
inline constexpr std::size_t kResourceFileCount = std::size(kResourceFiles);

struct NamedFile {
    std::string name; // empty: no file
    std::string bytes;
};

inline std::vector<NamedFile> SplitInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    std::vector<NamedFile> files;
    std::size_t begin = 0;
    while (files.size() < kResourceFileCount) {
        const std::size_t marker = input.find(kFileMarker, begin);
        const std::size_t end = marker == std::string_view::npos ? input.size() : marker;
        files.push_back(
            {kResourceFiles[files.size()], std::string(input.substr(begin, end - begin))});
        if (files.back().bytes.empty())
            files.back().name.clear();
        if (marker == std::string_view::npos)
            break;
        begin = marker + kFileMarker.size();
    }
    return files;
}

// A platform whose files are the named parts, under the directory "R" (so the path of
// "strings.xml" is "R/strings.xml"); every read hands out a buffer of exactly the file's
// size, so that the sanitizer sees any read past it. Nothing real is asked.
class DirectoryPlatform final : public Framework::Platform::IPlatform {
public:
    std::map<std::wstring, std::string> files;

    void Serve(const std::vector<NamedFile>& parts) {
        files.clear();
        for (const auto& part : parts)
            if (!part.name.empty())
                files[L"R/" + std::wstring(part.name.begin(), part.name.end())] = part.bytes;
    }

    std::unique_ptr<char[]> ReadFileInfoBuffer(const wchar_t* path,
                                               std::uint64_t& size) const override {
        const auto found = files.find(path);
        if (found == files.end())
            return nullptr;
        std::unique_ptr<char[]> copy(new char[found->second.size()]);
        if (!found->second.empty())
            std::memcpy(copy.get(), found->second.data(), found->second.size());
        size = found->second.size();
        return copy;
    }
    bool Exists(const QanStringT<wchar_t>& path) const override { return files.count(path) != 0; }
    bool IsFile(const QanStringT<wchar_t>& path) const override { return Exists(path); }
    bool IsFolder(const QanStringT<wchar_t>& path) const override { return path == L"R"; }
    QanStringT<wchar_t> ExecutableDirectory() const override { return L"X"; }
    HINSTANCE LoadModule(const wchar_t*) const override { return nullptr; }
    void FreeModule(HINSTANCE) const override {}
    std::span<const std::byte> FindRawDataResource(HINSTANCE, int) const override { return {}; }
    bool GetStockIconLocation(int, Framework::Platform::StockIconLocation&) const override {
        return false;
    }
    int CopyWide(wchar_t*, std::int64_t, const wchar_t*) const override { return 22; }
};

} // namespace QanFuzz

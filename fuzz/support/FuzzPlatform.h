// FuzzPlatform.h: a platform for the fuzz targets that serves the fuzzer's bytes as
// every file and as the raw-data resources of every module, and asks no real system.
#pragma once

#include "platform/PeResources.h"
#include "platform/Platform.h"

#include <cstring>

namespace QanFuzz {

class FuzzPlatform final : public Framework::Platform::IPlatform {
public:
    std::span<const std::byte> bytes;
    bool asPeFile = true; // resources found in bytes as a PE file, or bytes as the resource

    std::unique_ptr<char[]> ReadFileInfoBuffer(const wchar_t*, std::uint64_t& size) const override {
        // Exactly the file's bytes, so that the sanitizer sees any read past them.
        std::unique_ptr<char[]> copy(new char[bytes.size()]);
        if (!bytes.empty())
            std::memcpy(copy.get(), bytes.data(), bytes.size());
        size = bytes.size();
        return copy;
    }
    bool Exists(const QanStringT<wchar_t>&) const override { return false; }
    bool IsFile(const QanStringT<wchar_t>& path) const override { return path.size() % 3 == 1; }
    bool IsFolder(const QanStringT<wchar_t>& path) const override { return path.size() % 3 == 2; }
    QanStringT<wchar_t> ExecutableDirectory() const override { return {}; }
    HINSTANCE LoadModule(const wchar_t*) const override { return nullptr; }
    void FreeModule(HINSTANCE) const override {}
    std::span<const std::byte> FindRawDataResource(HINSTANCE, int id) const override {
        if (!asPeFile)
            return bytes;
        return Framework::Platform::FindPeRawData(bytes, static_cast<std::uint32_t>(id));
    }
    bool GetStockIconLocation(int, Framework::Platform::StockIconLocation&) const override {
        return false;
    }
    int CopyWide(wchar_t*, std::int64_t, const wchar_t*) const override { return 22; }
};

} // namespace QanFuzz

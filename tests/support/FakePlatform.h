// FakePlatform.h: a platform that forwards to the system's own unless a test replaces one
// of its answers. Installed for its lifetime through the library's platform seam.
#pragma once

#include "platform/Platform.h"

#include <atomic>
#include <functional>

namespace QanTest {

class FakePlatform : public Framework::Platform::IPlatform {
public:
    FakePlatform();           // installs itself
    ~FakePlatform() override; // restores the system's platform

    // Replacements; an empty function forwards to the system.
    std::function<std::unique_ptr<char[]>(const wchar_t*, std::uint64_t&)> readFile;
    std::function<HINSTANCE(const wchar_t*)> loadModule;
    std::function<void(HINSTANCE)> freeModule;
    std::function<std::span<const std::byte>(HINSTANCE, int)> findRawData;
    std::function<bool(int, Framework::Platform::StockIconLocation&)> stockIcon;

    // How often each operation was asked.
    mutable std::atomic<int> readFileCalls{0};
    mutable std::atomic<int> loadModuleCalls{0};
    mutable std::atomic<int> freeModuleCalls{0};

    std::unique_ptr<char[]> ReadFileInfoBuffer(const wchar_t* path,
                                               std::uint64_t& size) const override;
    Framework::Platform::UnreadFile WhyUnread(const wchar_t* path) const override;
    bool Exists(const QanStringT<wchar_t>& path) const override;
    bool IsFile(const QanStringT<wchar_t>& path) const override;
    bool IsFolder(const QanStringT<wchar_t>& path) const override;
    QanStringT<wchar_t> ExecutableDirectory() const override;
    HINSTANCE LoadModule(const wchar_t* name) const override;
    void FreeModule(HINSTANCE module) const override;
    std::span<const std::byte> FindRawDataResource(HINSTANCE module, int id) const override;
    bool GetStockIconLocation(int stockIconId,
                              Framework::Platform::StockIconLocation& location) const override;
    int CopyWide(wchar_t* destination, std::int64_t size, const wchar_t* source) const override;
};

} // namespace QanTest

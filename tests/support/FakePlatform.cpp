#include "support/FakePlatform.h"

namespace QanTest {

using Framework::Platform::SystemPlatform;

FakePlatform::FakePlatform() {
    Framework::Platform::SetPlatformForTests(this);
}
FakePlatform::~FakePlatform() {
    Framework::Platform::SetPlatformForTests(nullptr);
}

std::unique_ptr<char[]> FakePlatform::ReadFileInfoBuffer(const wchar_t* path,
                                                         std::uint64_t& size) const {
    ++readFileCalls;
    return readFile ? readFile(path, size) : SystemPlatform().ReadFileInfoBuffer(path, size);
}
Framework::Platform::UnreadFile FakePlatform::WhyUnread(const wchar_t* path) const {
    return SystemPlatform().WhyUnread(path);
}
bool FakePlatform::Exists(const QanStringT<wchar_t>& path) const {
    return SystemPlatform().Exists(path);
}
bool FakePlatform::IsFile(const QanStringT<wchar_t>& path) const {
    return SystemPlatform().IsFile(path);
}
bool FakePlatform::IsFolder(const QanStringT<wchar_t>& path) const {
    return SystemPlatform().IsFolder(path);
}
QanStringT<wchar_t> FakePlatform::ExecutableDirectory() const {
    return SystemPlatform().ExecutableDirectory();
}
HINSTANCE FakePlatform::LoadModule(const wchar_t* name) const {
    ++loadModuleCalls;
    return loadModule ? loadModule(name) : SystemPlatform().LoadModule(name);
}
void FakePlatform::FreeModule(HINSTANCE module) const {
    ++freeModuleCalls;
    if (freeModule)
        freeModule(module);
    else
        SystemPlatform().FreeModule(module);
}
std::span<const std::byte> FakePlatform::FindRawDataResource(HINSTANCE module, int id) const {
    return findRawData ? findRawData(module, id) : SystemPlatform().FindRawDataResource(module, id);
}
bool FakePlatform::GetStockIconLocation(int stockIconId,
                                        Framework::Platform::StockIconLocation& location) const {
    return stockIcon ? stockIcon(stockIconId, location)
                     : SystemPlatform().GetStockIconLocation(stockIconId, location);
}
int FakePlatform::CopyWide(wchar_t* destination, std::int64_t size, const wchar_t* source) const {
    return SystemPlatform().CopyWide(destination, size, source);
}

} // namespace QanTest

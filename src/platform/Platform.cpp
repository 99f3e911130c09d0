#include "platform/Platform.h"

#include <atomic>

namespace Framework::Platform {
namespace {
std::atomic<const IPlatform*> platformForTests{nullptr};
} // namespace

bool IPlatform::ReadFileInPieces(const wchar_t* path,
                                 const std::function<bool(std::string_view)>& piece) const {
    std::uint64_t size = 0;
    const auto bytes = ReadFileInfoBuffer(path, size);
    return bytes && piece(std::string_view(bytes.get(), static_cast<std::size_t>(size)));
}

std::unique_ptr<char[]> IPlatform::ReadFileInfoBuffer(
    const wchar_t* path, std::uint64_t& size,
    const std::function<void(const char*, std::size_t, std::size_t)>& arrived) const {
    std::unique_ptr<char[]> bytes = ReadFileInfoBuffer(path, size);
    if (bytes)
        arrived(bytes.get(), static_cast<std::size_t>(size), static_cast<std::size_t>(size));
    return bytes;
}

UnreadFile IPlatform::WhyUnread(const wchar_t* path) const {
    if (!Exists(path))
        return UnreadFile::Missing;
    return IsFile(path) ? UnreadFile::Unreadable : UnreadFile::NotRegularFile;
}

const IPlatform& CurrentPlatform() {
    const IPlatform* installed = platformForTests.load(std::memory_order_acquire);
    return installed ? *installed : SystemPlatform();
}

void SetPlatformForTests(const IPlatform* platform) {
    platformForTests.store(platform, std::memory_order_release);
}

} // namespace Framework::Platform

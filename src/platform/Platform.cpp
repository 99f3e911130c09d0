#include "platform/Platform.h"

#include <atomic>

namespace Framework::Platform {
namespace {
std::atomic<const IPlatform*> platformForTests{nullptr};
} // namespace

const IPlatform& CurrentPlatform() {
    const IPlatform* installed = platformForTests.load(std::memory_order_acquire);
    return installed ? *installed : SystemPlatform();
}

void SetPlatformForTests(const IPlatform* platform) {
    platformForTests.store(platform, std::memory_order_release);
}

} // namespace Framework::Platform

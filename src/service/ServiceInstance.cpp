// The one service object of the process and the pointer that tests install over it.
#include "service/ResourcesImpl.h"

#include <atomic>

namespace Framework::Internal {
namespace {
// Plain pointer, written at start-up only: a borrowed service is never deleted.
IResources* serviceOverride = nullptr;
// Published once the built-in service is whole, for the load report.
std::atomic<const ResourcesImpl*> builtService{nullptr};

const ResourcesImpl& BuildService() {
    static const ResourcesImpl service;
    builtService.store(&service, std::memory_order_release);
    return service;
}
} // namespace

IResources::~IResources() = default;

const IResources& IResources::GetImpl() {
    if (serviceOverride)
        return *serviceOverride;
    // Built once, under the runtime's thread-safe initialisation: concurrent first callers
    // wait, and a construction that throws is attempted again by the next caller.
    static const ResourcesImpl& service = BuildService();
    return service;
}

const ResourcesImpl* BuiltService() {
    return builtService.load(std::memory_order_acquire);
}

bool TestServiceInstalled() {
    return serviceOverride != nullptr;
}

void IResources::SetResourcesForTests(IResources* resources) {
    serviceOverride = resources;
}

} // namespace Framework::Internal

// The one service object of the process and the pointer that tests install over it.
#include "service/ResourcesImpl.h"

namespace Framework::Internal {
namespace {
// Plain pointer, written at start-up only: a borrowed service is never deleted.
IResources* serviceOverride = nullptr;
} // namespace

IResources::~IResources() = default;

const IResources& IResources::GetImpl() {
    if (serviceOverride)
        return *serviceOverride;
    // Built once, under the runtime's thread-safe initialisation: concurrent first callers
    // wait, and a construction that throws is attempted again by the next caller.
    static const ResourcesImpl service;
    return service;
}

void IResources::SetResourcesForTests(IResources* resources) {
    serviceOverride = resources;
}

} // namespace Framework::Internal

// MappedModule.cpp: PE files mapped read-only stand in for loaded modules on POSIX
// systems; the resource look-up reads the mapping through the PE reader.
#include "platform/MappedModule.h"

#include "platform/PeResources.h"
#include "platform/PosixFile.h"

#include <new>
#include <sys/mman.h>
#include <unistd.h>

namespace Framework::Platform {
namespace {

// What a HINSTANCE points at on these systems.
struct MappedModule {
    void* base = nullptr;
    std::size_t size = 0;

    std::span<const std::byte> Bytes() const { return {static_cast<const std::byte*>(base), size}; }
};

MappedModule* FromHandle(HINSTANCE module) {
    return reinterpret_cast<MappedModule*>(module);
}

} // namespace

HINSTANCE OpenMappedModule(const QanStringT<char>& path) {
    if (path.empty())
        return nullptr;
    // A module file is no larger than the limit for any file the library reads; a PE
    // image cannot be larger than 4 GiB in any case.
    std::uint64_t length = 0;
    const int fd = OpenResourceFile(path.c_str(), length);
    if (fd < 0)
        return nullptr;
    void* base = MAP_FAILED;
    const auto size = static_cast<std::size_t>(length);
    if (size > 0)
        base = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, fd, 0);
    ::close(fd); // the mapping keeps the file's bytes alive on its own
    if (base == MAP_FAILED)
        return nullptr;
    auto* module = new (std::nothrow) MappedModule{base, size};
    if (!module || !IsPeImage(module->Bytes())) {
        ::munmap(base, size);
        delete module;
        return nullptr;
    }
    return reinterpret_cast<HINSTANCE>(module);
}

void CloseMappedModule(HINSTANCE handle) {
    MappedModule* module = FromHandle(handle);
    if (!module)
        return;
    ::munmap(module->base, module->size);
    delete module;
}

std::span<const std::byte> MappedModuleRawData(HINSTANCE handle, int id) {
    const MappedModule* module = FromHandle(handle);
    if (!module || id < 0)
        return {};
    return FindPeRawData(module->Bytes(), static_cast<std::uint32_t>(id));
}

} // namespace Framework::Platform

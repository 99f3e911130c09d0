// MappedModule.cpp: PE files mapped read-only stand in for loaded modules on POSIX
// systems; the resource look-up reads the mapping through the PE reader.
#include "platform/MappedModule.h"

#include "platform/PeResources.h"

#include <fcntl.h>
#include <new>
#include <sys/mman.h>
#include <sys/stat.h>
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
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return nullptr;
    struct stat info {};
    void* base = MAP_FAILED;
    std::size_t size = 0;
    if (::fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && info.st_size > 0) {
        size = static_cast<std::size_t>(info.st_size);
        base = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, fd, 0);
    }
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

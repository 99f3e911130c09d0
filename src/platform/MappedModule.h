// MappedModule.h: "modules" on systems without a Windows loader. A module is a PE file
// mapped read-only whose resource directory the library reads itself.
#pragma once

#include <framework/Handle.h>
#include <framework/QanString.h>

#include <cstddef>
#include <span>

namespace Framework::Platform {

// Maps the PE file at path (UTF-8) read-only; null when it cannot be opened or is not a
// PE file. The handle is opaque to everything outside src/platform/.
HINSTANCE OpenMappedModule(const QanStringT<char>& path);
void CloseMappedModule(HINSTANCE module);
// Raw-data resource id (type 10) of a mapped module, first language; empty when absent.
std::span<const std::byte> MappedModuleRawData(HINSTANCE module, int id);

} // namespace Framework::Platform

#include "platform/MappedModule.h"

// Placeholder until the PE reader lands: no file is recognised as a module.
namespace Framework::Platform {

HINSTANCE OpenMappedModule(const QanStringT<char>&) { return nullptr; }
void CloseMappedModule(HINSTANCE) {}
std::span<const std::byte> MappedModuleRawData(HINSTANCE, int) { return {}; }

} // namespace Framework::Platform

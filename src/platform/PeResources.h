// PeResources.h: reads the resource directory of a PE file from its bytes, without a
// Windows loader. Every offset is checked against the bytes given; nothing is trusted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace Framework::Platform {

// True when bytes start with a DOS header whose e_lfanew leads to "PE\0\0", a complete
// file header and an optional header of a known kind (PE32 or PE32+).
bool IsPeImage(std::span<const std::byte> bytes);

// The bytes of raw-data resource id (type 10, integer ids), first language, of the PE
// file in bytes; empty when the file has no such resource or any structure on the way
// is malformed. The span points into bytes.
std::span<const std::byte> FindPeRawData(std::span<const std::byte> bytes, std::uint32_t id);

} // namespace Framework::Platform

// LegacyGuidTable.h: the compiled-in rows that map a legacy (component, id) pair to the
// GUID key of its current string. The build generates them from data/legacy_guids.tsv.
#pragma once

#include <cstddef>
#include <cstdint>

namespace Framework::Internal {

// One row. The id sits in a pointer-sized slot (upper half zero) so that every field of
// the row has the same size; it holds a signed 32-bit id.
struct LegacyGuidEntry {
    std::uintptr_t id;
    const char* component;
    const wchar_t* guid;
};

// Rows in table order; rows without a key all point at one shared empty text.
extern const LegacyGuidEntry kLegacyGuidTable[];
extern const std::size_t kLegacyGuidTableSize;

} // namespace Framework::Internal

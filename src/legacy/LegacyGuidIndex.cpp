#include "legacy/LegacyGuidIndex.h"

// Placeholder until the legacy table lands: an empty index.
namespace Framework::Internal {

LegacyGuidIndex BuildLegacyGuidIndex() { return {}; }

std::optional<QanStringViewT<wchar_t>> FindLegacyGuid(const LegacyGuidIndex&, int,
                                                      QanStringViewT<char>) {
    return std::nullopt;
}

std::vector<QanStringViewT<char>> ComponentsWithId(const LegacyGuidIndex&, int) { return {}; }

} // namespace Framework::Internal

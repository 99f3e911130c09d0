#include "legacy/LegacyStringLookup.h"

// Placeholder until the legacy look-ups land.
namespace Framework::Internal {

QanStringT<wchar_t> ComposeLegacyText(const StringLookup&, const QanStringT<wchar_t>&,
                                      LegacyFieldOrder) {
    return {};
}

QanStringT<wchar_t> GetLegacyGuid(const LegacyGuidIndex&, const StringLookup&,
                                  QanStringViewT<char>, int, const QanStringT<wchar_t>&) {
    return {};
}

} // namespace Framework::Internal

// LegacyStringLookup.h: legacy (component, id) pairs to GUID keys, and GUID keys to one
// composed tagged text, preferring the running application's own components.
#pragma once

#include "legacy/LegacyGuidIndex.h"

#include <framework/Resources.h>

#include <functional>

namespace Framework::Internal {

// The service's string look-up, by key and kind.
using StringLookup = std::function<QanStringT<wchar_t>(const QanStringT<wchar_t>&, StringKind)>;

enum class LegacyFieldOrder { BodyFirst, HeaderFirst };

// The plain string of key, or its caption, tooltip body and header packed as one
// tagged text in the given order.
QanStringT<wchar_t> ComposeLegacyText(const StringLookup& getString, const QanStringT<wchar_t>& key,
                                      LegacyFieldOrder order);

// The GUID key of (component, id): the direct row, else the first component holding the
// id whose text exists, the application's preferred components first.
QanStringT<wchar_t> GetLegacyGuid(const LegacyGuidIndex& index, const StringLookup& getString,
                                  QanStringViewT<char> component, int id,
                                  const QanStringT<wchar_t>& appName);

} // namespace Framework::Internal

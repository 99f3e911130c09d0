// Library.h: the one place this benchmark reaches inside the library: the string
// collection, built directly so that construction and the lazy full load can be timed
// again in every round. Everything else goes through Framework::Resources.
#pragma once

#include "strings/StringResourceCollection.h"

namespace Compare {
using StringCollection = Framework::Internal::StringResourceCollection;
constexpr auto kStringKind = Framework::Internal::String;
} // namespace Compare

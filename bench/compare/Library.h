// Library.h: the one place this benchmark reaches inside the library: the string
// collection, built directly so that construction and the lazy full load can be timed
// again in every round, with the recorder that tells whether it read the full file.
// Everything else goes through Framework::Resources.
#pragma once

#include "base/LoadRecord.h"
#include "strings/StringResourceCollection.h"

namespace Compare {
using StringCollection = Framework::Internal::StringResourceCollection;
using LoadRecorder = Framework::Internal::LoadRecorder;
constexpr auto kStringKind = Framework::Internal::String;
} // namespace Compare

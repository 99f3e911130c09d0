// QanCtlDependency.h: how the control library hands the resource library its loader of
// module strings, so that legacy strings resolve without a link to the control library.
#pragma once

#include <framework/Export.h>
#include <framework/Handle.h>
#include <framework/QanString.h>

#include <cstdint>
#include <functional>

namespace QanResources {

struct QanCtlDependency {
    std::function<QanStringT<wchar_t>(HINSTANCE, std::uint32_t)> loadString;
};

// Replaces the process-wide loader with a copy of dependency.loadString (empty allowed).
// Call during start-up, before any thread looks up strings.
QANRESOURCES_API void InjectQanCtlDependency(QanCtlDependency dependency);

} // namespace QanResources

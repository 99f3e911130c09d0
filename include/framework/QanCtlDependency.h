// QanCtlDependency.h: how the control library hands the resource library its loader of
// module strings, so that legacy strings resolve without a link to the control library.
#pragma once

#include <framework/Export.h>
#include <framework/Handle.h>
#include <framework/QanString.h>

#include <cstdint>
#include <functional>

namespace QanResources {

// What the control library hands down. loadString(module, id) returns the text of the
// string resource id in module, empty when there is none; it is called from look-ups on
// any thread.
struct QanCtlDependency {
    std::function<QanStringT<wchar_t>(HINSTANCE, std::uint32_t)> loadString;
};

// InjectQanCtlDependency()
//
// Replaces the process-wide loader of legacy strings with a copy of
// dependency.loadString; the last call wins. Before any call, and after injecting an empty
// function, every legacy string is empty. Configuration: call before the first look-up,
// on one thread (the exchange takes no lock).
// Example: InjectQanCtlDependency({.loadString = &LoadCtlString});
QANRESOURCES_API void InjectQanCtlDependency(QanCtlDependency dependency);

} // namespace QanResources

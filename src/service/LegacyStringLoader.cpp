#include "service/LegacyStringLoader.h"

#include <utility>

namespace Framework::Internal {
namespace {
// Ignores its arguments and returns a default value: the loader of a process whose
// control library never injected its own.
struct TrivialReturn {
    template <class... Args>
    QanStringT<wchar_t> operator()(Args&&...) const {
        return {};
    }
};
} // namespace

LegacyStringLoaderFn& LegacyStringLoader() {
    static LegacyStringLoaderFn loader{TrivialReturn{}};
    return loader;
}

QanStringT<wchar_t> LoadLegacyString(HINSTANCE module, std::uint32_t id) {
    const LegacyStringLoaderFn& loader = LegacyStringLoader();
    return loader ? loader(module, id) : QanStringT<wchar_t>{};
}

} // namespace Framework::Internal

namespace QanResources {

void InjectQanCtlDependency(QanCtlDependency dependency) {
    // Copy first, then swap: a failed copy leaves the installed loader as it was.
    Framework::Internal::LegacyStringLoaderFn replacement(dependency.loadString);
    std::swap(Framework::Internal::LegacyStringLoader(), replacement);
}

} // namespace QanResources

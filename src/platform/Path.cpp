#include "platform/Path.h"

namespace Framework::Path {
QanStringT<wchar_t> Combine(QanStringViewT<wchar_t> base, QanStringViewT<wchar_t> name) {
    if (base.empty())
        return QanStringT<wchar_t>(name);
    QanStringT<wchar_t> joined(base);
    const bool baseEnds = IsSeparator(joined.back());
    const bool nameStarts = !name.empty() && IsSeparator(name.front());
    if (baseEnds && nameStarts)
        name.remove_prefix(1);
    else if (!baseEnds && !nameStarts)
        joined.push_back(kSeparator);
    joined.append(name);
    return joined;
}

QanStringT<wchar_t> AddBackslash(QanStringViewT<wchar_t> path) {
    QanStringT<wchar_t> result(path);
    if (!result.empty() && !IsSeparator(result.back()))
        result.push_back(kSeparator);
    return result;
}

} // namespace Framework::Path

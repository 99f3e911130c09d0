// IconPaths.cpp: file paths for prefixed keys: "ext://" keys name images under the images
// directory, "guid://" keys name icons through the icon map.
#include <framework/Resources.h>

#include "base/Settings.h"
#include "platform/Path.h"

#include <algorithm>
#include <cwctype>

namespace Framework {
namespace {

// The rest of key after prefix when key starts with it, compared ignoring case.
bool StripPrefix(const QanStringT<wchar_t>& key, const QanStringT<wchar_t>& prefix,
                 QanStringViewT<wchar_t>& rest) {
    if (key.size() < prefix.size())
        return false;
    const bool same =
        std::equal(prefix.begin(), prefix.end(), key.begin(), [](wchar_t a, wchar_t b) {
            return std::towlower(static_cast<std::wint_t>(a)) ==
                   std::towlower(static_cast<std::wint_t>(b));
        });
    if (!same)
        return false;
    rest = QanStringViewT<wchar_t>(key).substr(prefix.size());
    return true;
}

} // namespace

QanStringT<wchar_t> Resources::GetImagePath(const QanStringT<wchar_t>& key) {
    QanStringViewT<wchar_t> rest;
    if (!StripPrefix(key, PREFIX_EXTENSION, rest))
        return {};
    // The rest is joined as it stands: no check that the file exists, no extension.
    return Path::Combine(Internal::ProcessSettings().imagesDirectory, rest);
}

QanStringT<wchar_t> Resources::GetIconPath(const QanStringT<wchar_t>& key) {
    QanStringViewT<wchar_t> rest;
    // Extension keys have no icon path, deliberately.
    if (StripPrefix(key, PREFIX_EXTENSION, rest))
        return {};
    if (!StripPrefix(key, GUID_EXTENSION, rest))
        return {}; // plain keys, ".ico" names included, have none either
    // A ".png.png" entry leaves iconPath empty, so its icon path is empty too.
    return Internal::IResources::GetImpl().GetIcon(QanStringT<wchar_t>(rest)).iconPath;
}

} // namespace Framework

// Placeholder until icon and image paths land.
#include <framework/Resources.h>

namespace Framework {

QanStringT<wchar_t> Resources::GetIconPath(const QanStringT<wchar_t>&) { return {}; }
QanStringT<wchar_t> Resources::GetImagePath(const QanStringT<wchar_t>&) { return {}; }

} // namespace Framework

// Placeholders.h: the placeholders that hosts fill into a text at run time, which a
// translation or a pseudo-localisation must keep exactly.
#pragma once

#include <cstddef>
#include <string_view>

namespace QanTool {

// Length of the placeholder that starts at s[i] ('%' or '{'), or 0 when none does:
// printf conversions ("%s", "%1$d", "%-5.2f", "%I64d"), "%%", message-style "%1" or
// "%1!d!", and "{0}". PlaceholderLength(U"a %5.2f b", 2) is 5.
std::size_t PlaceholderLength(std::u32string_view s, std::size_t i);

} // namespace QanTool

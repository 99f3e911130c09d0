// Escape.h: makes control characters of a looked-up text visible: U+0001 (the field
// marker of tagged texts) and other C0 controls as \xNN, newline as \n, tab as \t,
// carriage return as \r, DEL as \x7F and a backslash as \\.
#pragma once

#include <string>
#include <string_view>

namespace QanTool {

std::string EscapeControls(std::string_view utf8);

} // namespace QanTool

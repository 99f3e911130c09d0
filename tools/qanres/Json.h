// Json.h: the little JSON the tool writes for CI: strings escaped, everything else built
// by the caller.
#pragma once

#include <string>
#include <string_view>

namespace QanTool {

// A JSON string literal of UTF-8 text, quotes included: JsonString("a\"b\n") gives
// "\"a\\\"b\\n\"". Control characters become \u escapes; other bytes pass unchanged.
std::string JsonString(std::string_view utf8);

} // namespace QanTool

// Files.h: the tool's one way of reading a file whole.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace QanTool {

// A path from UTF-8 text, as the tool holds every argument: on Windows a plain string
// would be read in the ANSI code page. PathFromUtf8("Gr\xC3\xBC\xC3\x9Fe") names "Grüße".
std::filesystem::path PathFromUtf8(std::string_view utf8);

// The bytes of the regular file at path; nothing when it is missing, not a regular file
// (a folder, a pipe, a device) or unreadable. Never blocks on a pipe.
std::optional<std::string> ReadWholeFile(const std::filesystem::path& path);

} // namespace QanTool

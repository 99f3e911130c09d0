// Files.h: the tool's one way of reading a file whole.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace QanTool {

// The bytes of the regular file at path; nothing when it is missing, not a regular file
// (a folder, a pipe, a device) or unreadable. Never blocks on a pipe.
std::optional<std::string> ReadWholeFile(const std::filesystem::path& path);

} // namespace QanTool

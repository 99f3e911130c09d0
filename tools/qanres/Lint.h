// Lint.h: checks a resource directory against every rule the library's readers rely on.
#pragma once

#include "Diagnostics.h"

#include <filesystem>
#include <string>

namespace QanTool {

// The files a resource directory may hold, as the library looks for them.
inline constexpr const char* kStartupStrings = "startupstrings.xml";
inline constexpr const char* kFullStrings = "strings.xml";
inline constexpr const char* kOverrideStrings = "override/strings.xml";
inline constexpr const char* kKeyTables[] = {"string.csv", "caption.csv", "tooltipHeader.csv",
                                             "tooltipBody.csv"};
inline constexpr const char* kIconMap = "icons.map.xml";
inline constexpr const char* kIconLibrary = "QanIcons.dll";
inline constexpr const char* kCursorTable = "cursors.bin";

// displayDir prefixes every file name in the findings (the directory as the user typed it).
DiagnosticList LintDirectory(const std::filesystem::path& dir, const std::string& displayDir);

} // namespace QanTool

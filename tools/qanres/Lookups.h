// Lookups.h: the tool's look-up commands: each asks the library one question through its
// public interface and prints the answer as UTF-8.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace QanTool {

struct LookupSettings {
    // One master string directory per language, the source language first; a look-up
    // uses the first.
    std::vector<std::string> masterStrings;
    std::string resources, icons, base, iconSubdir, app;
    bool escape = false;
};

// Applies the settings through the library's setters; call before any look-up.
void ApplySettings(const LookupSettings& settings);

// Each returns the exit status: 0 found, 1 nothing found.
int LookupString(const std::string& command, const std::string& key, bool escape,
                 std::ostream& out);
int LookupResource(const std::string& command, const std::string& key, bool escape,
                   std::ostream& out);
int LookupPath(const std::string& command, const std::string& key, bool escape, std::ostream& out);
int LookupLegacyGuid(const std::string& component, int id, std::ostream& out);
int LookupLegacyString(const std::string& key, bool escape, std::ostream& out);
int StripMenu(unsigned flags, const std::string& text, bool escape, std::ostream& out);

// Builds the service (Preload) and prints its load report, as text or as JSON. Returns 1
// when a file was refused, else 0.
int PrintLoadReport(bool json, std::ostream& out);

} // namespace QanTool

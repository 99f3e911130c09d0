// DurableWrite.h: writing a new file so that it is on the disk before anything refers to
// it, for the tool that rewrites resource files. The library itself writes nothing.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace Framework::Platform {

// Creates path, which must not exist yet (a symbolic link of that name counts as existing
// and is never followed), with permissions perms, writes bytes, flushes them to the disk
// and closes the file. Returns an empty string on success, else what failed; a file that
// was created is removed again on failure.
// Example: CreateFileDurably(dir / ".x.new", bytes, fs::perms::owner_read)
std::string CreateFileDurably(const std::filesystem::path& path, std::string_view bytes,
                              std::filesystem::perms perms);

// Flushes a directory's entries to the disk, so that a rename into it survives a crash;
// a no-op where the system offers no such call.
void SyncDirectory(const std::filesystem::path& dir);

} // namespace Framework::Platform

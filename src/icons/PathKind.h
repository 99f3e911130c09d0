// PathKind.h: whether an icon location is a file, a folder or neither, asked of the file
// system once per lower-cased path for the life of the process.
#pragma once

#include <framework/QanString.h>

namespace Framework::Internal {

enum class PathKind { None = 0, File = 1, Folder = 2 };

// An empty path is None and not cached. Every other answer, None included, is cached by
// the lower-cased path and never refreshed. Safe to call from any thread.
PathKind GetPathKind(const QanStringT<wchar_t>& path);

} // namespace Framework::Internal

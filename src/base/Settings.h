// Settings.h: the process-wide settings that the host writes at start-up through the
// Resources setters. Unlocked by design: they are written before any look-up runs.
#pragma once

#include <framework/QanString.h>

namespace Framework::Internal {

struct Settings {
    QanStringT<wchar_t> masterStringDirectory;
    QanStringT<wchar_t> resourceDirectory;
    QanStringT<wchar_t> iconDirectory;
    QanStringT<wchar_t> imagesDirectory;
    // Stored and never read: kept because hosts set it through SetResourceDirectories.
    QanStringT<wchar_t> cursorsDirectory;
    QanStringT<wchar_t> iconSubdirectory;
    QanStringT<wchar_t> appName;
};

Settings& ProcessSettings();

} // namespace Framework::Internal

// Export.h: the one macro that marks the library's public functions.
// Everything else in the shared library stays hidden from its hosts.
#pragma once

#if defined(_WIN32)
#if defined(QANRESOURCES_BUILDING)
#define QANRESOURCES_API __declspec(dllexport)
#else
#define QANRESOURCES_API __declspec(dllimport)
#endif
#else
#define QANRESOURCES_API __attribute__((visibility("default")))
#endif

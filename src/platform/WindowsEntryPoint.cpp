// The DLL's entry point on Windows. The library starts no thread and keeps no per-thread
// state, so it asks not to be told about threads starting and ending in the host.
#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH)
        ::DisableThreadLibraryCalls(module);
    return TRUE;
}

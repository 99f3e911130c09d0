// Handle.h: the module handle type of the legacy interface, declared as <windows.h>
// declares it so that hosts on every system can name modules without that header.
#pragma once

#if !defined(_WINDEF_) && !defined(_WINDEF_H)
struct HINSTANCE__;
typedef struct HINSTANCE__* HINSTANCE;
#endif

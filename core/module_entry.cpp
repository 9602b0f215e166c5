// What happens when the library is loaded: nothing but, on Windows, to decline notices of threads. There is no state to
// set up or tear down; on other platforms there is no entry at all.

#if defined(_WIN32) && !defined(KETRA_STATIC)

#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) DisableThreadLibraryCalls(module);
  return TRUE;
}

#endif

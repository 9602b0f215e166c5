/* Both spellings find the headers, whatever the user's own folders are called. */
#include <ketra/ketra.h>
#include <ketra/ketra_runtime.h>
#include <stddef.h>

#include "ketra/ketra.h"

#if !(KETRA_VERSION_MAJOR > 0 || KETRA_VERSION_MINOR >= 2)
#error "the version is older than the macros"
#endif

int main(void) { return KetraVersion(NULL); }

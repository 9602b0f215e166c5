/* Sees Ketra's public headers, and no other file of its tree. */
#include <ketra/ketra.h>

#if __has_include("core/operation.h") || __has_include("ketra.h") || __has_include("schema/schema.h")
#error "the source folder is on the include path"
#endif

int main(void) { return KetraVersion(0); }

#include "library/system_requests.h"

#include <malloc.h>

#include <algorithm>

namespace ketra::test {
SystemRequests requests;
HeldMemory held;

namespace {

void *taken(void *memory) {
  held.now += malloc_usable_size(memory);
  held.peak = std::max(held.peak, held.now);
  return memory;
}

}  // namespace
}  // namespace ketra::test

using ketra::test::held;
using ketra::test::requests;
using ketra::test::taken;

extern "C" {

void *__libc_malloc(std::size_t);
void *__libc_calloc(std::size_t, std::size_t);
void *__libc_realloc(void *, std::size_t);
void __libc_free(void *);

void *malloc(std::size_t size) {
  ++requests.made;
  requests.octets += size;
  const bool isRefused =
      requests.refuseFrom != 0 && requests.made >= requests.refuseFrom && requests.made <= requests.refuseTo;
  return isRefused ? nullptr : taken(__libc_malloc(size));
}

void *calloc(std::size_t count, std::size_t size) { return taken(__libc_calloc(count, size)); }

void *realloc(void *memory, std::size_t size) {
  held.now -= malloc_usable_size(memory);
  return taken(__libc_realloc(memory, size));
}

void free(void *memory) {
  held.now -= malloc_usable_size(memory);
  __libc_free(memory);
}

}  // extern "C"

#include "refused_allocations.h"

#include <cstdlib>
#include <new>

int ketra::test::allocationsLeft = -1;

using ketra::test::allocationsLeft;

// Not inlined: g++ would take the pairs for mismatched.
[[gnu::noinline]] void *operator new(std::size_t size) {
  if (allocationsLeft == 0) throw std::bad_alloc();
  if (allocationsLeft > 0) --allocationsLeft;
  void *memory = std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
[[gnu::noinline]] void operator delete(void *memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void *memory, std::size_t) noexcept { std::free(memory); }

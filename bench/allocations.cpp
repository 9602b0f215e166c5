#include "allocations.hpp"

#include <malloc.h>

#include <algorithm>
#include <cstddef>

extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier): the names that the C library gives its own
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *memory, std::size_t size);
void __libc_free(void *memory);
// NOLINTEND(bugprone-reserved-identifier)
}

namespace {

struct Heap {
  bench::Requested total;
  bool isWatched = false;
  int64_t live = 0;
  int64_t peak = 0;
};
constinit thread_local Heap heap;

void *counted(std::size_t size, void *memory) {
  ++heap.total.requests;
  heap.total.octets += size;
  if (heap.isWatched) {
    heap.live += static_cast<int64_t>(malloc_usable_size(memory));
    heap.peak = std::max(heap.peak, heap.live);
  }
  return memory;
}

void released(void *memory) {
  if (heap.isWatched) heap.live -= static_cast<int64_t>(malloc_usable_size(memory));
}

}  // namespace

extern "C" {
void *malloc(std::size_t size) { return counted(size, __libc_malloc(size)); }
void *calloc(std::size_t count, std::size_t size) { return counted(count * size, __libc_calloc(count, size)); }
void *realloc(void *memory, std::size_t size) {
  released(memory);
  return counted(size, __libc_realloc(memory, size));
}
void free(void *memory) {
  released(memory);
  __libc_free(memory);
}
}

namespace bench {

Requested requested() { return heap.total; }

void detail::startPeak() { heap = {.total = heap.total, .isWatched = true}; }
int64_t detail::endPeak() {
  heap.isWatched = false;
  return heap.peak;
}

}  // namespace bench

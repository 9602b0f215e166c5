// Memory of one work object: handed out in order, given back all at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>

#include "runtime/asn1/poison.h"

namespace ketra::asn1 {

class Arena {
 public:
  // The first chunk is the caller's memory, which outlives the arena.
  Arena(std::byte *begin, std::byte *end);
  ~Arena();
  Arena(const Arena &) = delete;
  Arena &operator=(const Arena &) = delete;

  // Aligned for pointers and 64-bit integers, not zeroed; null when the system has no memory.
  void *allocate(std::size_t size) {
    const std::size_t rounded = kPoisonedGap + (size + 7) / 8 * 8;
    if (rounded < size || static_cast<std::size_t>(end_ - next_) < rounded) [[unlikely]]
      return allocateSlow(size);
    return take(rounded, size);
  }
  template <class T>
  T *make() {
    void *memory = allocate(sizeof(T));
    return memory == nullptr ? nullptr : new (memory) T{};
  }
  template <class T>
  T *makeArray(std::size_t count) {
    if (count > SIZE_MAX / sizeof(T) / 2) return nullptr;
    return static_cast<T *>(allocate(count * sizeof(T)));
  }

 private:
  struct Chunk;

  void *take(std::size_t rounded, std::size_t size) {
    std::byte *memory = next_ + kPoisonedGap;
    next_ += rounded;
    unpoison(memory, size);
    return memory;
  }
  [[gnu::noinline, gnu::cold]] void *allocateSlow(std::size_t size);

  std::byte *next_;
  std::byte *end_;
  Chunk *chunks_ = nullptr;
  std::size_t total_;
};

}  // namespace ketra::asn1

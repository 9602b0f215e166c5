// With AddressSanitizer, memory that a pool or arena holds but has not handed out is poisoned, and so is the slack of
// what it has handed out.
#pragma once

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
#define KETRA_POISON 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KETRA_POISON 1
#endif
#endif

#ifdef KETRA_POISON
#include <sanitizer/asan_interface.h>
#endif

namespace ketra::asn1 {

#ifdef KETRA_POISON
inline constexpr std::size_t kPoisonedGap = 8;  // between blocks that would touch each other
#define KETRA_READS_POISONED __attribute__((no_sanitize("address")))
#else
inline constexpr std::size_t kPoisonedGap = 0;
#define KETRA_READS_POISONED
#endif

inline void poison([[maybe_unused]] const void *memory, [[maybe_unused]] std::size_t size) {
#ifdef KETRA_POISON
  ASAN_POISON_MEMORY_REGION(memory, size);
#endif
}

inline void unpoison([[maybe_unused]] const void *memory, [[maybe_unused]] std::size_t size) {
#ifdef KETRA_POISON
  ASAN_UNPOISON_MEMORY_REGION(memory, size);
#endif
}

}  // namespace ketra::asn1

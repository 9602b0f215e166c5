// Requests to the system, counted and refused on demand. Not under sanitizers, which bring their own malloc.
#pragma once

#include <cstddef>

namespace ketra::test {

struct SystemRequests {
  int made = 0;        // by malloc
  int refuseFrom = 0;  // the first to refuse, counted from 1; 0: none
  int refuseTo = 0;
  std::size_t octets = 0;
};

extern SystemRequests requests;

// What the process holds, as the system rounds it, and the most that it has held since `peak` was set.
struct HeldMemory {
  std::size_t now = 0;
  std::size_t peak = 0;
};

extern HeldMemory held;

}  // namespace ketra::test

// Requests to the system, counted and refused on demand. Not under sanitizers, which bring their own malloc.
#pragma once

#include <cstddef>

namespace ketra::test {

struct SystemRequests {
  int made = 0;
  int refuseFrom = 0;  // the first to refuse, counted from 1; 0: none
  int refuseTo = 0;
  std::size_t octets = 0;
};

extern SystemRequests requests;

}  // namespace ketra::test

// What the program asks of the system allocator. Each thread counts its own requests.
#pragma once

#include <cstdint>

namespace bench {

struct Requested {
  uint64_t requests = 0;
  uint64_t octets = 0;
};

// By this thread, since it started.
Requested requested();

namespace detail {
void startPeak();
int64_t endPeak();
}  // namespace detail

// The most octets that this thread has live at a time while it calls `run`, beyond what it had before.
template <class Run>
int64_t peakOf(Run &&run) {
  detail::startPeak();
  run();
  return detail::endPeak();
}

}  // namespace bench

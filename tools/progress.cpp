#include "progress.hpp"

#include <cinttypes>
#include <cstdio>

namespace tool {

void Progress::show(uint64_t objects, uint64_t files) {
  const Clock::time_point now = Clock::now();
  if (!isShown_ || now < next_) return;
  next_ = now + std::chrono::milliseconds(100);
  isVisible_ = true;
  std::fprintf(stderr, "\rketra: %" PRIu64 " objects, %" PRIu64 " files", objects, files);
  std::fflush(stderr);
}

// The line is written over with spaces: a terminal without escape sequences understands that too.
void Progress::clear() {
  if (isVisible_) std::fprintf(stderr, "\r%60s\r", "");
  isVisible_ = false;
}

}  // namespace tool

// One line on standard error that tells how far a long run is, when somebody watches and nothing else is printed there.
#pragma once

#include <chrono>
#include <cstdint>

namespace tool {

class Progress {
 public:
  explicit Progress(bool isShown) : isShown_(isShown) {}
  void show(uint64_t objects, uint64_t files);
  // Before anything else is written to standard error, and at the end.
  void clear();

 private:
  using Clock = std::chrono::steady_clock;
  bool isShown_;
  bool isVisible_ = false;
  Clock::time_point next_ = Clock::now() + std::chrono::milliseconds(500);  // short runs need no progress
};

}  // namespace tool

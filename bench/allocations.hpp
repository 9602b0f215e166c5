// What an operation asks of the system allocator.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>

namespace bench {

struct Requested {
  uint64_t requests = 0;
  uint64_t octets = 0;
};

// Since the program started.
Requested requested();

// Reports requests and octets of everything between its construction and report(), per unit of work.
class Allocations {
 public:
  Allocations() : before_(requested()) {}
  void report(benchmark::State &state, int64_t units) const;

 private:
  Requested before_;
};

}  // namespace bench

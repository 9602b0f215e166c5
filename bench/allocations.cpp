#include "allocations.hpp"

namespace {
bench::Requested total;
}

extern "C" void *__libc_malloc(std::size_t);

extern "C" void *malloc(std::size_t size) {
  ++total.requests;
  total.octets += size;
  return __libc_malloc(size);
}

namespace bench {

Requested requested() { return total; }

void Allocations::report(benchmark::State &state, int64_t units) const {
  const Requested now = requested();
  const auto count = static_cast<double>(units);
  state.counters["requests"] = static_cast<double>(now.requests - before_.requests) / count;
  state.counters["octets"] = static_cast<double>(now.octets - before_.octets) / count;
}

}  // namespace bench

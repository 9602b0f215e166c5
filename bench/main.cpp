// Benchmarks of this library and its peers on the same octets. See bench/run.

#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "operations.hpp"

namespace bench {

namespace {
int failures = 0;
}

double calibration() {
  constexpr int kRounds = 3000;
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < kRounds; ++i) {
    void *memory = std::malloc(64);
    sink(memory);
    std::free(memory);
  }
  const std::chrono::duration<double, std::nano> time = std::chrono::steady_clock::now() - start;
  return time.count() / kRounds;
}

int64_t pageFaults() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_minflt;
}

void addToProgram(const std::string &name, std::function<void(benchmark::State &)> measured) {
  benchmark::RegisterBenchmark(name.c_str(), std::move(measured));
}

void fail(benchmark::State &state) {
  ++failures;
  state.SkipWithError("does not read or write what is expected");
}

}  // namespace bench

int main(int argc, char **argv) {
  bench::addRows();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  if (bench::failures != 0) std::fprintf(stderr, "%d operations failed their check\n", bench::failures);
  return bench::failures == 0 ? 0 : 1;
}

// The operations that are measured: each has the name "row/kind/library", a check, and what is timed.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "allocations.hpp"
#include "values.hpp"

namespace bench {

// Keeps the compiler from dropping what is made.
inline void sink(const void *result) {
  benchmark::DoNotOptimize(result);
  benchmark::ClobberMemory();
}

// A moment of fixed work, in nanoseconds: tells in the report whether the machine was disturbed.
double calibration();
int64_t pageFaults();
// A check has failed: main says so at the end.
void fail(benchmark::State &state);

void addToProgram(const std::string &name, std::function<void(benchmark::State &)> measured);

// What is known of an operation after its first round.
struct Known {
  bool isChecked = false;
  int64_t peak = 0;
};

template <class Check, class Run>
void measure(benchmark::State &state, Known &known, Check &check, Run &run, double units) {
  if (!known.isChecked) {
    if (!check()) return fail(state);
    known = {true, peakOf(run)};
  }
  const double before = calibration();
  const Requested requestedBefore = requested();
  const int64_t faultsBefore = pageFaults();
  for (auto _ : state) run();
  const auto rounds = static_cast<double>(state.iterations());
  const Requested after = requested();
  state.counters["faults"] = static_cast<double>(pageFaults() - faultsBefore) / rounds;
  state.counters["requests"] = static_cast<double>(after.requests - requestedBefore.requests) / rounds;
  state.counters["octets"] = static_cast<double>(after.octets - requestedBefore.octets) / rounds;
  state.counters["peak"] = static_cast<double>(known.peak);
  state.counters["units"] = units;
  state.counters["calibration"] = std::max(before, calibration());
}

// `run` does the operation once, for `units` units. Both callables are copied.
template <class Check, class Run>
void add(const std::string &row, const char *kind, const char *library, Check check, Run run, double units = 1) {
  const std::string name = row + "/" + kind + "/" + library;
  addToProgram(name,
               [=, known = Known{}](benchmark::State &state) mutable { measure(state, known, check, run, units); });
}

inline std::string sized(const char *row, std::size_t size) { return std::string(row) + " " + std::to_string(size); }

// Adds what a program measures.
void addRows();
void addKetra();
void addKetraCpp();
void addFloor();
void addOpenSsl();
void addGnuTls();
void addBotan();
void addCertificates();
void addCbs();

}  // namespace bench

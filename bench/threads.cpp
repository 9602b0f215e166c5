// Two threads on distinct objects: how much faster they are than one, beside a loop that does not allocate.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

#include "floor.hpp"
#include "operations.hpp"
#include "structures.hpp"

namespace bench {
namespace {

// Gets and sets of a structure and of a list of names, each thread on an Extensions object of its own.
void getAndSet(int rounds) {
  const Object extensions;
  BasicConstraints basic;
  SubjectAltName names(10);
  basic.fill();
  for (int i = 0; i < rounds; ++i) {
    write(basic, extensions.handle());
    read(basic, extensions.handle());
    write(names, extensions.handle());
    read(names, extensions.handle());
  }
}

// The floor on the same values.
void readAndWrite(int rounds) {
  const Octets der = der::subjectAltName(10);
  Octets room(der.size());
  lean::Tagged names[10];
  lean::Directory directory{};
  lean::SubjectAltName value{{names, 10, 0, &directory}};
  for (int i = 0; i < rounds; ++i) {
    lean::Writer writer(room.data() + room.size());
    benchmark::DoNotOptimize(value.read({der.data(), der.size()}));
    value.write(writer);
    sink(room.data());
  }
}

using Work = void (*)(int rounds);

// From the moment when all have begun to that when the last is done.
double seconds(Work work, int rounds, int threadCount) {
  using Clock = std::chrono::steady_clock;
  std::atomic<int> waiting = threadCount;
  Clock::time_point starts[2], ends[2];
  const auto run = [&](int i) {
    work(rounds / 10);
    --waiting;
    while (waiting > 0) std::this_thread::yield();
    starts[i] = Clock::now();
    work(rounds);
    ends[i] = Clock::now();
  };
  if (threadCount == 1) {
    run(0);
    return std::chrono::duration<double>(ends[0] - starts[0]).count();
  }
  std::thread other(run, 1);
  run(0);
  other.join();
  return std::chrono::duration<double>(std::max(ends[0], ends[1]) - std::min(starts[0], starts[1])).count();
}

// The shortest of many short times each: what else runs on the machine only makes them longer.
double speedup(Work work, int rounds) {
  double one = 1, two = 1;
  for (int i = 0; i < 40; ++i) {
    one = std::min(one, seconds(work, rounds, 1));
    two = std::min(two, seconds(work, rounds, 2));
  }
  return 2 * one / two;
}

void BM_Threads(benchmark::State &state) {
  while (state.KeepRunning()) {
    state.counters["speedup"] = speedup(getAndSet, 250);
    state.counters["loop"] = speedup(readAndWrite, 30'000);
  }
}
BENCHMARK(BM_Threads)->Name("threads")->Iterations(1)->UseRealTime();

}  // namespace
}  // namespace bench

// Two threads on distinct objects: how much faster they are than one, beside a loop that does not allocate.

#include <algorithm>
#include <barrier>
#include <chrono>
#include <thread>
#include <vector>

#include "floor.hpp"
#include "operations.hpp"
#include "structures.hpp"

namespace bench {
namespace {

// Gets and sets of a structure and of a list of names, each thread on an Extensions object of its own.
void getAndSet(int rounds) {
  const ketra::Extensions extensions;
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

double seconds(Work work, int rounds, int threadCount) {
  std::barrier together(threadCount + 1);
  std::vector<std::thread> threads;
  threads.reserve(2);
  for (int i = 0; i < threadCount; ++i) {
    threads.emplace_back([&] {
      work(rounds / 10);
      together.arrive_and_wait();
      work(rounds);
    });
  }
  together.arrive_and_wait();
  const auto start = std::chrono::steady_clock::now();
  for (std::thread &thread : threads) thread.join();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The shortest of a few times each: what else runs on the machine only makes them longer.
double speedup(Work work, int rounds) {
  double one = seconds(work, rounds, 1), two = seconds(work, rounds, 2);
  for (int i = 0; i < 4; ++i) {
    one = std::min(one, seconds(work, rounds, 1));
    two = std::min(two, seconds(work, rounds, 2));
  }
  return 2 * one / two;
}

void BM_Threads(benchmark::State &state) {
  for (auto _ : state) {
    state.counters["speedup"] = speedup(getAndSet, 1'000);
    state.counters["loop"] = speedup(readAndWrite, 100'000);
  }
}
BENCHMARK(BM_Threads)->Name("threads")->Iterations(1)->UseRealTime();

}  // namespace
}  // namespace bench

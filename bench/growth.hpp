// What an operation on a list costs per member. What grows in proportion shows the same time, requests and octets in
// every row.
#pragma once

#include <cstddef>
#include <string>

#include "allocations.hpp"
#include "ketra.h"

namespace bench {

// Runs `round(size)`, which must return 0.
template <class Round>
void perMember(benchmark::State &state, Round &&round) {
  const auto size = static_cast<std::size_t>(state.range(0));
  const Allocations allocations;
  for (auto _ : state) {
    if (round(size) != 0) state.SkipWithError("an operation failed");
  }
  const int64_t members = state.iterations() * state.range(0);
  allocations.report(state, members);
  state.SetItemsProcessed(members);
  state.SetComplexityN(state.range(0));
}

inline void upTo(benchmark::internal::Benchmark *benchmark, int64_t most) {
  benchmark->RangeMultiplier(10)->Range(1, most)->Complexity(benchmark::oN);
}
inline void upTo10000(benchmark::internal::Benchmark *benchmark) { upTo(benchmark, 10'000); }
inline void upTo100000(benchmark::internal::Benchmark *benchmark) { upTo(benchmark, 100'000); }

inline std::string hostName(std::size_t number) {
  return "host-" + std::to_string(number) + ".some-organisation.example";
}

inline int32_t setDnsName(X509GenNameObject object, const std::string &host) {
  X509GenNameParam param{};
  param.type = X509GenName_DNSName;
  param.dNSName = {reinterpret_cast<const uint8_t *>(host.data()), static_cast<uint32_t>(host.size())};
  return X509GenNameObjectSetName(object, &param, nullptr);
}

}  // namespace bench

// A subjectAltName of 1 to 100,000 dNSNames. What grows in proportion to the list shows the same time, requests and
// octets per name in every row.

#include <string>
#include <vector>

#include "allocations.hpp"
#include "ketra.h"
#include "ketra_runtime.h"

namespace {

// A list of names: objects, nodes, and an Extensions object that holds the list.
class List {
 public:
  explicit List(std::size_t size) : nodes_(size) {
    KetraObjectCreate(&extensions_, nullptr);
    for (std::size_t i = 0; i < size; ++i) {
      X509GenNameObjectCreate(&nodes_[i].genName, nullptr);
      nodes_[i].next = i + 1 < size ? &nodes_[i + 1] : nullptr;
    }
  }
  List(const List &) = delete;
  List &operator=(const List &) = delete;
  ~List() {
    for (const X509GenNameChain &node : nodes_) X509GenNameObjectDestroy(node.genName, nullptr);
    KetraObjectDestroy(extensions_, nullptr);
  }

  KetraObject extensions() { return extensions_; }
  X509GenNames names() { return {nodes_.data()}; }

  int32_t setNames() {
    int32_t result = 0;
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
      const std::string host = "host-" + std::to_string(i) + ".some-organisation.example";
      X509GenNameParam param{};
      param.type = X509GenName_DNSName;
      param.dNSName = {reinterpret_cast<const uint8_t *>(host.data()), static_cast<uint32_t>(host.size())};
      result |= X509GenNameObjectSetName(nodes_[i].genName, &param, nullptr);
    }
    return result;
  }
  int32_t set(KetraObject extensions) {
    const X509GenNames value = names();
    return KetraObjectSsetSubjectAltName(extensions, 0, &value, nullptr);
  }
  int32_t get(KetraObject extensions) {
    const X509GenNames value = names();
    return KetraObjectSgetSubjectAltName(extensions, &value, nullptr);
  }

 private:
  KetraObject extensions_ = nullptr;
  std::vector<X509GenNameChain> nodes_;
};

// Runs `round(size)`, which must return 0, and reports what it cost per name.
template <class Round>
void perName(benchmark::State &state, Round &&round) {
  const auto size = static_cast<std::size_t>(state.range(0));
  const bench::Allocations allocations;
  for (auto _ : state) {
    if (round(size) != 0) state.SkipWithError("an operation failed");
  }
  const int64_t names = state.iterations() * state.range(0);
  allocations.report(state, names);
  state.SetItemsProcessed(names);
  state.SetComplexityN(state.range(0));
}

// From strings to the stored extension.
void BM_Set(benchmark::State &state) {
  perName(state, [](std::size_t size) {
    List list(size);
    return list.setNames() | list.set(list.extensions());
  });
}

void BM_Count(benchmark::State &state) {
  List stored(static_cast<std::size_t>(state.range(0)));
  if ((stored.setNames() | stored.set(stored.extensions())) != 0) return state.SkipWithError("no list");
  perName(state, [&](std::size_t size) {
    uint32_t count = 0;
    const int32_t result = KetraObjectSgetSubjectAltNameCalGenName(stored.extensions(), &count, nullptr);
    return result == 0 && count == size ? 0 : -1;
  });
}

// From the stored extension to objects that hold the names.
void BM_Get(benchmark::State &state) {
  List stored(static_cast<std::size_t>(state.range(0)));
  if ((stored.setNames() | stored.set(stored.extensions())) != 0) return state.SkipWithError("no list");
  perName(state, [&](std::size_t size) {
    List list(size);
    return list.get(stored.extensions());
  });
}

// A list that was read goes into another Extensions object.
void BM_ReEncode(benchmark::State &state) {
  List stored(static_cast<std::size_t>(state.range(0)));
  if ((stored.setNames() | stored.set(stored.extensions())) != 0) return state.SkipWithError("no list");
  perName(state, [&](std::size_t size) {
    List list(size);
    return list.get(stored.extensions()) | list.set(list.extensions());
  });
}

BENCHMARK(BM_Set)->RangeMultiplier(10)->Range(1, 100'000)->Complexity(benchmark::oN);
BENCHMARK(BM_Count)->RangeMultiplier(10)->Range(1, 100'000)->Complexity(benchmark::oN);
BENCHMARK(BM_Get)->RangeMultiplier(10)->Range(1, 100'000)->Complexity(benchmark::oN);
BENCHMARK(BM_ReEncode)->RangeMultiplier(10)->Range(1, 100'000)->Complexity(benchmark::oN);

}  // namespace

// A subjectAltName of 1 to 100,000 dNSNames.

#include <vector>

#include "growth.hpp"
#include "ketra.hpp"

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
      result |= bench::setDnsName(nodes_[i].genName, bench::hostName(i));
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

// From strings to the stored extension.
void BM_Set(benchmark::State &state) {
  bench::perMember(state, [](std::size_t size) {
    List list(size);
    return list.setNames() | list.set(list.extensions());
  });
}

void BM_Count(benchmark::State &state) {
  List stored(static_cast<std::size_t>(state.range(0)));
  if ((stored.setNames() | stored.set(stored.extensions())) != 0) return state.SkipWithError("no list");
  bench::perMember(state, [&](std::size_t size) {
    uint32_t count = 0;
    const int32_t result = KetraObjectSgetSubjectAltNameCalGenName(stored.extensions(), &count, nullptr);
    return result == 0 && count == size ? 0 : -1;
  });
}

// From the stored extension to objects that hold the names.
void BM_Get(benchmark::State &state) {
  List stored(static_cast<std::size_t>(state.range(0)));
  if ((stored.setNames() | stored.set(stored.extensions())) != 0) return state.SkipWithError("no list");
  bench::perMember(state, [&](std::size_t size) {
    List list(size);
    return list.get(stored.extensions());
  });
}

// A list that was read goes into another Extensions object.
void BM_ReEncode(benchmark::State &state) {
  List stored(static_cast<std::size_t>(state.range(0)));
  if ((stored.setNames() | stored.set(stored.extensions())) != 0) return state.SkipWithError("no list");
  bench::perMember(state, [&](std::size_t size) {
    List list(size);
    return list.get(stored.extensions()) | list.set(list.extensions());
  });
}

// The C++ face: from strings to the stored extension, and back to strings.
void BM_FaceSet(benchmark::State &state) {
  bench::perMember(state, [](std::size_t size) {
    ketra::SubjectAltName value;
    for (std::size_t i = 0; i < size; ++i) value.names.push_back(ketra::dns(bench::hostName(i)));
    ketra::Extensions().set(value, false);
    return 0;
  });
}

template <class T>
void BM_FaceGet(benchmark::State &state) {
  ketra::SubjectAltName value;
  for (int64_t i = 0; i < state.range(0); ++i)
    value.names.push_back(ketra::dns(bench::hostName(static_cast<std::size_t>(i))));
  ketra::Extensions extensions;
  extensions.set(value, false);
  bench::perMember(state, [&](std::size_t size) { return extensions.get<T>()->names.size() == size ? 0 : -1; });
}

BENCHMARK(BM_Set)->Apply(bench::upTo100000);
BENCHMARK(BM_Count)->Apply(bench::upTo100000);
BENCHMARK(BM_Get)->Apply(bench::upTo100000);
BENCHMARK(BM_ReEncode)->Apply(bench::upTo100000);
BENCHMARK(BM_FaceSet)->Apply(bench::upTo100000);
BENCHMARK(BM_FaceGet<ketra::SubjectAltName>)->Apply(bench::upTo100000);
BENCHMARK(BM_FaceGet<ketra::TolerantSubjectAltName>)->Apply(bench::upTo100000);

}  // namespace

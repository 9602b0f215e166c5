// CRLDistributionPoints of 1 to 10,000 points, each with a fullName of one dNSName and reasons, and nameConstraints of
// 1 to 100,000 permitted dNSNames.

#include <utility>
#include <vector>

#include "growth.hpp"
#include "ketra.hpp"

namespace {

// Objects for as many names.
class NameObjects {
 public:
  explicit NameObjects(std::size_t size) : objects_(size) {
    for (X509GenNameObject &object : objects_) X509GenNameObjectCreate(&object, nullptr);
  }
  NameObjects(const NameObjects &) = delete;
  NameObjects &operator=(const NameObjects &) = delete;
  ~NameObjects() {
    for (X509GenNameObject object : objects_) X509GenNameObjectDestroy(object, nullptr);
  }
  X509GenNameObject operator[](std::size_t i) const { return objects_[i]; }
  int32_t setNames() {
    int32_t result = 0;
    for (std::size_t i = 0; i < objects_.size(); ++i) result |= bench::setDnsName(objects_[i], bench::hostName(i));
    return result;
  }

 private:
  std::vector<X509GenNameObject> objects_;
};

// Each list: its nodes, the C operations and the value type of the face.
class Points {
 public:
  using Strict = ketra::CrlDistributionPoints;
  using Tolerant = ketra::TolerantCrlDistributionPoints;

  explicit Points(std::size_t size) : objects(size), names_(size), points_(size) {
    for (std::size_t i = 0; i < size; ++i) {
      names_[i].genName = objects[i];
      X509DistributionPointNameOpt &name = points_[i].distributionPoint;
      name.value.type = X509DistributionPointName_FullName;
      name.value.fullName = &names_[i];
      name.option = 1;
      points_[i].reasons = {{&kReasons, 7}, 1};
      if (i != 0) points_[i - 1].next = &points_[i];
    }
  }
  int32_t set(KetraObject extensions) {
    return KetraObjectSsetCRLDistributionPoints(extensions, 0, points_.data(), nullptr);
  }
  // The reasons go back into the pool.
  int32_t get(KetraObject extensions) {
    AsnMemObject pool = nullptr;
    int32_t result = KetraObjectSgetCRLDistributionPoints(extensions, points_.data(), nullptr) |
                     KetraObjectGetMemObject(extensions, &pool, nullptr);
    for (const KetraDistributionPoint &point : points_) {
      result |= AsnMemObjectFree(pool, point.reasons.value.octets, nullptr);
    }
    return result;
  }

  static Strict value(std::size_t size) {
    Strict value;
    for (std::size_t i = 0; i < size; ++i) {
      ketra::DistributionPoint point;
      point.distributionPoint = ketra::FullName{{ketra::dns(bench::hostName(i))}};
      point.reasons.emplace().keyCompromise = true;
      value.points.push_back(std::move(point));
    }
    return value;
  }
  template <class T>
  static std::size_t sizeOf(const T &value) {
    return value.points.size();
  }

  NameObjects objects;

 private:
  static constexpr uint8_t kReasons = 0x40;
  std::vector<X509GenNameChain> names_;
  std::vector<KetraDistributionPoint> points_;
};

class Subtrees {
 public:
  using Strict = ketra::NameConstraints;
  using Tolerant = ketra::TolerantNameConstraints;

  explicit Subtrees(std::size_t size) : objects(size), nodes_(size) {
    for (std::size_t i = 0; i < size; ++i) {
      nodes_[i].base = objects[i];
      if (i != 0) nodes_[i - 1].next = &nodes_[i];
    }
  }
  int32_t set(KetraObject extensions) {
    const KetraNameConstraints c{{nodes_.data(), 1}, {}};
    return KetraObjectSsetNameConstraints(extensions, 1, &c, nullptr);
  }
  int32_t get(KetraObject extensions) {
    KetraNameConstraints c{{nodes_.data(), 1}, {}};
    return KetraObjectSgetNameConstraints(extensions, &c, nullptr);
  }

  static Strict value(std::size_t size) {
    Strict value;
    value.permittedSubtrees.emplace();
    for (std::size_t i = 0; i < size; ++i) value.permittedSubtrees->push_back({ketra::dns(bench::hostName(i))});
    return value;
  }
  template <class T>
  static std::size_t sizeOf(const T &value) {
    return value.permittedSubtrees->size();
  }

  NameObjects objects;

 private:
  std::vector<X509GenSubtree> nodes_;
};

// From strings to the stored extension.
template <class List>
void BM_Set(benchmark::State &state) {
  bench::perMember(state, [](std::size_t size) {
    const ketra::Extensions extensions;
    List list(size);
    return list.objects.setNames() | list.set(extensions.handle());
  });
}

// From the stored extension to objects that hold the names, with the counts known.
template <class List>
void BM_Get(benchmark::State &state) {
  ketra::Extensions extensions;
  extensions.set(List::value(static_cast<std::size_t>(state.range(0))), false);
  bench::perMember(state, [&](std::size_t size) {
    List list(size);
    return list.get(extensions.handle());
  });
}

template <class List>
void BM_FaceSet(benchmark::State &state) {
  bench::perMember(state, [](std::size_t size) {
    ketra::Extensions().set(List::value(size), false);
    return 0;
  });
}

template <class List, class T>
void BM_FaceGet(benchmark::State &state) {
  ketra::Extensions extensions;
  extensions.set(List::value(static_cast<std::size_t>(state.range(0))), false);
  bench::perMember(state, [&](std::size_t size) { return List::sizeOf(*extensions.get<T>()) == size ? 0 : -1; });
}

BENCHMARK(BM_Set<Points>)->Apply(bench::upTo10000);
BENCHMARK(BM_Get<Points>)->Apply(bench::upTo10000);
BENCHMARK(BM_FaceSet<Points>)->Apply(bench::upTo10000);
BENCHMARK(BM_FaceGet<Points, Points::Strict>)->Apply(bench::upTo10000);
BENCHMARK(BM_FaceGet<Points, Points::Tolerant>)->Apply(bench::upTo10000);
BENCHMARK(BM_Set<Subtrees>)->Apply(bench::upTo100000);
BENCHMARK(BM_Get<Subtrees>)->Apply(bench::upTo100000);
BENCHMARK(BM_FaceSet<Subtrees>)->Apply(bench::upTo100000);
BENCHMARK(BM_FaceGet<Subtrees, Subtrees::Strict>)->Apply(bench::upTo100000);
BENCHMARK(BM_FaceGet<Subtrees, Subtrees::Tolerant>)->Apply(bench::upTo100000);

}  // namespace

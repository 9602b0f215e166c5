// CertificatePolicies of 1 to 10,000 policies with a qualifier each, through the face.

#include "growth.hpp"
#include "ketra.hpp"

namespace {

ketra::CertificatePolicies policies(std::size_t size) {
  ketra::CertificatePolicies value;
  for (std::size_t i = 0; i < size; ++i) {
    value.policies.push_back({{1, 3, 6, 1, 4, 1, 32473, 1, static_cast<uint32_t>(i)},
                              {ketra::PolicyQualifier::ofCps("https://ca.example/cps")}});
  }
  return value;
}

void BM_PoliciesFaceSet(benchmark::State &state) {
  bench::perMember(state, [](std::size_t size) {
    ketra::Extensions().set(policies(size), false);
    return 0;
  });
}

void BM_PoliciesFaceGet(benchmark::State &state) {
  ketra::Extensions extensions;
  extensions.set(policies(static_cast<std::size_t>(state.range(0))), false);
  bench::perMember(state, [&](std::size_t size) {
    return extensions.get<ketra::CertificatePolicies>()->policies.size() == size ? 0 : -1;
  });
}

BENCHMARK(BM_PoliciesFaceSet)->Apply(bench::upTo10000);
BENCHMARK(BM_PoliciesFaceGet)->Apply(bench::upTo10000);

}  // namespace

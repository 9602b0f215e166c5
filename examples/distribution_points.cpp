// Says where the CRL of a CA is, and for which names the CA may issue.
#include <exception>
#include <iostream>

#include "ketra/ketra.hpp"

int main() try {
  static constexpr uint8_t kNetwork[] = {192, 0, 2, 0, 255, 255, 255, 0};
  ketra::DistributionPoint point;
  point.distributionPoint.emplace().name =
      ketra::DistributionPointName::FullName{ketra::uri("http://ca.example/ca.crl")};
  point.reasons.emplace().keyCompromise = true;
  ketra::NameConstraints constraints;
  constraints.permittedSubtrees = {{ketra::dns("example")}, {ketra::ip(kNetwork)}};

  ketra::Extensions extensions;
  extensions.set(ketra::CrlDistributionPoints{{point}}, /*critical=*/false);
  extensions.set(constraints, /*critical=*/true);

  const auto points = extensions.get<ketra::CrlDistributionPoints>();
  const auto subtrees = extensions.get<ketra::NameConstraints>();
  std::cout << points->points.size() << " point, " << subtrees->permittedSubtrees->size() << " subtrees\n";
} catch (const std::exception &error) {
  std::cerr << error.what() << "\n";
  return 1;
}

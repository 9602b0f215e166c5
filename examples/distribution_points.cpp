// Says where the CRL of a CA is, and for which names the CA may issue.
#include <exception>
#include <iostream>

#include "ketra/face/face.hpp"

int main() try {
  ketra::DistributionPoint point;
  point.distributionPoint = ketra::FullName{{ketra::uri("http://ca.example/ca.crl")}};
  point.reasons.emplace().keyCompromise = true;
  ketra::NameConstraints constraints;
  constraints.permittedSubtrees = {{ketra::dns("example")}, {ketra::ip("192.0.2.0/24")}};

  ketra::Extensions extensions;
  extensions.set(ketra::CrlDistributionPoints{{point}}, /*critical=*/false);
  extensions.set(constraints, /*critical=*/true);
  std::cout << extensions.get<ketra::CrlDistributionPoints>()->points.size() << " point, "
            << extensions.get<ketra::NameConstraints>()->permittedSubtrees->size() << " subtrees\n";
} catch (const std::exception &error) {
  std::cerr << error.what() << "\n";
  return 1;
}

// Encodes the extensions of a CA certificate and reads them back.
#include <iostream>

#include "ketra/ketra.hpp"

int main() try {
  ketra::KeyUsage usage;
  usage.keyCertSign = usage.cRLSign = true;
  ketra::Extensions extensions;
  extensions.set(ketra::BasicConstraints{true, 0}, /*critical=*/true);
  extensions.set(usage, /*critical=*/true);
  extensions.set(ketra::SubjectKeyId{{0x01, 0x02, 0x03, 0x04}});

  const auto read = ketra::Extensions::decode(extensions.encode());
  for (const auto &each : read) {
    if (each) std::cout << each->extnID.text() << (each->critical ? " critical\n" : "\n");
  }
  const auto constraints = read.get<ketra::BasicConstraints>();
  if (constraints && constraints->cA && constraints->pathLenConstraint) {
    std::cout << "path length " << constraints->pathLenConstraint->text() << "\n";
  }
} catch (const ketra::Error &error) {
  std::cerr << error.what() << "\n";
  return 1;
}

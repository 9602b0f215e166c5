// Encodes the extensions of a CA certificate and reads them back.
#include <iostream>

#include "ketra/face/face.hpp"

int main() try {
  ketra::Extensions extensions;
  extensions.set(ketra::BasicConstraints{true, 0}, /*critical=*/true);
  ketra::KeyUsage usage;
  usage.keyCertSign = usage.cRLSign = true;
  extensions.set(usage, /*critical=*/true);
  extensions.set(ketra::SubjectKeyId{{0x01, 0x02, 0x03, 0x04}});

  const auto read = ketra::Extensions::decode(extensions.encode());
  for (const auto &extension : read) std::cout << extension.objid.text() << (extension.critical ? " critical\n" : "\n");
  std::cout << "path length " << read.get<ketra::BasicConstraints>()->pathLenConstraint.value_or(-1) << "\n";
} catch (const ketra::Error &error) {
  std::cerr << error.what() << "\n";
  return 1;
}

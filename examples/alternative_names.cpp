// Stores a subjectAltName and reads it back, in place; one bad name would not hide the others.
#include <iostream>

#include "ketra/ketra.hpp"

int main() try {
  static constexpr uint8_t kAddress[] = {192, 0, 2, 1};
  ketra::Name name;
  name.add(ketra::attribute::countryName, "GB").add(ketra::attribute::commonName, "Steve");
  ketra::Extensions extensions;
  extensions.set(ketra::SubjectAltName{{ketra::dns("www.example"), ketra::ip(kAddress), ketra::directory(name)}},
                 /*critical=*/false);

  const auto found = extensions.view<ketra::SubjectAltName>();
  if (!found) return 1;  // absent, or faulty: found.isFaulty(), found.fault()
  for (const auto &each : found->names) {
    if (!each) {
      std::cout << "unreadable: " << each.fault().text() << "\n";
    } else if (each->is(ketra::NameKind::dNSName)) {
      std::cout << "DNS " << each->text() << "\n";
    } else if (each->is(ketra::NameKind::iPAddress)) {
      std::cout << "IP " << each->text() << "\n";
    } else if (const auto directory = each->directoryName()) {
      std::cout << "DN " << directory->text() << "\n";
    }
  }
} catch (const ketra::Error &error) {
  std::cerr << error.what() << "\n";
  return 1;
}

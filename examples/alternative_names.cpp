// Stores a subjectAltName and reads it back; one bad name would not hide the others.
#include <exception>
#include <iostream>
#include <variant>

#include "ketra/face/face.hpp"

int main() try {
  ketra::Name name;
  name.add({{ketra::attribute::countryName, "GB"}}).add({{ketra::attribute::commonName, "Steve"}});
  ketra::Extensions extensions;
  extensions.set(ketra::SubjectAltName{{ketra::dns("www.example"), ketra::ip("192.0.2.1"), ketra::directory(name)}},
                 /*critical=*/false);

  const auto read = extensions.get<ketra::TolerantSubjectAltName>();
  for (const ketra::NameOrError &each : read->names) {
    if (const auto *bad = std::get_if<ketra::UnreadableName>(&each)) {
      std::cout << "unreadable: " << bad->error.what() << "\n";
      continue;
    }
    const auto &readable = std::get<ketra::GeneralName>(each);
    if (const auto *dns = std::get_if<ketra::DnsName>(&readable)) std::cout << "DNS " << dns->text << "\n";
    if (const auto *ip = std::get_if<ketra::IpAddress>(&readable)) std::cout << "IP " << ip->text() << "\n";
    if (const auto *dn = std::get_if<ketra::DirectoryName>(&readable)) std::cout << "DN " << dn->name.text() << "\n";
  }
} catch (const std::exception &error) {
  std::cerr << error.what() << "\n";
  return 1;
}

// Prints the subject, names and CRL addresses of every certificate in the PEM files of a directory.
#include <filesystem>
#include <fstream>
#include <iostream>

#include "ketra/ketra.hpp"

int main(int argc, char **argv) {
  const auto print = [](const char *before, const auto &names) {
    for (const auto &name : names) std::cout << before << (name ? name->text() : name.fault().text()) << "\n";
  };
  for (const auto &entry : std::filesystem::directory_iterator(argc > 1 ? argv[1] : "/etc/ssl/certs")) {
    if (!entry.is_regular_file()) continue;
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(file)), {});
    for (const auto &block : ketra::pem::Blocks(text)) {
      const auto octets = block.decode();
      if (!octets || block.kind() != ketra::ObjectKind::certificate) continue;
      const auto certificate = ketra::view<ketra::CertificateView>(*octets);
      if (!certificate) continue;
      const auto subject = certificate->subject.value();
      std::cout << (subject ? subject->text() : subject.fault().text()) << "\n";
      if (const auto found = certificate->extensions().view<ketra::SubjectAltName>()) print("  ", found->names);
      const auto crls = certificate->extensions().view<ketra::CrlDistributionPoints>();
      for (const auto &point : crls ? crls->points : ketra::Range<ketra::DistributionPointView>()) {
        const auto *name = point && point->distributionPoint ? point->distributionPoint->fullName() : nullptr;
        if (name != nullptr) print("  CRL ", *name);
      }
    }
  }
}

// A small CA: a root, an intermediate that may issue for example.com only, and a server certificate, which are checked
// against these constraints before they are signed. OpenSSL makes the keys and signatures. small_ca DIRECTORY writes
// root.pem, intermediate.pem and server.pem.
#include <openssl/evp.h>
#include <openssl/pem.h>

#include <chrono>
#include <cstdio>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

#include "ketra/ketra.hpp"
#include "ketra/openssl.hpp"

using namespace ketra::literals;
using Key = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;

struct Party {
  ketra::Name name;
  Key key{EVP_EC_gen("P-256"), EVP_PKEY_free};
  ketra::SubjectKeyId id;

  explicit Party(const std::string &commonName) {
    name.add(ketra::attribute::organizationName, "Example").add(ketra::attribute::commonName, commonName);
    uint8_t digest[20];
    X509_PUBKEY *encoded = nullptr;
    const unsigned char *bits = nullptr;
    int size = 0;
    if (X509_PUBKEY_set(&encoded, key.get()) == 0) throw std::runtime_error("no key");
    X509_PUBKEY_get0_param(nullptr, &bits, &size, nullptr, encoded);
    EVP_Digest(bits, static_cast<std::size_t>(size), digest, nullptr, EVP_sha1(), nullptr);
    X509_PUBKEY_free(encoded);
    id.keyIdentifier = ketra::View(digest);  // RFC 5280 4.2.1.2 (1)
  }
};

// `extensions` are those that do not follow from who issues for whom.
ketra::Certificate issue(const Party &issuer, const Party &subject, int64_t serial, ketra::Extensions extensions) {
  extensions.set(subject.id);
  ketra::AuthorityKeyId authority;
  authority.keyIdentifier = issuer.id.keyIdentifier;
  extensions.set(authority);

  const auto now = std::chrono::time_point_cast<std::chrono::seconds>(std::chrono::system_clock::now());
  const ketra::openssl::Handle<X509> certificate(X509_new());
  X509_set_version(certificate.get(), X509_VERSION_3);
  X509_set_serialNumber(certificate.get(), ketra::openssl::from(ketra::Integer(serial)).get());
  X509_set_issuer_name(certificate.get(), ketra::openssl::from(issuer.name).get());
  X509_set_subject_name(certificate.get(), ketra::openssl::from(subject.name).get());
  X509_set1_notBefore(certificate.get(), ketra::openssl::from(ketra::Time(now)).get());
  X509_set1_notAfter(certificate.get(), ketra::openssl::from(ketra::Time(now + std::chrono::hours(24 * 30))).get());
  X509_set_pubkey(certificate.get(), subject.key.get());
  ketra::openssl::setExtensions(certificate.get(), extensions);
  if (X509_sign(certificate.get(), issuer.key.get(), EVP_sha256()) == 0) throw std::runtime_error("not signed");
  return ketra::openssl::certificateOf(certificate.get());
}

void save(const ketra::Certificate &certificate, const std::string &path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE *)> file(std::fopen(path.c_str(), "w"), std::fclose);
  const auto object = ketra::openssl::from(certificate);
  if (file == nullptr || PEM_write_X509(file.get(), object.get()) == 0) throw std::runtime_error(path);
}

int main(int argc, char **argv) try {
  const std::string directory = argc > 1 ? argv[1] : ".";
  const Party root("Root"), intermediate("Intermediate"), server("www.example.com");

  ketra::KeyUsage signs;
  signs.keyCertSign = signs.cRLSign = true;
  ketra::Extensions ca;
  ca.set(ketra::BasicConstraints{true}, true);
  ca.set(signs, true);
  save(issue(root, root, 1, ca), directory + "/root.pem");

  ca.set(ketra::BasicConstraints{true, 0}, true);
  ca.set(ketra::NameConstraints{{{{ketra::dns("example.com")}}}, {{{ketra::dns("private.example.com")}}}}, true);
  const ketra::Certificate constrained = issue(root, intermediate, 2, ca);
  save(constrained, directory + "/intermediate.pem");

  const auto constraints = constrained->extensions().view<ketra::NameConstraintsView>();
  for (const char *host : {"www.private.example.com", "www.example.org", "www.example.com"}) {
    ketra::KeyUsage usage;
    usage.digitalSignature = true;
    ketra::Extensions extensions;
    extensions.set(usage, true);
    extensions.set(ketra::ExtKeyUsage{{"1.3.6.1.5.5.7.3.1"_oid}}, false);
    extensions.set(ketra::SubjectAltName{{ketra::dns(host)}}, false);
    const ketra::Certificate certificate = issue(intermediate, server, 3, extensions);
    if (!ketra::permits(constraints, *certificate)) {
      std::cout << host << ": outside the constraints\n";
      continue;
    }
    save(certificate, directory + "/server.pem");
    std::cout << host << ": " << directory << "/server.pem\n";
  }
} catch (const std::exception &error) {
  std::cerr << error.what() << "\n";
  return 1;
}

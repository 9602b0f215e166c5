// The bridge to OpenSSL: what goes there and comes back is the same.
#include "ketra/openssl.hpp"

#include <fstream>

#include "ketra/extensions.hpp"
#include "ketra/objects/pem.hpp"
#include "support/support.h"

namespace ketra {
namespace {

template <class T>
T sample(const std::string &name) {
  std::ifstream file(test::pathOf("../samples/" + name), std::ios::binary);
  const std::string text((std::istreambuf_iterator<char>(file)), {});
  const Octets octets = *pem::Blocks(text).begin()->decode();
  return *read<T>(View(octets));
}

// Sets those of an object to others, to none, and to what they were.
template <class T>
void exchange(T *object) {
  const Extensions before = openssl::extensionsOf(object);
  Extensions other;
  other.set(KeyUsage{}, true);
  const Octets null = {0x05, 0x00};
  other.set("1.2.3"_oid, false, View(null));
  for (const Extensions &each : {other, Extensions(), before}) {
    openssl::setExtensions(object, each);
    EXPECT_EQ(openssl::extensionsOf(object).encode(), each.encode());
  }
  Extensions broken = Extensions::decode({0x30, 0x02, 0x30, 0x00});
  EXPECT_THROW(openssl::setExtensions(object, broken), std::runtime_error);
  EXPECT_EQ(openssl::extensionsOf(object).encode(), before.encode()) << "a refused list changes nothing";
}

TEST(OpenSsl, ExtensionsGoAndComeBack) {
  const auto certificate = sample<Certificate>("ca.pem");
  const auto x509 = openssl::from(certificate);
  EXPECT_EQ(openssl::certificateOf(x509.get()), certificate);
  EXPECT_EQ(openssl::extensionsOf(x509.get()).size(), certificate->extensions().size());
  exchange(x509.get());
  const auto crl = sample<Crl>("indirect-crl.pem");
  const auto x509Crl = openssl::from(crl);
  EXPECT_EQ(openssl::crlOf(x509Crl.get()), crl);
  exchange(x509Crl.get());
  for (const int entry : {0, 1}) exchange(sk_X509_REVOKED_value(X509_CRL_get_REVOKED(x509Crl.get()), entry));
  const auto request = sample<Request>("request.pem");
  const auto x509Request = openssl::from(request);
  EXPECT_EQ(openssl::requestOf(x509Request.get()), request);
  EXPECT_EQ(openssl::extensionsOf(x509Request.get()).size(), request->extensions().size());
  exchange(x509Request.get());
  const openssl::Handle<X509> empty(X509_new());
  EXPECT_TRUE(openssl::extensionsOf(empty.get()).empty());
  exchange(empty.get());
}

TEST(OpenSsl, ValuesGoAndComeBack) {
  Name name;
  name.add(attribute::countryName, "DE").add(attribute::commonName, "K\xC3\xB6ln");
  EXPECT_EQ(openssl::nameOf(openssl::from(name).get()), name);
  for (const int64_t number : {int64_t{0}, int64_t{-129}, INT64_MAX}) {
    EXPECT_EQ(openssl::integerOf(openssl::from(Integer(number)).get()), Integer(number));
  }
  for (const char *generalized : {"19491231235959Z", "19500101000000Z", "20491231235959Z", "20500101000000Z"}) {
    const std::string text = generalized;
    const Octets octets = test::tlv(0x18, Octets(text.begin(), text.end()));
    const Time time = *read<Time>(View(octets));
    const auto converted = openssl::from(time);
    EXPECT_EQ(openssl::timeOf(converted.get()), time) << text;
    EXPECT_EQ(ASN1_STRING_type(converted.get()) == V_ASN1_UTCTIME, text > "1950" && text < "2050") << text;
  }
}

}  // namespace
}  // namespace ketra

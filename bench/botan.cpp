// Botan 2. Its typed readers and writers are private; they are measured, not the public ways to them, which cost
// several times as much. It has no classes for the other extensions, and drops parts of some: those have no row.

#include <botan/x509_ext.h>

#include <memory>

#include "operations.hpp"
#include "roots.hpp"

namespace bench {
namespace {

using Botan::Certificate_Extension;
using namespace Botan::Cert_Extension;

// An explicit instantiation may name private members.
template <class Tag, auto kMember>
struct Private {
  friend auto memberOf(Tag) { return kMember; }
};
struct Decode {
  friend auto memberOf(Decode);
};
struct Encode {
  friend auto memberOf(Encode);
};
template struct Private<Decode, &Certificate_Extension::decode_inner>;
template struct Private<Encode, &Certificate_Extension::encode_inner>;

void decode(Certificate_Extension &extension, const Octets &der) { (extension.*memberOf(Decode{}))(der); }
Octets encode(const Certificate_Extension &extension) { return (extension.*memberOf(Encode{}))(); }

template <class E, class Check>
void addRead(const std::string &row, const Octets &der, Check isExpected) {
  const auto kept = std::make_shared<const Octets>(der);
  const auto check = [=] {
    E extension;
    decode(extension, *kept);
    return isExpected(extension, *kept);
  };
  add(row, "read", "Botan", check, [=] {
    E extension;
    decode(extension, *kept);
    sink(&extension);
  });
}

template <class E, class Make>
void addRow(const std::string &row, const Octets &der, Make make) {
  addRead<E>(row, der, [](const E &extension, const Octets &expected) { return encode(extension) == expected; });
  add(
      row, "write", "Botan", [=] { return encode(make()) == der; },
      [=] {
        const Octets encoding = encode(make());
        sink(encoding.data());
      });
}

Subject_Alternative_Name hosts(std::size_t size) {
  Botan::AlternativeName names;
  for (std::size_t i = 0; i < size; ++i) names.add_attribute("DNS", host(i));
  return Subject_Alternative_Name(names);
}

}  // namespace

void addBotan() {
  addRow<Basic_Constraints>("BasicConstraints", der::basicConstraints(),
                            [] { return Basic_Constraints(true, kPathLength); });
  addRow<Key_Usage>("KeyUsage", der::keyUsage(), [] {
    return Key_Usage(static_cast<Botan::Key_Constraints>(Botan::KEY_CERT_SIGN | Botan::CRL_SIGN));
  });
  addRow<Subject_Key_ID>("SubjectKeyId", der::subjectKeyId(),
                         [] { return Subject_Key_ID(Octets(std::begin(kKeyId), std::end(kKeyId))); });
  addRow<Extended_Key_Usage>("ExtKeyUsage 3", der::extKeyUsage(3), [] {
    return Extended_Key_Usage({Botan::OID(purposeText(0)), Botan::OID(purposeText(1)), Botan::OID(purposeText(2))});
  });
  addRow<CRL_Number>("CRLNumber", der::crlNumber(), [] { return CRL_Number(kCrlNumber); });
  addRow<CRL_ReasonCode>("ReasonCode", der::reasonCode(), [] { return CRL_ReasonCode(Botan::KEY_COMPROMISE); });
  addRead<CRL_Distribution_Points>(
      "CRLDistributionPoints 2", der::crlDistributionPoints(2), [](const auto &value, const Octets &) {
        const auto &points = value.distribution_points();
        return points.size() == 2 && points[1].point().get_first_attribute("URI") == crl(1);
      });
  addRead<Name_Constraints>("NameConstraints 4", der::nameConstraints(4), [](const auto &constraints, const Octets &) {
    const Botan::NameConstraints &both = constraints.get_name_constraints();
    return both.permitted().size() == 2 && both.excluded().size() == 2 && both.excluded()[1].base().name() == host(3);
  });
  for (const std::size_t n : kLengths) {
    if (n > kMostOfQuadratic) continue;
    addRow<Subject_Alternative_Name>(sized("SubjectAltName", n), der::subjectAltName(n), [n] { return hosts(n); });
  }
}

}  // namespace bench

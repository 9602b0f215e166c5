// The C interface.

#include <memory>

#include "operations.hpp"
#include "structures.hpp"

namespace bench {
namespace {

// What an operation works on, shared by the copies of its callables.
template <class S>
struct Fixture {
  template <class... Size>
  explicit Fixture(const Octets &der, const Objid &objid, Size... size)
      : filled(size...), blank(size...), expected(der) {
    const KetraExtension extension{objid, 0, 0, {expected.data(), static_cast<uint32_t>(expected.size())}};
    KetraObjectSetExt(stored.handle(), &extension, nullptr);
    filled.fill();
  }

  bool isExpected(const Object &extensions) const {
    const KetraExtension *only = nullptr;
    uint32_t size = 0;
    if (KetraObjectCalExt(extensions.handle(), &size, nullptr) != 0 || size != 1) return false;
    if (KetraObjectGetExtpByIndex(extensions.handle(), 0, &only, nullptr) != 0) return false;
    const AsnEncodedData &value = only->value;
    return Octets(value.octets, value.octets + value.length) == expected;
  }
  bool writes() { return write(filled, written.handle()) == 0 && isExpected(written); }
  // What was read into blank nodes is written again.
  bool reads() {
    const Object again;
    const bool isRead = blank.create() == 0 && blank.get(stored.handle()) == 0 && blank.set(again.handle()) == 0;
    blank.giveBack(stored.handle()->pool);
    blank.destroy();
    return isRead && isExpected(again);
  }

  S filled, blank;
  Octets expected;
  Object stored, written;
};

template <class S, class... Size>
void addRow(const std::string &row, const Octets &der, const Objid &objid, Size... size) {
  const auto fixture = std::make_shared<Fixture<S>>(der, objid, size...);
  Fixture<S> *f = fixture.get();
  add(
      row, "read", "C interface", [fixture] { return fixture->reads(); }, [f] { read(f->blank, f->stored.handle()); });
  add(
      row, "write", "C interface", [fixture] { return fixture->writes(); },
      [f] { write(f->filled, f->written.handle()); });
  if constexpr (S::kCounts) {
    const auto counts = [fixture] { return fixture->blank.counts(fixture->stored.handle()); };
    add(row, "count", "C interface", counts, counts);
  }
}

}  // namespace

void addKetra() {
  addRow<BasicConstraints>("BasicConstraints", der::basicConstraints(), X509Objid_BasicConstraints);
  addRow<KeyUsage>("KeyUsage", der::keyUsage(), X509Objid_KeyUsage);
  addRow<SubjectKeyId>("SubjectKeyId", der::subjectKeyId(), X509Objid_SubjectKeyId);
  addRow<PolicyConstraints>("PolicyConstraints", der::policyConstraints(), X509Objid_PolicyConstraints);
  addRow<CrlNumber>("CRLNumber", der::crlNumber(), X509Objid_CRLNumber);
  addRow<ReasonCode>("ReasonCode", der::reasonCode(), X509Objid_ReasonCode);
  addRow<InvalidityDate>("InvalidityDate", der::invalidityDate(), X509Objid_InvalidityDate);
  addRow<AuthorityKeyId>("AuthorityKeyId", der::authorityKeyId(), X509Objid_AuthorityKeyId);
  addRow<SubjectAltName>("SubjectAltName directoryName", der::directoryName(), X509Objid_SubjectAltName);
  addRow<IssuingDistributionPoint>("IssuingDistributionPoint", der::issuingDistributionPoint(),
                                   X509Objid_IssuingDistributionPoint);
  for (const std::size_t n : kLengths) {
    addRow<SubjectAltName>(sized("SubjectAltName", n), der::subjectAltName(n), X509Objid_SubjectAltName, n);
  }
  const auto addLists = [](std::size_t purposes, std::size_t mappings, std::size_t points, std::size_t subtrees) {
    addRow<ExtKeyUsage>(sized("ExtKeyUsage", purposes), der::extKeyUsage(purposes), X509Objid_ExtKeyUsage, purposes);
    addRow<PolicyMappings>(sized("PolicyMappings", mappings), der::policyMappings(mappings), X509Objid_PolicyMappings,
                           mappings);
    addRow<CrlDistributionPoints>(sized("CRLDistributionPoints", points), der::crlDistributionPoints(points),
                                  X509Objid_CRLDistributionPoints, points);
    addRow<NameConstraints>(sized("NameConstraints", subtrees), der::nameConstraints(subtrees),
                            X509Objid_NameConstraints, subtrees);
  };
  addLists(3, 2, 2, 4);
  addRow<CertPolicies>("CertPolicies 2", der::certPolicies(2), X509Objid_CertPolicies, std::size_t{2});
  for (const std::size_t n : kLengths) addLists(n, n, n, n);
}

}  // namespace bench
